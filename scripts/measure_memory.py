#!/usr/bin/env python3
"""Measures what runs of the tool hold in memory at their peak, and compares that with the estimate.

Usage: scripts/measure_memory.py TOOL [--sizes 1,4,16] [--only TEXT]

Sizes are megapixels. The estimate is what the tool itself says that a run needs, when it is given
too little by --max-memory. It has to lie between 3 percent below and 30 percent above the peak
resident memory. Ends with 1 where it doesn't.
"""

import argparse
import math
import os
import random
import re
import subprocess
import sys
import tempfile
from pathlib import Path

LEAST = -0.03
MOST = 0.30

UNSPLIT = ["--steps", "1", "--tau", "100", "--contrast", "50", "--solver-iterations", "4", "--scheme"]

# Every method with the options that change what it holds.
RUNS = (
    "blur",
    "blur --extend none",
    "blur --sigma 40",
    "homomorphic",
    "homomorphic --extend none",
    "curvature --steps 1",
    "curvature --steps 1 --flow full-color-beltrami",
    "deblur",
    "deblur --keep-observed no",
    "shock --iterations 1",
    "susan --passes 1",
    "wavelet",
    "wavelet --extend zero",
    "wavelet --wavelet haar --rule visu --levels 2",
    "retinex",
    "retinex --levels 1",
    "recolor",
    "recolor --strength 0.5",
    "colorize",
    "restore --steps 1",
    "restore --steps 2 --sigma 0",
    "restore --steps 1 --scheme LOD",
    "restore --steps 1 --scheme AFI",
    "restore --steps 1 --scheme ADI",
    "restore --steps 1 --scheme AMOS",
    "denoise --steps 2",
    "denoise --steps 1 --scheme ADI",
)

# Unsplit schemes keep what their solver needs of the whole plane: one solver of each need.
SOLVERS = (
    ("2DSemi", "GS"),
    ("2DSemi", "CG"),
    ("2DSemi", "QMR"),
    ("2DSemi", "BiCGStab"),
    ("2DSemi", "24"),
    ("2DSemi", "25"),
    ("2DSemi", "27"),
    ("2DSemi", "30"),
    ("2DSemi", "33"),
    ("2DSemi", "36"),
    ("2DSemi", "41"),
    ("2DImplicit", "CG"),
    ("2DImplicit", "16"),
)


def all_runs():
    """The command lines of all runs, verb first."""
    runs = [text.split() for text in RUNS]
    runs += [["restore", *UNSPLIT, scheme, "--solver", solver] for scheme, solver in SOLVERS]
    return runs


def write_picture(path, width, height, channels, depth):
    """A noisy picture: the same rows of noise at shifting places."""
    length = width * channels * depth // 8
    noise = random.Random(1).randbytes(length + 7777)
    with open(path, "wb") as file:
        file.write(f"P{6 if channels == 3 else 5}\n{width} {height}\n{(1 << depth) - 1}\n".encode())
        for y in range(height):
            at = y * 131 % 7777
            file.write(noise[at : at + length])


def peak_of(command):
    """Exit code and peak resident memory of a command, in bytes.

    A process of its own starts it: the peak of a child counts from that of its parent."""
    code = (
        "import os,subprocess,sys;"
        "child=subprocess.Popen(sys.argv[1:],stdout=subprocess.DEVNULL,stderr=subprocess.DEVNULL);"
        "_,status,usage=os.wait4(child.pid,0);"
        "print(os.waitstatus_to_exitcode(status),usage.ru_maxrss)"
    )
    done = subprocess.run([sys.executable, "-S", "-c", code, *command], capture_output=True, check=True)
    status, kilobytes = map(int, done.stdout.split())
    return status, 1024 * kilobytes


def estimate_of(command):
    """What the tool says that the command needs, in bytes."""
    done = subprocess.run([*command, "--max-memory", "1K"], capture_output=True, text=True)
    found = re.search(r"--max-memory (\d+)M$", done.stderr.strip())
    if done.returncode != 6 or not found:
        sys.exit(f"no estimate from {' '.join(command)}: {done.stderr}")
    return 1e6 * int(found.group(1))


class Measurement:
    """One run on one picture."""

    def __init__(self, tool, folder, run, size, channels, depth):
        self.name = f"{' '.join(run)}, {'colour' if channels == 3 else 'grey'} {depth}-bit {size[0]} x {size[1]}"
        pictures = []
        for kind in (channels, 3):
            path = Path(folder) / f"{size[0]}x{size[1]}x{kind}x{depth}.ppm"
            if not path.exists():
                write_picture(path, *size, kind, depth)
            pictures.append(str(path))
        taken = pictures if run[0] in ("recolor", "colorize") else pictures[:1]
        command = [tool, run[0], *taken, "-o", str(Path(folder) / "result.ppm"), "-f", "-q", *run[1:]]
        self.estimate = estimate_of(command)
        self.status, self.peak = peak_of(command)

    @property
    def excess(self):
        """How far the estimate lies above the peak, as a share of it."""
        return self.estimate / self.peak - 1

    @property
    def good(self):
        return self.status == 0 and LEAST <= self.excess <= MOST

    def __str__(self):
        text = f"{self.peak / 1e6:8.0f} MB, estimate {self.estimate / 1e6:6.0f} MB, {100 * self.excess:+4.0f} %"
        return f"{text}  {self.name}" + ("" if self.good else "  <-- WRONG" if self.status == 0 else "  <-- FAILED")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("tool")
    parser.add_argument("--sizes", default="1,4,16")
    parser.add_argument("--only", default="")
    options = parser.parse_args()
    bad = 0
    with tempfile.TemporaryDirectory() as folder:
        for megapixels in map(float, options.sizes.split(",")):
            width = math.ceil(math.sqrt(1.5e6 * megapixels))
            size = (width, math.ceil(1e6 * megapixels / width))
            for run in all_runs():
                for channels, depth in ((1, 8), (3, 8), (3, 16)):
                    if "full-color-beltrami" in run and channels == 1:
                        continue
                    if options.only in " ".join(run):
                        measured = Measurement(os.path.abspath(options.tool), folder, run, size, channels, depth)
                        bad += not measured.good
                        print(measured, flush=True)
    sys.exit(1 if bad else 0)


if __name__ == "__main__":
    main()
