#!/usr/bin/env python3
"""Measures what each restoration of the shared library holds in memory at its peak.

Usage: scripts/measure_host_memory.py LIBRARY [--megapixels 4] [--only TEXT] [--solvers]

Each call runs in a process of its own on noise. Printed are the bytes a pixel that the peak resident
memory lies above what was resident before the call: the source is not in it, the result (3 bytes) is.
With --solvers it measures all solvers of an unsplit scheme instead, each with 5 and with 10
solverIterations. Linux alone. Ends with 1 when a call gives null.
"""

import argparse
import ctypes
import json
import math
import os
import random
import subprocess
import sys

# Name of the row, export, its arguments behind the image; "image" stands for a second picture of the
# same size.
CALLS = (
    ("ORVFastRestoration, AOS", "ORVFastRestoration", ("AOS", 0, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 0)),
    ("ORVFastRestoration, AOS, 3 iterations", "ORVFastRestoration", ("AOS", 0, 3, 2.0, 5, 0.7, 10.0, "PM", 0, 0)),
    ("ORVFastRestoration, AOS, solver 7", "ORVFastRestoration", ("AOS", 7, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 0)),
    ("ORVFastRestoration, LOD", "ORVFastRestoration", ("LOD", 0, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 0)),
    ("ORVFastRestoration, AFI", "ORVFastRestoration", ("AFI", 0, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 0)),
    ("ORVFastRestoration, ADI", "ORVFastRestoration", ("ADI", 0, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 1)),
    ("ORVFastRestoration, AMOS", "ORVFastRestoration", ("AMOS", 0, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 1)),
    ("ORVFastRestoration, 2DSemi, solver 7", "ORVFastRestoration", ("2DSemi", 7, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 0)),
    ("ORVFastRestoration, 2DImplicit, solver 7", "ORVFastRestoration",
     ("2DImplicit", 7, 1, 2.0, 5, 0.7, 10.0, "PM", 0, 1)),
    ("ORVFastDenoiser, AOS", "ORVFastDenoiser", ("AOS", 0, 1, 2.0, 2, 0.7, 10.0, 0.1, "VAR", 0, 0)),
    ("ORVFastDenoiser, ADI", "ORVFastDenoiser", ("ADI", 0, 1, 2.0, 2, 0.7, 10.0, 0.1, "VAR", 0, 0)),
    ("ORVFastDenoiser, 2DSemi, solver 7", "ORVFastDenoiser", ("2DSemi", 7, 1, 2.0, 5, 0.7, 10.0, 0.1, "VAR", 0, 0)),
    ("ORVIFAosBarashOp", "ORVIFAosBarashOp", (1, 3, 0.1, 0.5, 1.0, 10.0, False, False)),
    ("ORVIFVanVieltBlurringIirOp", "ORVIFVanVieltBlurringIirOp", (2.0,)),
    ("ORVIFVanVieltBlurringIirOp, sigma 50", "ORVIFVanVieltBlurringIirOp", (50.0,)),
    ("ORVIHomomorphicOp, mode 8", "ORVIHomomorphicOp", (2.0, 8)),
    ("ORVIHomomorphicOp, mode 1", "ORVIHomomorphicOp", (2.0, 1)),
    ("ORVRetinex, 1 level", "ORVRetinex", (2.0, 0.1, 0.1, 1)),
    ("ORVRetinex, 4 levels", "ORVRetinex", (2.0, 0.1, 0.1, 4)),
    ("ORVIShockOp, method 0", "ORVIShockOp", (0, 1, 0.1)),
    ("ORVIShockOp, method 3", "ORVIShockOp", (3, 1, 0.1)),
    ("ORVISusanRestoration, 1 pass", "ORVISusanRestoration", (1, 20.0, 3.0)),
    ("ORVISusanRestoration, 2 passes", "ORVISusanRestoration", (2, 20.0, 3.0)),
    ("ORVWaveletDenoising, SureShrink", "ORVWaveletDenoising", ("SureShrink", -1, 0)),
    ("ORVWaveletDenoising, VisuShrink", "ORVWaveletDenoising", ("VisuShrink", -1, 0)),
    ("ORVWaveletDenoising, Brownian", "ORVWaveletDenoising", ("Brownian", -1, 0)),
    ("ORVISimpleColorTranfer", "ORVISimpleColorTranfer", ("image",)),
    ("ORVIColorToGreyTranfertOp", "ORVIColorToGreyTranfertOp", ("image",)),
)

# Pictures for the solvers whose need or text grows with the square of the pixels or the width.
DIRECT_SIZES = ((200, 150), (400, 300))
PRINTING_SIZES = ((48, 32),)
DIRECT_SOLVER = 0
PRINTING_SOLVER = 41

# A power of two needs no padding; the last picture is the one whose square of 4096 is least filled.
WAVELET_SIZES = ((2048, 2048), (2048, 1024), (2449, 1634), (4096, 2049))


