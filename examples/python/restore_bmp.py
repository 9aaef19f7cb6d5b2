#!/usr/bin/env python3
"""Takes noise out of a 24-bit BMP. A whole host program in Python: ctypes, nothing to install.

    restore_bmp.py [--library FILE] IN.bmp OUT.bmp

The library is FILE, else the one that the environment variable ORV_LIBRARY names, else the one
that the system finds. OUT.bmp is the whole result or what it was before. Exit codes: 0 done,
1 failed, 2 usage.
"""

import argparse
import collections
import ctypes
import operator
import os
import struct
import sys

# For noise of about 20 grey levels. Less noise asks for a lower contrast.
PASSES = 3
TIME_STEP = 2.0  # pixels squared: how far a pass smooths
PRESMOOTHING = 0.7  # pixels: keeps a noisy sample from passing for an edge
CONTRAST = 4.0  # grey levels: slopes well above it are kept as edges

# From orv_constants.h.
SCHEME_AOS = b"AOS"
SOLVER_THOMAS = 0
FLOW_PERONA_MALIK = b"PM"
GRADIENT_NORM_CENTRAL = 0

# A BMP is a file header, an information header and the rows, each padded to 4 bytes.
FILE_HEADER = 14
INFO_HEADER = 40
HEADERS = FILE_HEADER + INFO_HEADER


class Failure(Exception):
    """What is wrong with a file."""


class BitmapInfoHeader(ctypes.Structure):
    _pack_ = 1
    _fields_ = [
        ("biSize", ctypes.c_uint32),
        ("biWidth", ctypes.c_int32),
        ("biHeight", ctypes.c_int32),
        ("biPlanes", ctypes.c_uint16),
        ("biBitCount", ctypes.c_uint16),
        ("biCompression", ctypes.c_uint32),
        ("biSizeImage", ctypes.c_uint32),
        ("biXPelsPerMeter", ctypes.c_int32),
        ("biYPelsPerMeter", ctypes.c_int32),
        ("biClrUsed", ctypes.c_uint32),
        ("biClrImportant", ctypes.c_uint32),
    ]


# The functions are cdecl everywhere, the callback alone is stdcall on Windows.
CallBack = (ctypes.WINFUNCTYPE if os.name == "nt" else ctypes.CFUNCTYPE)(None, ctypes.c_int)

# Result and arguments. Without these ctypes takes a handle for an int and cuts it to 32 bits.
# A bool of orv.h is ctypes.c_bool; none of these functions has one.
HANDLE, INT, DOUBLE, TEXT = ctypes.c_void_p, ctypes.c_int, ctypes.c_double, ctypes.c_char_p
FUNCTIONS = {
    "SetORVCallBack": (None, [CallBack]),
    "ConvertORVImage": (HANDLE, [ctypes.POINTER(BitmapInfoHeader), TEXT]),
    "DestroyORVImage": (None, [HANDLE]),
    "GetORVImageInfo": (None, [HANDLE, ctypes.POINTER(INT), ctypes.POINTER(INT)]),
    "GetORVImageData": (HANDLE, [HANDLE]),
    "ORVFastRestoration": (
        HANDLE,
        [HANDLE, TEXT, INT, INT, DOUBLE, INT, DOUBLE, DOUBLE, TEXT, INT, INT],
    ),
}


def load_library(name):
    """Loads the library and tells ctypes the types of its functions."""
    name = name or os.environ.get("ORV_LIBRARY")
    if not name:
        name = "orv.dll" if os.name == "nt" else "liborv.so.1"
    try:
        library = ctypes.CDLL(name)
        for function, (result, arguments) in FUNCTIONS.items():
            getattr(library, function).restype = result
            getattr(library, function).argtypes = arguments
    except (OSError, AttributeError) as error:
        hint = "--library FILE or ORV_LIBRARY names another"
        raise Failure(f"cannot load the library: {error} ({hint})") from error
    return library


Picture = collections.namedtuple("Picture", "head width height rows")


