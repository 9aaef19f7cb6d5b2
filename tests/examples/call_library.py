"""Restores raw pixels as the example hosts do, with nothing of theirs: FILE WIDTH HEIGHT, pixels
without padding on the standard input and output."""

import ctypes
import struct
import sys

library = ctypes.CDLL(sys.argv[1])
width, height = int(sys.argv[2]), int(sys.argv[3])
handle, number, real, text = ctypes.c_void_p, ctypes.c_int, ctypes.c_double, ctypes.c_char_p
library.ConvertORVImage.restype = handle
library.ConvertORVImage.argtypes = [text, text]
library.GetORVImageData.restype = handle
library.GetORVImageData.argtypes = [handle]
library.ORVFastRestoration.restype = handle
library.ORVFastRestoration.argtypes = [
    handle, text, number, number, real, number, real, real, text, number, number
]  # fmt: skip

pixels = sys.stdin.buffer.read()
row = width * 3
rows = b"".join(pixels[y * row : (y + 1) * row] + bytes(-row % 4) for y in range(height))
header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, 0, 0, 0, 0, 0)
image = library.ConvertORVImage(header, rows)
for _ in range(3):
    image = library.ORVFastRestoration(image, b"AOS", 0, 1, 2.0, 5, 0.7, 4.0, b"PM", 0, 0)
sys.stdout.buffer.write(ctypes.string_at(library.GetORVImageData(image), row * height))
