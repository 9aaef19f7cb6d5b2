#!/usr/bin/env python3
"""Adds seeded white Gaussian noise to a PNG.

    noisy = clip(round(sample + sigma n), 0, 255),   n from the standard normal distribution

Every colour sample gets a value of its own; an alpha channel stays. The normal values come in
pairs from uniform ones by the method of Box and Muller, and the uniform ones from Python's
Mersenne Twister, whose sequence for a seed is fixed. The same seed gives the same picture.
"""

import argparse
import math
import random
import sys

from png_io import Picture, read_png, write_png


def normal_values(seed):
    """Yields standard normal values without end."""
    generator = random.Random(seed)
    while True:
        radius = math.sqrt(-2.0 * math.log(1.0 - generator.random()))
        angle = 2.0 * math.pi * generator.random()
        yield radius * math.cos(angle)
        yield radius * math.sin(angle)


def add_noise(picture, sigma, seed):
    """Returns a new Picture."""
    noise = normal_values(seed)
    samples = bytearray(picture.samples)
    for i, sample in enumerate(picture.samples):
        if picture.channels == 4 and i % 4 == 3:
            continue
        value = math.floor(sample + sigma * next(noise) + 0.5)
        samples[i] = min(max(value, 0), 255)
    return Picture(picture.width, picture.height, picture.channels, samples)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("input")
    parser.add_argument("output")
    parser.add_argument("--sigma", type=float, default=20.0, help="grey levels [default: 20]")
    parser.add_argument("--seed", type=int, default=1, help="[default: 1]")
    arguments = parser.parse_args()
    try:
        picture = read_png(arguments.input)
        write_png(arguments.output, add_noise(picture, arguments.sigma, arguments.seed))
    except (OSError, ValueError) as error:
        sys.exit(f"add_noise.py: {error}")


if __name__ == "__main__":
    main()