def check_kind(path, head):
    """Checks the fields that tell what kind of BMP this is."""
    (info_size,) = struct.unpack_from("<I", head, 14)
    width, height, planes, bits, compression = struct.unpack_from("<iiHHI", head, 18)
    if head[:2] != b"BM":
        raise Failure(f"{path}: starts with bytes {head[:2].hex(' ')}, a BMP with 42 4d")
    if not INFO_HEADER <= info_size <= 124:  # longer ones add fields at the end
        raise Failure(f"{path}: biSize is {info_size}, not 40 to 124")
    if width < 1:
        raise Failure(f"{path}: biWidth is {width}, below 1")
    if height in (0, -(2**31)):
        raise Failure(f"{path}: biHeight is {height}, no number of rows")
    if planes != 1:
        raise Failure(f"{path}: biPlanes is {planes}, not 1")
    if bits != 24:
        raise Failure(f"{path}: biBitCount is {bits}, not 24")
    if compression != 0:
        raise Failure(f"{path}: biCompression is {compression}, not 0")
    return width, abs(height)


def check_sizes(path, head, width, height, length):
    """Checks the fields that tell sizes against the length of the file, so that no memory is
    taken for pixels that are not there. Returns where the rows lie and their bytes."""
    file_size, offset, info_size = struct.unpack_from("<I4xII", head, 2)
    (image_size,) = struct.unpack_from("<I", head, 34)
    headers_end = FILE_HEADER + info_size
    size = (width * 3 + 3) // 4 * 4 * height
    if length > 2**32 - 1 - HEADERS:
        raise Failure(f"{path}: has {length} bytes, too many for a BMP")
    if file_size > length:
        raise Failure(f"{path}: is cut short: bfSize is {file_size}, the file has {length} bytes")
    if not headers_end <= offset <= length:
        raise Failure(
            f"{path}: bfOffBits is {offset}, but the headers end at {headers_end}, "
            f"the file at {length}"
        )
    there = length - offset
    if image_size > there:
        raise Failure(
            f"{path}: is cut short: biSizeImage is {image_size}, "
            f"the file has {there} bytes of rows"
        )
    if size > there:
        raise Failure(
            f"{path}: is cut short: {width} x {height} pixels, but {there} bytes of rows"
        )
    return offset, size


def read_picture(path):
    """Returns the Picture of a file, its rows with their padding and in the file's order."""
    with open(path, "rb") as file:
        head = file.read(HEADERS)
        length = file.seek(0, os.SEEK_END)
        if len(head) < HEADERS:
            raise Failure(
                f"{path}: has {len(head)} bytes, the headers of a BMP alone have {HEADERS}"
            )
        width, height = check_kind(path, head)
        offset, size = check_sizes(path, head, width, height, length)
        file.seek(offset)
        rows = file.read(size)
    if len(rows) < size:
        raise Failure(f"{path}: cannot be read to its end")
    return Picture(head, width, height, rows)


