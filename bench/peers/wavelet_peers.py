#!/usr/bin/env python3
"""Times the wavelet denoising of a library build against scikit-image and PyWavelets.

    bench/peers/wavelet_peers.py build/release/src/liborv.so [--turns 5]

Photos of about 4 megapixels, three channels, 9/7 filters, one thread. The library starts and ends
with 8 bits; the peers are given floats and give floats. Times are processor time, the best of all
turns; what is printed are ratios. The recipe around PyWavelets is the library's own: the noise from
the median of the finest details, a threshold of least SURE risk for each band, soft thresholding.
"""

import argparse
import ctypes
import os
import sys
import time

os.environ.update(OMP_NUM_THREADS="1", OPENBLAS_NUM_THREADS="1")

SIZES = [(2048, 2048), (2448, 1632)]


class BitmapHeader(ctypes.Structure):
    _fields_ = [("biSize", ctypes.c_uint32), ("biWidth", ctypes.c_int32),
                ("biHeight", ctypes.c_int32), ("biPlanes", ctypes.c_uint16),
                ("biBitCount", ctypes.c_uint16), ("rest", ctypes.c_uint32 * 6)]


def photo(np, width, height):
    """Returns bytes with shading, blocks and Gaussian noise of deviation 12."""
    y, x = np.mgrid[0:height, 0:width]
    clean = 60.0 + 50.0 * x / width + 60.0 * ((x // 97 + y // 61) & 1)
    noise = np.random.default_rng(1).normal(0.0, 12.0, (height, width, 3))
    return np.clip(clean[..., None] + noise, 0, 255).astype(np.uint8)


def best(turn, turns):
    times = []
    for _ in range(turns):
        start = time.process_time()
        turn()
        times.append(time.process_time() - start)
    return min(times)


def orv_turn(library, picture):
    lib = ctypes.CDLL(library)
    lib.ConvertORVImage.restype = ctypes.c_void_p
    lib.ConvertORVImage.argtypes = [ctypes.POINTER(BitmapHeader), ctypes.c_char_p]
    lib.ORVWaveletDenoising.restype = ctypes.c_void_p
    lib.ORVWaveletDenoising.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int,
                                        ctypes.c_int]
    lib.DestroyORVImage.argtypes = [ctypes.c_void_p]
    height, width, _ = picture.shape
    header = BitmapHeader(40, width, height, 1, 24)
    image = lib.ConvertORVImage(ctypes.byref(header), rows_of(picture))

    def turn(rule=b"SureShrink"):
        result = lib.ORVWaveletDenoising(image, rule, -1, 3)
        if not result:
            raise SystemExit("wavelet_peers: this library doesn't denoise by wavelets")
        lib.DestroyORVImage(result)

    return turn


def rows_of(picture):
    """Returns the rows as a bitmap has them, filled up to a multiple of four bytes."""
    height, width, _ = picture.shape
    fill = bytes(-3 * width % 4)
    return b"".join(row.tobytes() + fill for row in picture)


def sure_threshold(np, band):
    squares = np.sort(np.square(band), axis=None)
    n = squares.size
    i = np.arange(n)
    risk = squares * (n - i) + np.cumsum(squares) + (n - 2.0 * i)
    return np.sqrt(squares[np.argmin(risk)])


def recipe(np, pywt, plane):
    """Returns one plane denoised by SURE thresholds of its bands."""
    levels = int(np.log2(min(plane.shape))) - 3
    coefficients = pywt.wavedec2(plane, "bior4.4", "periodization", levels)
    noise = np.median(np.abs(np.concatenate([b.ravel() for b in coefficients[-1]]))) / 0.6745
    shrunk = coefficients[:1]
    for bands in coefficients[1:]:
        scaled = [band / noise for band in bands]
        shrunk.append(tuple(
            pywt.threshold(band, sure_threshold(np, band), "soft") * noise for band in scaled))
    return pywt.waverec2(shrunk, "bior4.4", "periodization")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("engine", help="path of liborv.so")
    parser.add_argument("--turns", type=int, default=5)
    options = parser.parse_args()
    try:
        import numpy as np
        import pywt
        from skimage.restoration import denoise_wavelet
    except ImportError as error:
        sys.exit(f"wavelet_peers: {error}")

    for width, height in SIZES:
        picture = photo(np, width, height)
        floats = picture.astype(np.float64) / 255.0
        planes = [np.ascontiguousarray(picture[..., c], dtype=np.float64) for c in range(3)]
        ours = best(orv_turn(options.engine, picture), options.turns)
        peers = {
            "scikit-image denoise_wavelet, BayesShrink": lambda: denoise_wavelet(
                floats, wavelet="bior4.4", mode="soft", method="BayesShrink",
                rescale_sigma=False, channel_axis=-1),
            "scikit-image denoise_wavelet, VisuShrink": lambda: denoise_wavelet(
                floats, wavelet="bior4.4", mode="soft", method="VisuShrink",
                rescale_sigma=False, channel_axis=-1),
            "PyWavelets, SURE recipe": lambda: [recipe(np, pywt, plane) for plane in planes],
        }
        for name, turn in peers.items():
            ratio = best(turn, max(options.turns // 2, 2)) / ours
            print(f"{width} x {height}: {name}: {ratio:.1f} times our time")


if __name__ == "__main__":
    main()
