#!/usr/bin/env python3
"""Checks that the noisy sample photos are what scripts/add_noise.py makes.

Samples are compared, not files: another version of zlib packs the same picture differently.
The PSNR of each has to be the one that examples/photos/README.md states.
"""

import os
import re
import sys
import tempfile

from add_noise import add_noise
from png_io import read_png, write_png
from psnr import psnr

PHOTOS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "photos")


def stated_psnr(name):
    """Returns the decibels that the README states for a photo, as text."""
    with open(os.path.join(PHOTOS, "README.md"), encoding="utf-8") as file:
        found = re.search(rf"`{name}-noisy\.png` \| ([\d.]+) dB", file.read())
    return found.group(1) if found else "none"


def problems_of(name):
    clean = read_png(os.path.join(PHOTOS, f"{name}.png"))
    kept = read_png(os.path.join(PHOTOS, f"{name}-noisy.png"))
    made = add_noise(clean, sigma=20.0, seed=1)
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "made.png")
        write_png(path, made)
        reread = read_png(path)
    if reread.samples != made.samples:
        yield f"{name}: writing and reading a PNG changes it"
    if made.samples != kept.samples:
        yield f"{name}-noisy.png is not what add_noise.py makes"
    if add_noise(clean, sigma=20.0, seed=2).samples == made.samples:
        yield f"{name}: the seed has no effect"
    figure = f"{psnr(clean, kept):.2f}"
    if figure != stated_psnr(name):
        yield f"{name}-noisy.png: {figure} dB, README.md states {stated_psnr(name)}"


def main():
    problems = [p for name in ("chelsea", "coffee") for p in problems_of(name)]
    for problem in problems:
        print(f"check_photos: {problem}")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
