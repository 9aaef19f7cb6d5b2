#!/usr/bin/env python3
"""Times the Retinex of a library build against the same formulas in numpy and gmic's retinex.

    bench/peers/retinex_peers.py build/release/src/liborv.so [--turns 5]

One made-up photo of 4 megapixels, three channels of 8 bits in and out. Times are processor time,
the best of all turns; what is printed are ratios. The results of numpy are compared first. gmic's
retinex is the multiscale one by Gaussian blurs, another way to the same end; the time that it
takes to read and write the picture is taken off, and its processor time counts all its threads.
"""

import argparse
import ctypes
import resource
import shutil
import subprocess
import tempfile
import time

import numpy

WIDTH, HEIGHT = 2448, 1632
GAMMA, ALPHA, BETA, LEVELS = 2.0, 0.0001, 0.1, 9


class BitmapHeader(ctypes.Structure):
    _fields_ = [("biSize", ctypes.c_uint32), ("biWidth", ctypes.c_int32),
                ("biHeight", ctypes.c_int32), ("biPlanes", ctypes.c_uint16),
                ("biBitCount", ctypes.c_uint16), ("rest", ctypes.c_uint32 * 6)]


def photo():
    """Returns rows of pixels: light that falls off to one side, hard edges and noise."""
    x, y = numpy.meshgrid(numpy.arange(WIDTH), numpy.arange(HEIGHT))
    light = 20.0 + 90.0 * x / WIDTH + 60.0 * ((x // 97 + y // 61) % 2)
    noise = numpy.random.default_rng(1).uniform(0, 30, (HEIGHT, WIDTH, 3))
    return (light[:, :, None] + noise).astype(numpy.uint8)


def best(turn, turns):
    times = []
    for _ in range(turns):
        start = time.process_time()
        turn()
        times.append(time.process_time() - start)
    return min(times)


def laplacian(p):
    result = numpy.zeros_like(p)
    result[1:-1, 1:-1] = p[1:-1, :-2] + p[1:-1, 2:] + p[2:, 1:-1] + p[:-2, 1:-1] - 4 * p[1:-1, 1:-1]
    for y in (0, -1):
        result[1:-1, y] = p[:-2, y] + p[2:, y] - 2 * p[1:-1, y]
    for x in (0, -1):
        result[x, 1:-1] = p[x, :-2] + p[x, 2:] - 2 * p[x, 1:-1]
    return result


def reduced(p):
    """Smooths by 1 2 1 and takes every other sample; borders weigh what is there."""
    def smoothed(q):
        r = 2 * q
        r[1:] += q[:-1]
        r[:-1] += q[1:]
        return r
    weights = smoothed(smoothed(numpy.ones_like(p)).T).T
    full = smoothed(smoothed(p).T).T / weights
    return full[:p.shape[0] // 2 * 2:2, :p.shape[1] // 2 * 2:2]


def expanded(l, s):
    w, h = l.shape
    v = numpy.empty_like(s)
    v[0:2 * w:2, 0:2 * h:2] = l
    v[1:2 * w - 1:2, 0:2 * h:2] = (l[1:] + l[:-1]) * 0.5
    v[0:2 * w:2, 1:2 * h - 1:2] = (l[:, 1:] + l[:, :-1]) * 0.5
    v[1:2 * w - 1:2, 1:2 * h - 1:2] = (l[:-1, :-1] + l[:-1, 1:] + l[1:, 1:] + l[1:, :-1]) * 0.25
    floor = numpy.repeat(numpy.repeat(s[:(s.shape[0] + 1) // 2, :(s.shape[1] + 1) // 2], 2, 0), 2, 1)
    floor = floor[:s.shape[0], :s.shape[1]]
    numpy.maximum(v[:2 * w - 1, :2 * h - 1], floor[:2 * w - 1, :2 * h - 1], out=v[:2 * w - 1, :2 * h - 1])
    # What lies beyond the coarse samples keeps the one done before.
    for y in range(2 * h - 1, s.shape[1]):
        v[:2 * w - 1, y] = numpy.maximum(v[:2 * w - 1, y - 1], floor[:2 * w - 1, y])
    for x in range(2 * w - 1, s.shape[0]):
        v[x] = numpy.maximum(v[x - 1, -1], numpy.maximum.accumulate(floor[x]))
    return v


def numpy_plane(plane):
    source = (plane + 1.0) / 256.0
    pyramid = [numpy.log(source)]
    for _ in range(1, LEVELS):
        pyramid.append(reduced(pyramid[-1]))
    l = numpy.full_like(pyramid[-1], pyramid[-1].max())
    for k in range(LEVELS - 1, 0, -1):
        s = pyramid[k]
        d = laplacian(s)
        for _ in range(4 * k):
            a = laplacian(l)
            g = a + (l - s) * ALPHA - (a - d) * BETA
            m_a = (g * g).sum() / g.size
            m_b = -(g * laplacian(g)).sum() / g.size
            mu = min(abs(m_a / (ALPHA * m_a + (BETA + 1) * m_b)), 0.2)
            l = numpy.maximum(l + mu * g, s)
        l = expanded(l, pyramid[k - 1])
    return numpy.minimum(source / numpy.exp(l) ** (1 - 1 / GAMMA), 1.0) * 255.0


def numpy_run(pixels):
    result = numpy.empty_like(pixels)
    for c in range(3):
        plane = numpy.ascontiguousarray(pixels[:, :, c].T, dtype=numpy.float64)
        result[:, :, c] = numpy_plane(plane).T.astype(numpy.uint8)
    return result


class Library:
    def __init__(self, path, pixels):
        self.lib = ctypes.CDLL(path)
        self.lib.ConvertORVImage.restype = ctypes.c_void_p
        self.lib.ConvertORVImage.argtypes = [ctypes.POINTER(BitmapHeader), ctypes.c_char_p]
        self.lib.ORVRetinex.restype = ctypes.c_void_p
        self.lib.ORVRetinex.argtypes = [ctypes.c_void_p] + [ctypes.c_double] * 3 + [ctypes.c_int]
        self.lib.GetORVImageData.restype = ctypes.c_void_p
        self.lib.GetORVImageData.argtypes = [ctypes.c_void_p]
        self.lib.DestroyORVImage.argtypes = [ctypes.c_void_p]
        header = BitmapHeader(40, WIDTH, HEIGHT, 1, 24)
        self.image = self.lib.ConvertORVImage(ctypes.byref(header), pixels.tobytes())

    def run(self, read=False):
        result = self.lib.ORVRetinex(self.image, GAMMA, ALPHA, BETA, LEVELS)
        if not result:
            raise SystemExit("retinex_peers: this library gives no picture")
        data = None
        if read:
            raw = ctypes.string_at(self.lib.GetORVImageData(result), WIDTH * HEIGHT * 3)
            data = numpy.frombuffer(raw, numpy.uint8).reshape(HEIGHT, WIDTH, 3)
        self.lib.DestroyORVImage(result)
        return data


def children_time(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, capture_output=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def gmic_time(pixels, turns):
    with tempfile.TemporaryDirectory() as folder:
        path = f"{folder}/photo.ppm"
        with open(path, "wb") as file:
            file.write(b"P6 %d %d 255\n" % (WIDTH, HEIGHT) + pixels.tobytes())
        ends = ["gmic", "-v", "0", path], ["o", f"{folder}/out.ppm"]
        plain = min(children_time(ends[0] + ends[1]) for _ in range(turns))
        return min(children_time(ends[0] + ["retinex", ","] + ends[1]) for _ in range(turns)) - plain


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("engine", help="path of liborv.so")
    parser.add_argument("--turns", type=int, default=5)
    options = parser.parse_args()
    pixels = photo()
    library = Library(options.engine, pixels)
    # Roundings of the functions may show in the truncated byte of a few samples.
    off = numpy.abs(library.run(read=True).astype(int) - numpy_run(pixels))
    if off.max() > 1 or (off > 0).mean() > 1e-5:
        raise SystemExit("retinex_peers: numpy gives another picture")
    own = best(library.run, options.turns)
    ratio = best(lambda: numpy_run(pixels), min(options.turns, 3)) / own
    print(f"times as fast as the same in numpy: {ratio:.1f}", flush=True)
    if shutil.which("gmic"):
        ratio = gmic_time(pixels, min(options.turns, 3)) / own
        print(f"times as fast as gmic's multiscale retinex: {ratio:.1f}")


if __name__ == "__main__":
    main()
