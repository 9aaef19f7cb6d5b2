#!/usr/bin/env python3
"""Checks what the shared library shows to the dynamic linker.

Exactly the sixteen functions of orv.h are exported, the soname is liborv.so.1, nothing but the C++
and C runtime is needed, and loading the library runs no code of its own.
"""

import argparse
import re
import subprocess
import sys

NAMES = {
    "SetORVCallBack", "ConvertORVImage", "DestroyORVImage", "GetORVImageInfo",
    "GetORVImageData", "ORVFastRestoration", "ORVFastDenoiser", "ORVIFAosBarashOp",
    "ORVIFVanVieltBlurringIirOp", "ORVIHomomorphicOp", "ORVRetinex", "ORVIShockOp",
    "ORVISusanRestoration", "ORVWaveletDenoising", "ORVISimpleColorTranfer",
    "ORVIColorToGreyTranfertOp",
}
SONAME = "liborv.so.1"
RUNTIME = re.compile(r"^(libstdc\+\+|libm|libgcc_s|libc|ld-linux[-_a-z0-9]*)\.so\.\d+$")
# Start-up code of the compiler's own objects.
STARTUP = {"frame_dummy", "__cpu_indicator_init", "init_have_lse_atomics"}
SKIPPED = 77


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def exported_names(nm, library):
    lines = output(nm, "-D", "--defined-only", library).splitlines()
    return {line.split()[-1] for line in lines if line.strip()}


def declared_names(header):
    with open(header, encoding="utf-8") as file:
        return set(re.findall(r"^ORV_EXPORT [\w* ]*?\b(\w+)\(", file.read(), re.MULTILINE))


def startup_functions(nm, readelf, library):
    """Names of the functions that the loader calls, from the relocations of .init_array."""
    section = re.search(r"\.init_array\s+INIT_ARRAY\s+([0-9a-f]+) [0-9a-f]+ ([0-9a-f]+)",
                        output(readelf, "-SW", library))
    if section is None:
        return []
    start, size = (int(text, 16) for text in section.groups())
    names = {}
    for line in output(nm, library).splitlines():
        fields = line.split()
        if len(fields) == 3:
            names.setdefault(int(fields[0], 16), fields[2])
    found = []
    for line in output(readelf, "-rW", library).splitlines():
        fields = line.split()
        if len(fields) >= 4 and re.fullmatch(r"[0-9a-f]{8,}", fields[0]):
            if start <= int(fields[0], 16) < start + size:
                found.append(names.get(int(fields[-1], 16), "unnamed at 0x" + fields[-1]))
    return found


def problems(arguments):
    exported = exported_names(arguments.nm, arguments.shared_object)
    for name in sorted(NAMES - exported):
        yield f"not exported: {name}"
    for name in sorted(exported - NAMES):
        yield f"exported without need: {name}"
    for name in sorted(NAMES ^ declared_names(arguments.header)):
        yield f"header and list differ in: {name}"

    dynamic = output(arguments.readelf, "-dW", arguments.shared_object)
    sonames = re.findall(r"\(SONAME\).*\[(.*)\]", dynamic)
    if sonames != [SONAME]:
        yield f"soname is {sonames}, not {SONAME}"
    for needed in re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic):
        if RUNTIME.match(needed) is None:
            yield f"needs {needed}"

    startup = startup_functions(arguments.nm, arguments.readelf, arguments.shared_object)
    if not startup:
        yield "the start-up table could not be read"
    for name in startup:
        if name not in STARTUP:
            yield f"runs at load: {name}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--shared-object", required=True)
    parser.add_argument("--header", required=True)
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--readelf", default="readelf")
    parser.add_argument("--sanitized", action="store_true")
    arguments = parser.parse_args()
    if arguments.sanitized:
        print("skipped: a sanitizer runtime adds symbols, libraries and start-up code")
        return SKIPPED
    found = list(problems(arguments))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
