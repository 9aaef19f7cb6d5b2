#!/usr/bin/env python3
"""Takes the colour out of a PNG: one channel, (299 red + 587 green + 114 blue) / 1000.

    make_grey.py examples/photos/chelsea.png chelsea-grey.png
"""

import sys

from png_io import Picture, read_png, write_png


def grey(picture):
    """Returns the picture with one channel; one that has no colour comes back as it is."""
    if picture.channels == 1:
        return picture
    red, green, blue = (picture.samples[c :: picture.channels] for c in range(3))
    samples = bytes(
        (299 * r + 587 * g + 114 * b) // 1000 for r, g, b in zip(red, green, blue)
    )
    return Picture(picture.width, picture.height, 1, samples)


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: make_grey.py INPUT OUTPUT")
    try:
        write_png(sys.argv[2], grey(read_png(sys.argv[1])))
    except (OSError, ValueError) as error:
        sys.exit(f"make_grey.py: {error}")


if __name__ == "__main__":
    main()
