#!/usr/bin/env python3
"""Times the blur of a library build against ffmpeg's gblur and scikit-image's gaussian.

    bench/peers/blur_peers.py build/release/src/liborv.so [--sigma 8] [--turns 7]

One made-up photo of 4 megapixels, three channels of 8 bits in and out, one thread. Times are
processor time, the best of all turns; what is printed are ratios. ffmpeg works on planes, so its
time holds the way to planes and back as that of the library does; the time of the same stream
without them is taken off. With its one step by default gblur weights by exp(-|x|), which is no
Gaussian; three steps come as near as the third-order recursion.
"""

import argparse
import ctypes
import random
import re
import shutil
import subprocess
import tempfile
import time

WIDTH, HEIGHT, FRAMES = 2448, 1632, 8


class BitmapHeader(ctypes.Structure):
    _fields_ = [("biSize", ctypes.c_uint32), ("biWidth", ctypes.c_int32),
                ("biHeight", ctypes.c_int32), ("biPlanes", ctypes.c_uint16),
                ("biBitCount", ctypes.c_uint16), ("rest", ctypes.c_uint32 * 6)]


def photo():
    """Returns packed pixels: noise around a middle grey, the same in each row."""
    row = bytes(128 + (value & 31) for value in random.Random(1).randbytes(WIDTH * 3))
    return row * HEIGHT


def best(turn, turns):
    times = []
    for _ in range(turns):
        start = time.process_time()
        turn()
        times.append(time.process_time() - start)
    return min(times)


def orv_time(library, pixels, sigma, turns):
    lib = ctypes.CDLL(library)
    lib.ConvertORVImage.restype = ctypes.c_void_p
    lib.ConvertORVImage.argtypes = [ctypes.POINTER(BitmapHeader), ctypes.c_char_p]
    lib.ORVIFVanVieltBlurringIirOp.restype = ctypes.c_void_p
    lib.ORVIFVanVieltBlurringIirOp.argtypes = [ctypes.c_void_p, ctypes.c_double]
    lib.DestroyORVImage.argtypes = [ctypes.c_void_p]
    header = BitmapHeader(40, WIDTH, HEIGHT, 1, 24)
    image = lib.ConvertORVImage(ctypes.byref(header), pixels)

    def turn():
        result = lib.ORVIFVanVieltBlurringIirOp(image, sigma)
        if not result:
            raise SystemExit("blur_peers: this library doesn't blur")
        lib.DestroyORVImage(result)

    taken = best(turn, turns)
    lib.DestroyORVImage(image)
    return taken


def ffmpeg_time(path, chain):
    """Returns the processor time of one stream through a filter chain, packed pixels both ends."""
    run = subprocess.run(
        ["ffmpeg", "-hide_banner", "-benchmark", "-threads", "1", "-filter_threads", "1",
         "-f", "rawvideo", "-pixel_format", "bgr24", "-video_size", f"{WIDTH}x{HEIGHT}",
         "-stream_loop", str(FRAMES - 1), "-i", path, "-vf", chain + ",format=bgr24",
         "-f", "null", "-"],
        capture_output=True, text=True, check=True)
    parts = re.search(r"utime=([0-9.]+)s stime=([0-9.]+)s", run.stderr)
    return float(parts.group(1)) + float(parts.group(2))


def gblur_time(pixels, sigma, steps, turns):
    with tempfile.NamedTemporaryFile(suffix=".raw") as file:
        file.write(pixels)
        file.flush()
        plain = min(ffmpeg_time(file.name, "null") for _ in range(turns))
        chain = f"format=gbrp,gblur=sigma={sigma}:steps={steps}"
        blurred = min(ffmpeg_time(file.name, chain) for _ in range(turns))
    return (blurred - plain) / FRAMES


def skimage_time(pixels, sigma, turns):
    import numpy
    from skimage.filters import gaussian
    picture = numpy.frombuffer(pixels, numpy.uint8).reshape(HEIGHT, WIDTH, 3)

    def turn():
        gaussian(picture.astype(numpy.float32), sigma, channel_axis=2).astype(numpy.uint8)

    return best(turn, min(turns, 2))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("engine", help="path of liborv.so")
    parser.add_argument("--sigma", type=float, default=8.0)
    parser.add_argument("--turns", type=int, default=7)
    options = parser.parse_args()
    pixels = photo()
    own = orv_time(options.engine, pixels, options.sigma, options.turns)
    if shutil.which("ffmpeg"):
        for steps in (1, 3):
            ratio = gblur_time(pixels, options.sigma, steps, options.turns) / own
            print(f"times as fast as ffmpeg gblur, steps {steps}: {ratio:.1f}", flush=True)
    try:
        ratio = skimage_time(pixels, options.sigma, options.turns) / own
        print(f"times as fast as scikit-image gaussian: {ratio:.1f}")
    except ImportError:
        print("scikit-image isn't installed")


if __name__ == "__main__":
    main()
