#!/usr/bin/env python3
"""Joins PNGs of one size into one picture, left to right, with a white gap between them.

    side_by_side.py before.png after.png both.png
    side_by_side.py before.png after.png both.png --part 200,100,120,80 --zoom 3

A part is cut out of every picture first; zoom repeats each pixel, so that no sample changes.
Beside a colour picture, a grey one gets three equal channels.
"""

import argparse
import sys

from png_io import Picture, read_png, write_png

GAP = 8


def cut(picture, part):
    """Returns the part (x, y, width, height) of the picture."""
    x, y, width, height = part
    if x < 0 or y < 0 or x + width > picture.width or y + height > picture.height:
        raise ValueError("the part leaves the picture")
    samples = bytearray()
    for row in range(y, y + height):
        start = (row * picture.width + x) * picture.channels
        samples += picture.samples[start : start + width * picture.channels]
    return Picture(width, height, picture.channels, samples)


def zoom(picture, factor):
    """Returns the picture with every pixel repeated in both directions."""
    step = picture.channels
    stride = picture.width * step
    samples = bytearray()
    for y in range(picture.height):
        row = picture.samples[y * stride : (y + 1) * stride]
        wide = b"".join(bytes(row[i : i + step]) * factor for i in range(0, stride, step))
        samples += wide * factor
    return Picture(picture.width * factor, picture.height * factor, step, samples)


def in_colour(picture):
    """Returns a grey picture with three equal channels, any other as it is."""
    if picture.channels != 1:
        return picture
    samples = b"".join(picture.samples[i : i + 1] * 3 for i in range(len(picture.samples)))
    return Picture(picture.width, picture.height, 3, samples)


def join(pictures):
    """Returns one Picture; raises ValueError when sizes or channels differ."""
    if any(picture.channels == 3 for picture in pictures):
        pictures = [in_colour(picture) for picture in pictures]
    first = pictures[0]
    forms = {(p.width, p.height, p.channels) for p in pictures}
    if len(forms) != 1:
        raise ValueError("the pictures differ in size or channels")
    stride = first.width * first.channels
    gap = b"\xff" * (GAP * first.channels)
    samples = bytearray()
    for y in range(first.height):
        rows = [bytes(p.samples[y * stride : (y + 1) * stride]) for p in pictures]
        samples += gap.join(rows)
    width = first.width * len(pictures) + GAP * (len(pictures) - 1)
    return Picture(width, first.height, first.channels, samples)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("pictures", nargs="+", metavar="INPUT... OUTPUT")
    parser.add_argument("--part", metavar="X,Y,WIDTH,HEIGHT")
    parser.add_argument("--zoom", type=int, default=1)
    arguments = parser.parse_args()
    *inputs, output = arguments.pictures
    if not inputs:
        parser.error("at least one input and the output are needed")
    try:
        pictures = [read_png(path) for path in inputs]
        if arguments.part:
            part = [int(value) for value in arguments.part.split(",")]
            pictures = [cut(picture, part) for picture in pictures]
        write_png(output, join([zoom(picture, arguments.zoom) for picture in pictures]))
    except (OSError, ValueError) as error:
        sys.exit(f"side_by_side.py: {error}")


if __name__ == "__main__":
    main()