class BitmapHeader(ctypes.Structure):
    """BITMAPINFOHEADER of orv.h."""

    _pack_ = 1
    _fields_ = [
        ("biSize", ctypes.c_uint32), ("biWidth", ctypes.c_int32), ("biHeight", ctypes.c_int32),
        ("biPlanes", ctypes.c_uint16), ("biBitCount", ctypes.c_uint16), ("rest", ctypes.c_uint32 * 6),
    ]


def resident(name):
    """A line of the process's own status, in bytes."""
    with open("/proc/self/status", encoding="ascii") as file:
        for line in file:
            if line.startswith(name + ":"):
                return 1024 * int(line.split()[1])
    sys.exit(f"no {name} in the status of the process")


def converted(library, width, height):
    """A handle with noise; the bitmap itself is gone again."""
    row = (3 * width + 3) // 4 * 4
    noise = random.Random(1).randbytes(row + 7777)
    bitmap = b"".join(noise[y * 131 % 7777 :][:row] for y in range(height))
    header = BitmapHeader(40, width, height, 1, 24)
    return ctypes.c_void_p(library.ConvertORVImage(ctypes.byref(header), bitmap))


def as_c(argument, image):
    """An argument as ctypes passes it; "image" stands for the image once more."""
    if argument == "image":
        return image
    if isinstance(argument, bool):
        return ctypes.c_bool(argument)
    if isinstance(argument, float):
        return ctypes.c_double(argument)
    return argument.encode() if isinstance(argument, str) else ctypes.c_int(argument)


def child(path, width, height, export, arguments):
    """Makes one call and prints what it held at its peak, in bytes."""
    library = ctypes.CDLL(path)
    for function in (library.ConvertORVImage, getattr(library, export)):
        function.restype = ctypes.c_void_p
    image = converted(library, width, height)
    second = converted(library, width, height) if "image" in arguments else None
    passed = [as_c(argument, second) for argument in arguments]
    # Nothing that was freed may stand ready; then the peak is set back to what is resident now.
    ctypes.CDLL(None).malloc_trim(0)
    with open("/proc/self/clear_refs", "w", encoding="ascii") as file:
        file.write("5")
    before = resident("VmRSS")
    result = getattr(library, export)(image, *passed)
    print(f"peak {resident('VmHWM') - before} {result is not None}", file=sys.stderr)


def peak_of(library, size, export, arguments):
    """Bytes of one call in a process of its own; null when the call gave none."""
    done = subprocess.run(
        [sys.executable, "-S", __file__, "--child", library, json.dumps((*size, export, arguments))],
        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    words = done.stderr.split()
    if done.returncode != 0 or "peak" not in words:
        sys.exit(f"{export}{arguments}: {done.stderr}")
    at = words.index("peak")
    return int(words[at + 1]) if words[at + 2] == "True" else None


def report(name, library, size, export, arguments):
    """Prints one line; tells whether the call gave a picture."""
    peak = peak_of(library, size, export, arguments)
    text = "null" if peak is None else f"{peak / (size[0] * size[1]):6.1f}"
    print(f"{text}  {name}, {size[0]} x {size[1]}", flush=True)
    return peak is not None


def solver_rows(size):
    """The solvers of an unsplit scheme, with two limits each."""
    sizes = {DIRECT_SOLVER: DIRECT_SIZES, PRINTING_SOLVER: PRINTING_SIZES}
    for solver in range(42):
        for one in sizes.get(solver, (size,)):
            for limit in (5, 10):
                yield (f"2DSemi, solver {solver}, {limit} solverIterations", one, "ORVFastRestoration",
                       ("2DSemi", solver, 1, 2.0, limit, 0.7, 10.0, "PM", 0, 0))


def rows(options):
    """What is to be measured: name, size, export, arguments."""
    width = math.ceil(math.sqrt(1.5e6 * options.megapixels))
    size = (width, math.ceil(1e6 * options.megapixels / width))
    if options.solvers:
        yield from solver_rows(size)
        return
    for name, export, arguments in CALLS:
        for one in WAVELET_SIZES if export == "ORVWaveletDenoising" else (size,):
            yield name, one, export, arguments


def main():
    if len(sys.argv) == 4 and sys.argv[1] == "--child":
        width, height, export, arguments = json.loads(sys.argv[3])
        child(sys.argv[2], width, height, export, arguments)
        return
    parser = argparse.ArgumentParser()
    parser.add_argument("shared_object", metavar="LIBRARY")
    parser.add_argument("--megapixels", type=float, default=4)
    parser.add_argument("--only", default="")
    parser.add_argument("--solvers", action="store_true")
    options = parser.parse_args()
    library = os.path.abspath(options.shared_object)
    good = [report(name, library, *row) for name, *row in rows(options) if options.only in name]
    sys.exit(0 if good and all(good) else 1)


if __name__ == "__main__":
    main()
