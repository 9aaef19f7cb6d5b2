#!/usr/bin/env python3
"""Prints the peak signal-to-noise ratio between PNGs, in decibels.

    psnr = 10 log10(255^2 / mean squared difference)

With two pictures one figure is printed, with three the figures of the second and of the third
against the first (before and after) and the gain. An alpha channel does not count.
"""

import argparse
import math
import sys

from png_io import read_png


def colour_samples(picture):
    """Returns the samples without alpha."""
    if picture.channels != 4:
        return picture.samples
    return bytes(s for i, s in enumerate(picture.samples) if i % 4 != 3)


def psnr(first, second):
    """Returns decibels; infinity for equal pictures; raises ValueError when sizes differ."""
    if (first.width, first.height) != (second.width, second.height):
        raise ValueError("the pictures differ in size")
    a = colour_samples(first)
    b = colour_samples(second)
    if len(a) != len(b):
        raise ValueError("the pictures differ in their channels")
    squares = sum((x - y) * (x - y) for x, y in zip(a, b))
    if squares == 0:
        return math.inf
    return 10.0 * math.log10(255.0 * 255.0 * len(a) / squares)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("clean")
    parser.add_argument("before")
    parser.add_argument("after", nargs="?")
    parser.add_argument("--least", type=float, help="exit with 1 below this figure or gain")
    arguments = parser.parse_args()
    try:
        clean = read_png(arguments.clean)
        figure = psnr(clean, read_png(arguments.before))
        if arguments.after is None:
            print(f"{figure:.2f} dB")
        else:
            after = psnr(clean, read_png(arguments.after))
            print(f"before {figure:.2f} dB, after {after:.2f} dB, gain {after - figure:+.2f} dB")
            figure = after - figure
    except (OSError, ValueError) as error:
        sys.exit(f"psnr.py: {error}")
    if arguments.least is not None and figure < arguments.least:
        sys.exit(f"psnr.py: {figure:.2f} dB is below {arguments.least:.2f} dB")


if __name__ == "__main__":
    main()
