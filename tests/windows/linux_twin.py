#!/usr/bin/env python3
"""Does what examples/windows/dib_host.c does, with the library of this machine.

Reads the pictures that dib_host wrote and prints the lines that it printed: pixels, progress and
the library's own text have to be equal. Its restored.bmp has to hold the pixels that come out here.
"""

import argparse
import ctypes
import os
import struct
import sys
import threading
from ctypes import POINTER, c_bool, c_char_p, c_double, c_int, c_void_p

HEADERS = 54
CALLBACK = ctypes.CFUNCTYPE(None, c_int)
C_RUNTIME = ctypes.CDLL(None)

# Name, arguments behind the pictures, pictures. As restore() of dib_host.c has them.
RESTORATIONS = (
    ("ORVFastRestoration", (b"AOS", 0, 1, 2.0, 5, 0.7, 10.0, b"PM", 0, 0), ("photo",)),
    ("ORVFastDenoiser", (b"LOD", 7, 2, 1.0, 20, 0.7, 8.0, 0.1, b"VAR", 1, 0), ("photo",)),
    ("ORVIFAosBarashOp", (2, 5, 0.5, 0.2, 0.5, 10.0, True, False), ("photo",)),
    ("ORVIFVanVieltBlurringIirOp", (2.5,), ("photo",)),
    ("ORVIHomomorphicOp", (1.5, 8), ("photo",)),
    ("ORVRetinex", (2.2, 0.0001, 0.1, 3), ("photo",)),
    ("ORVIShockOp", (3, 5, 0.2), ("photo",)),
    ("ORVISusanRestoration", (1, 20.0, 2.0), ("photo",)),
    ("ORVWaveletDenoising", (b"Brownian", 3, 0), ("photo",)),
    ("ORVISimpleColorTranfer", (), ("greys", "photo")),
    ("ORVIColorToGreyTranfertOp", (), ("greys", "photo")),
)
C_TYPES = {bytes: c_char_p, bool: c_bool, int: c_int, float: c_double}


class Bitmap:
    """A 24-bit BMP: header as a host passes it, rows as they lie in the file."""

    def __init__(self, path):
        with open(path, "rb") as file:
            data = file.read()
        if data[:2] != b"BM" or struct.unpack_from("<H", data, 28)[0] != 24:
            raise ValueError(f"{path} is no 24-bit BMP")
        self.header = data[14:HEADERS]
        self.width, self.height = struct.unpack_from("<ii", data, 18)
        self.rows = data[HEADERS:]

    def packed(self):
        row_bytes = (self.width * 3 + 3) // 4 * 4
        return b"".join(self.rows[y * row_bytes:y * row_bytes + self.width * 3]
                        for y in range(self.height))


def hash_of(data):
    value = 0xCBF29CE484222325
    for byte in data:
        value = (value ^ byte) * 0x100000001B3 & 0xFFFFFFFFFFFFFFFF
    return value


def load(path):
    library = ctypes.CDLL(path)
    for name, arguments, pictures in RESTORATIONS:
        function = getattr(library, name)
        function.restype = c_void_p
        function.argtypes = [c_void_p] * len(pictures) + [C_TYPES[type(a)] for a in arguments]
    library.SetORVCallBack.argtypes = [CALLBACK]
    library.ConvertORVImage.restype = c_void_p
    library.ConvertORVImage.argtypes = [c_char_p, c_char_p]
    library.DestroyORVImage.argtypes = [c_void_p]
    library.GetORVImageInfo.argtypes = [c_void_p, POINTER(c_int), POINTER(c_int)]
    library.GetORVImageData.restype = c_void_p
    library.GetORVImageData.argtypes = [c_void_p]
    return library


def pixels_of(library, image):
    width, height = c_int(), c_int()
    library.GetORVImageInfo(image, ctypes.byref(width), ctypes.byref(height))
    size = 3 * width.value * height.value
    return width.value, height.value, ctypes.string_at(library.GetORVImageData(image), size)


def run_all(library, bitmaps, first_results):
    handles = {name: library.ConvertORVImage(bitmap.header, bitmap.rows)
               for name, bitmap in bitmaps.items()}
    for name, arguments, pictures in RESTORATIONS:
        reports = []
        callback = CALLBACK(reports.append)
        library.SetORVCallBack(callback)
        sys.stdout.flush()
        result = getattr(library, name)(*(handles[p] for p in pictures), *arguments)
        C_RUNTIME.fflush(None)
        width, height, pixels = pixels_of(library, result)
        print(f"{name:<26} {width} x {height}  {hash_of(pixels):016x}  {len(reports):4} reports,"
              f" last {reports[-1] if reports else 0}")
        if name == RESTORATIONS[0][0]:
            first_results.append(pixels)
        library.DestroyORVImage(result)
    library.SetORVCallBack(CALLBACK())
    for handle in handles.values():
        library.DestroyORVImage(handle)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("shared_object", metavar="LIBRARY")
    parser.add_argument("folder", help="where dib_host wrote its pictures")
    arguments = parser.parse_args()
    library = load(os.path.abspath(arguments.shared_object))
    bitmaps = {name: Bitmap(os.path.join(arguments.folder, name + ".bmp"))
               for name in ("photo", "greys")}
    restored = Bitmap(os.path.join(arguments.folder, "restored.bmp"))

    first_results = []
    print("main thread")
    run_all(library, bitmaps, first_results)
    print("second thread")
    sys.stdout.flush()
    thread = threading.Thread(target=run_all, args=(library, bitmaps, first_results))
    thread.start()
    thread.join()
    if any(pixels != restored.packed() for pixels in first_results) or len(first_results) != 2:
        print("restored.bmp holds other pixels")


if __name__ == "__main__":
    main()