def write_picture(path, picture, pixels):
    """Writes under another name first, so that no failure leaves half a picture.

    The height keeps its sign, since the library keeps the order of the rows."""
    row, size = picture.width * 3, len(picture.rows)
    padding = bytes(size // picture.height - row)
    head = bytearray(picture.head)
    for at, value in (
        (2, HEADERS + size),
        (10, HEADERS),
        (14, INFO_HEADER),
        (34, size),
        (46, 0),  # biClrUsed and biClrImportant: a palette is not copied
        (50, 0),
    ):
        struct.pack_into("<I", head, at, value)
    part = path + ".part"
    try:
        file = open(part, "wb")
        try:
            with file:
                file.write(head)
                for start in range(0, len(pixels), row):
                    file.write(pixels[start : start + row] + padding)
            os.replace(part, path)
        except BaseException:
            os.remove(part)
            raise
    except OSError as error:
        raise Failure(f"{path}: cannot be written: {error.strerror}") from error


class Progress:
    """A bar on a terminal, plain lines in a log."""

    WIDTH = 40

    def __init__(self):
        self.number = 0  # of the pass that runs
        self.shown = 0  # percent of all passes
        self.live = sys.stderr.isatty()

    def __call__(self, percent):
        # Values may repeat, fall and pass 100.
        total = (100 * self.number + min(max(percent, 0), 100)) // PASSES
        if total <= self.shown:
            return
        if self.live:
            bar = ("#" * (self.WIDTH * total // 100)).ljust(self.WIDTH, "-")
            print(f"\rrestoring [{bar}] {total:3} %", end="", file=sys.stderr, flush=True)
        elif total // 25 > self.shown // 25:
            print(f"restoring: {total // 25 * 25} %", file=sys.stderr, flush=True)
        self.shown = total

    def close(self):
        if self.live and self.shown > 0:
            print(file=sys.stderr)


def restore(library, photo):
    """Returns a new handle, or None. Each pass works on the result of the one before."""
    progress = Progress()
    # The library keeps the bare pointer: this name keeps what it points at alive.
    callback = CallBack(progress)
    result = None
    for progress.number in range(PASSES):
        source = result or photo
        # Operations narrow the range of their reports and leave it so: set it back each time.
        library.SetORVCallBack(callback)
        result = library.ORVFastRestoration(
            source,
            SCHEME_AOS,
            SOLVER_THOMAS,
            1,  # iterations
            TIME_STEP,
            0,  # iterations of a solver, which this one has none of
            PRESMOOTHING,
            CONTRAST,
            FLOW_PERONA_MALIK,
            GRADIENT_NORM_CENTRAL,
            0,  # explicit half steps, which this scheme has none of
        )
        if source != photo:
            library.DestroyORVImage(source)
        if result is None:
            break
        progress(100)  # reports may end before it: the return of the call is the end
    library.SetORVCallBack(CallBack())  # null
    progress.close()
    return result


def pixels_of(library, image):
    """Returns a copy of an image's pixels: rows without padding."""
    width, height = INT(), INT()
    library.GetORVImageInfo(image, ctypes.byref(width), ctypes.byref(height))
    return ctypes.string_at(library.GetORVImageData(image), width.value * height.value * 3)


def process(library, path, picture):
    """Returns the pixels before and after."""
    header = BitmapInfoHeader(
        biSize=INFO_HEADER,
        biWidth=picture.width,
        biHeight=picture.height,  # above 0 whatever the order of the rows
        biPlanes=1,
        biBitCount=24,
    )
    photo = library.ConvertORVImage(ctypes.byref(header), picture.rows)  # copies the pixels
    result = restore(library, photo) if photo else None
    try:
        if result is None:
            raise Failure(
                f"{path}: the library has no memory for "
                f"{picture.width} x {picture.height} pixels"
            )
        return pixels_of(library, photo), pixels_of(library, result)
    finally:
        library.DestroyORVImage(result)  # None is fine
        library.DestroyORVImage(photo)


def compare(path, before, after):
    """Prints how far the samples of the result are from those of the photo."""
    counts = collections.Counter(map(abs, map(operator.sub, before, after)))
    samples = len(before)
    mean = sum(difference * count for difference, count in counts.items()) / samples
    print(
        f"{path}: {samples - counts[0]} of {samples} samples changed, "
        f"mean difference {mean:.2f} grey levels, largest {max(counts)}"
    )


def main():
    parser = argparse.ArgumentParser(
        prog="restore_bmp", usage="%(prog)s [--library FILE] IN.bmp OUT.bmp"
    )
    parser.add_argument("--library", metavar="FILE", dest="library_file")
    parser.add_argument("input")
    parser.add_argument("output")
    arguments = parser.parse_args()
    try:
        library = load_library(arguments.library_file)
        picture = read_picture(arguments.input)
        print(f"{arguments.input}: {picture.width} x {picture.height} pixels", flush=True)
        before, after = process(library, arguments.input, picture)
        write_picture(arguments.output, picture, after)
        compare(arguments.output, before, after)
    except Failure as failure:
        print(f"restore_bmp: {failure}", file=sys.stderr)
        return 1
    except OSError as error:
        print(f"restore_bmp: {error.filename}: {error.strerror}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
