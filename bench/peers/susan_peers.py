#!/usr/bin/env python3
"""Compares a SUSAN pass with the bilateral filter of scikit-image.

    bench/peers/susan_peers.py build/<preset>/src/liborv.so [--turns N]

Prints how many times faster liborv is, by processor time in one thread, the best of several
turns. scikit-image takes long: it runs on a quarter of a megapixel, one channel at a time, and
its time is taken a pixel. Its window is 7 by 7, as wide as the SUSAN disc.
"""

import argparse
import ctypes
import os
import time

for name in ("OMP_NUM_THREADS", "OPENBLAS_NUM_THREADS", "MKL_NUM_THREADS"):
    os.environ[name] = "1"

import numpy  # noqa: E402
from skimage.restoration import denoise_bilateral  # noqa: E402

THRESHOLD = 20.0
SIGMA = 1.5


class Header(ctypes.Structure):
    """What the conversion reads of a bitmap header stands in its first three fields."""

    _fields_ = [("biSize", ctypes.c_uint32), ("biWidth", ctypes.c_int32), ("biHeight", ctypes.c_int32),
                ("biPlanes", ctypes.c_uint16), ("biBitCount", ctypes.c_uint16),
                ("rest", ctypes.c_uint32 * 6)]


def picture(width, height):
    """Returns bytes with shading, edges and noise."""
    x, y = numpy.arange(width), numpy.arange(height)[:, None]
    shade = 60 + 70 * x / width + 55 * ((x // 97 + y // 61) % 2)
    noise = numpy.random.default_rng(1).integers(0, 32, (height, width, 3))
    return (shade[:, :, None] + noise).astype(numpy.uint8)


def best_time(turns, work):
    """Returns the shortest processor time of several turns."""
    best = float("inf")
    for _ in range(turns):
        start = time.process_time()
        work()
        best = min(best, time.process_time() - start)
    return best


def engine_call(library, pixels):
    """Returns a function that runs one pass on a handle and frees the result."""
    for name in ("ConvertORVImage", "ORVISusanRestoration"):
        getattr(library, name).restype = ctypes.c_void_p
    height, width = pixels.shape[:2]
    header = Header(40, width, height, 1, 24)
    image = ctypes.c_void_p(library.ConvertORVImage(ctypes.byref(header), pixels.ctypes.data_as(ctypes.c_void_p)))

    def run():
        result = library.ORVISusanRestoration(image, 1, ctypes.c_double(THRESHOLD), ctypes.c_double(SIGMA))
        if not result:
            raise SystemExit("susan_peers: ORVISusanRestoration refuses")
        library.DestroyORVImage(ctypes.c_void_p(result))

    return run


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("engine", help="path of liborv.so")
    parser.add_argument("--turns", type=int, default=5)
    arguments = parser.parse_args()

    # Widths that are multiples of 4: rows without padding.
    large, small = picture(2448, 1632), picture(612, 408)
    engine = best_time(arguments.turns, engine_call(ctypes.CDLL(arguments.engine), large)) / (2448 * 1632)

    def bilateral():
        for channel in range(3):
            denoise_bilateral(small[:, :, channel], win_size=7, sigma_color=THRESHOLD / 255 / 2**0.5,
                              sigma_spatial=SIGMA)

    peer = best_time(1, bilateral) / (612 * 408)
    print(f"scikit-image denoise_bilateral: {peer / engine:.1f} times the time of a SUSAN pass")


if __name__ == "__main__":
    main()
