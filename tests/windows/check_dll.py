#!/usr/bin/env python3
"""Checks what orv.dll shows to Windows, with the tools of MinGW.

Each property is a check of its own, named on the command line. Prints what is wrong; exit code 1
then.
"""

import argparse
import os
import re
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "abi"))

from check_symbols import NAMES  # noqa: E402

# Part of every Windows.
SYSTEM = {"kernel32.dll", "msvcrt.dll"}
FORMATS = {"x86_64": "pei-x86-64", "i686": "pei-i386"}
# 32-bit symbols carry an underscore; a stdcall one ends in @ and the bytes of its arguments.
PREFIX = {"x86_64": "", "i686": "_"}


class Dll:
    """The library with what is built beside it, and the tools that read them."""

    def __init__(self, arguments):
        self.path = arguments.dll
        self.import_library = arguments.import_library
        self.layers = arguments.layers
        self.version = arguments.version
        self.machine = arguments.machine
        self.source = arguments.source

    def tool(self, name, *arguments):
        command = [f"{self.machine}-w64-mingw32-{name}", *arguments]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout

    def headers(self):
        return self.tool("objdump", "-p", self.path)


def exports(dll):
    """Sixteen names, without decoration, and none besides."""
    table = dll.headers().partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    found = re.findall(r"^\s*\[\s*\d+\] (\S+)", table, re.MULTILINE)
    for name in sorted(NAMES - set(found)):
        yield f"not exported: {name}"
    for name in sorted(set(found) - NAMES):
        yield f"exported without need: {name}"


def imports(dll):
    """Nothing but Windows is needed."""
    needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", dll.headers())}
    if not needed:
        yield "the imports could not be read"
    for name in sorted(needed - SYSTEM):
        yield f"needs {name}"


def image(dll):
    """The right machine; no time or folder of the build; any address will do; data never runs."""
    headers = dll.headers()
    if f"file format {FORMATS[dll.machine]}" not in headers:
        yield f"is no {FORMATS[dll.machine]}"
    stamps = re.findall(r"^Time/Date(?: stamp)?\s+(.*)$", headers, re.MULTILINE)
    if len(stamps) != 2 or "1970" not in stamps[0] or int(stamps[1], 16) != 0:
        yield f"carries a time: {stamps}"
    for mark in ("DYNAMIC_BASE", "NX_COMPAT"):
        if not re.search(rf"^\s+{mark}$", headers, re.MULTILINE):
            yield f"is not marked {mark}"
    if re.search(r"^Entry 5 0+ 0+ Base Relocation", headers, re.MULTILINE):
        yield "has no relocations"
    with open(dll.path, "rb") as file:
        if not dll.source or os.fsencode(dll.source) in file.read():
            yield f"names the folder of its sources: {dll.source}"


def entry_point(dll):
    """The entry point reports success and does nothing else; no layer has a constructor."""
    symbol = "_DllMain@12" if dll.machine == "i686" else "DllMain"
    code = dll.tool("objdump", "-d", "--no-show-raw-insn", f"--disassemble={symbol}", dll.path)
    # What follows the return fills the gap to the next function.
    body = re.findall(r"^\s*[0-9a-f]+:\s+(.*?)\s*$", code, re.MULTILINE)
    end = next((i for i, line in enumerate(body) if line.startswith("ret")), None)
    if end is None or body[:end] != ["mov    $0x1,%eax"]:
        yield f"{symbol} is {body[:12]}"
    if not dll.layers:
        yield "no layer is given"
    for layer in dll.layers:
        for section in re.findall(r"\s(\.(?:ctors|dtors|CRT|init_array|tls)\S*)\s",
                                  dll.tool("objdump", "-h", layer)):
            yield f"{layer} has a section {section}"


def import_library(dll):
    """The sixteen names, each called by the C convention."""
    prefix = PREFIX[dll.machine]
    symbols = set(re.findall(r" T (\S+)$", dll.tool("nm", dll.import_library), re.MULTILINE))
    wanted = {prefix + name for name in NAMES}
    for name in sorted(wanted ^ symbols):
        yield f"{'lacks' if name in wanted else 'has'} {name}"
    if not re.search(r"\borv\.dll\b", dll.tool("strings", dll.import_library)):
        yield "does not lead to orv.dll"


def version(dll):
    """The version resource says which library and which release."""
    text = dll.tool("windres", "-i", dll.path, "-O", "rc")
    numbers = dll.version.replace(".", ", ") + ", 0"
    for line in (f"FILEVERSION {numbers}", f"PRODUCTVERSION {numbers}", "FILETYPE 0x2",
                 f'VALUE "ProductVersion", "{dll.version}"',
                 f'VALUE "FileVersion", "{dll.version}"',
                 'VALUE "OriginalFilename", "orv.dll"', 'VALUE "ProductName", "ORV"'):
        if line not in text:
            yield f"lacks {line}"


def kernels(dll):
    """The code for each instruction set is inside; 32-bit libraries have the generic one alone."""
    code = dll.tool("objdump", "-d", "--no-show-raw-insn", dll.path)
    for register in ("%ymm", "%zmm"):
        if (register in code) != (dll.machine == "x86_64"):
            yield f"{'lacks' if dll.machine == 'x86_64' else 'has'} code with {register}"


CHECKS = {check.__name__.replace("_", "-"): check
          for check in (exports, imports, image, entry_point, import_library, version, kernels)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("check", choices=CHECKS)
    parser.add_argument("dll")
    parser.add_argument("--machine", choices=FORMATS, required=True)
    parser.add_argument("--import-library")
    parser.add_argument("--layers", nargs="*", default=[], help="archives that it is made of")
    parser.add_argument("--version", default="")
    parser.add_argument("--source", default="", help="the folder of the sources")
    arguments = parser.parse_args()
    found = list(CHECKS[arguments.check](Dll(arguments)))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
