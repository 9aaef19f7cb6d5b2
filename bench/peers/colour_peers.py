#!/usr/bin/env python3
"""Colour transfer and colouring against the same formulas in numpy, one thread, 4 megapixels.

    OMP_NUM_THREADS=1 bench/peers/colour_peers.py build/release/src/liborv.so

Prints ratios of processor time, the best of several turns each. Results are compared first.
"""

import ctypes
import struct
import sys
import time

import numpy as np

WIDTH, HEIGHT = 2448, 1632
TURNS = 5
LMS = np.array([[0.3811, 0.5783, 0.0402], [0.1967, 0.7244, 0.0782], [0.0241, 0.1288, 0.8444]])
RGB = np.array([[4.4679, -3.5873, 0.1193], [-1.2186, 2.3809, -0.1624], [0.0497, -0.2439, 1.2045]])
LAB = np.array([[1, 1, 1], [1, 1, -2], [1, -1, 0]]) * np.sqrt([[1 / 3], [1 / 6], [1 / 2]])


def photo(width, height, seed):
    """Returns bytes with shading, edges and noise, none of them 0."""
    y, x = np.mgrid[0:height, 0:width]
    shade = 60 + 70 * x / width + 55 * ((x // 97 + y // 61) & 1) + 8 * np.sin(0.31 * x)
    noise = np.random.default_rng(seed).integers(0, 32, (height, width, 3))
    return np.clip(shade[..., None] * (1.0, 0.8, 0.6 + 0.1 * seed) + noise, 1, 255).astype(np.uint8)


def to_lab(image, offset):
    return np.log10((image.reshape(-1, 3) + offset) / 256.0 @ LMS.T) @ LAB.T


def to_bytes(lab, shape):
    return np.clip(np.power(10.0, lab @ LAB) @ RGB.T * 256.0, 0, 255).astype(np.uint8).reshape(shape)


def recolor(source, style):
    goal = to_lab(style, 1.0)
    lab = to_lab(source, 1.0)
    lab -= lab.mean(axis=0)
    lab *= goal.std(axis=0) / lab.std(axis=0)
    lab += goal.mean(axis=0)
    return to_bytes(lab, source.shape)


class Engine:
    """The C face on bytes."""

    def __init__(self, path):
        self.lib = ctypes.CDLL(path)
        for name in (
            "ConvertORVImage",
            "GetORVImageData",
            "ORVISimpleColorTranfer",
            "ORVIColorToGreyTranfertOp",
        ):
            getattr(self.lib, name).restype = ctypes.c_void_p
        self.lib.DestroyORVImage.argtypes = [ctypes.c_void_p]
        self.lib.GetORVImageData.argtypes = [ctypes.c_void_p]
        self.lib.ORVISimpleColorTranfer.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
        self.lib.ORVIColorToGreyTranfertOp.argtypes = [ctypes.c_void_p, ctypes.c_void_p]

    def handle(self, image):
        height, width, _ = image.shape
        header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, 0, 0, 0, 0, 0)
        pad = -3 * width % 4
        rows = np.pad(image.reshape(height, -1), ((0, 0), (0, pad)))
        return self.lib.ConvertORVImage(header, rows.tobytes())

    def run(self, name, first, second):
        return getattr(self.lib, name)(first, second)

    def bytes_of(self, handle, shape):
        address = self.lib.GetORVImageData(handle)
        size = shape[0] * shape[1] * 3
        return np.frombuffer(ctypes.string_at(address, size), np.uint8).reshape(shape)


def best(turn):
    times = []
    for _ in range(TURNS):
        start = time.process_time()
        turn()
        times.append(time.process_time() - start)
    return min(times)


def windows(light):
    """Returns (mean + deviation) / 2 over the clipped 6 x 6 windows, by sums of shifted planes."""
    height, width = light.shape
    padded = np.pad(light, 3)
    ones = np.pad(np.ones_like(light), 3)
    total, squares, count = (np.zeros_like(light) for _ in range(3))
    for i in range(6):
        for j in range(6):
            v = padded[j : j + height, i : i + width]
            total += v
            squares += v * v
            count += ones[j : j + height, i : i + width]
    mean = total / count
    return (mean + np.sqrt(np.maximum(squares / count - mean * mean, 0.0))) * 0.5


def colorize(grey, colour):
    lab = to_lab(colour, 0.0).reshape(colour.shape)
    height, width, _ = colour.shape
    count = (width + height) // 2
    rng = np.random.default_rng(1)
    xs = rng.integers(5, width - 5, count)
    ys = rng.integers(5, height - 5, count)
    areas = np.array([lab[y : y + 5, x : x + 5, 0].ravel() for x, y in zip(xs, ys)])
    scores = (areas.mean(axis=1) + areas.std(axis=1)) * 0.5
    order = np.argsort(scores)
    middles = (scores[order][1:] + scores[order][:-1]) / 2
    out = to_lab(grey, 0.0).reshape(grey.shape)
    match = order[np.searchsorted(middles, windows(out[..., 0]))]
    out[..., 1:] = lab[ys + 2, xs + 2, 1:][match]
    return to_bytes(out.reshape(-1, 3), grey.shape)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    engine = Engine(sys.argv[1])
    source, style = photo(WIDTH, HEIGHT, 1), photo(612, 408, 2)
    grey = np.repeat(source[..., 1:2], 3, axis=2)
    handles = [engine.handle(image) for image in (source, style, grey)]

    result = engine.run("ORVISimpleColorTranfer", handles[0], handles[1])
    if not result:
        sys.exit("colour_peers.py: this library refuses")
    apart = np.abs(engine.bytes_of(result, source.shape).astype(int) - recolor(source, style))
    engine.lib.DestroyORVImage(result)
    if apart.max() > 1 or np.count_nonzero(apart) > apart.size / 1000:
        sys.exit(f"colour_peers.py: results differ by {apart.max()} in {np.count_nonzero(apart)}")

    def call(name, first):
        engine.lib.DestroyORVImage(engine.run(name, first, handles[1]))

    own = best(lambda: call("ORVISimpleColorTranfer", handles[0]))
    peer = best(lambda: recolor(source, style))
    print(f"recolor: {peer / own:.1f} times as fast as numpy")
    own = best(lambda: call("ORVIColorToGreyTranfertOp", handles[2]))
    peer = best(lambda: colorize(grey, style))
    print(f"colorize: {peer / own:.1f} times as fast as numpy with sorted swatches")


if __name__ == "__main__":
    main()
