"""What the tests of the command line share: running the tool, and pictures made by hand."""

import os
import shutil
import struct
import subprocess
import tempfile
import unittest
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
TOOL = os.environ.get("ORV_TOOL", "orv")

# A run that leaves every sample as it was.
KEEP = ["--strength", "0"]


def run(*arguments, cwd=None):
    """Runs the tool and gives exit code, standard output and standard error."""
    done = subprocess.run([TOOL, *map(str, arguments)], capture_output=True, cwd=cwd, timeout=300)
    return done.returncode, done.stdout.decode(errors="replace"), done.stderr.decode(errors="replace")


HAVE_VIPS = "libvips" in run("--version")[1]
NEEDS_VIPS = unittest.skipUnless(HAVE_VIPS, "this build of orv is without libvips")


def find_imagemagick():
    """The command of a full ImageMagick, or None."""
    for name in ("magick", "/usr/bin/convert", "convert"):
        command = shutil.which(name)
        if command is None:
            continue
        told = subprocess.run([command, "-version"], capture_output=True)
        if b"Version: ImageMagick" in told.stdout:
            return command
    return None


MAGICK = find_imagemagick()
NEEDS_MAGICK = unittest.skipUnless(MAGICK, "ImageMagick, which makes the picture, is not installed")


class FolderCase(unittest.TestCase):
    """A case with a folder of its own."""

    maxDiff = None

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)

    def check(self, expected, *arguments):
        """Exit code, standard output and standard error, to the letter."""
        self.assertEqual(run(*arguments, cwd=self.folder), expected)

    def magick(self, *arguments):
        """Makes a picture by ImageMagick."""
        subprocess.run([MAGICK, *arguments], cwd=self.folder, check=True, capture_output=True)

    def names(self):
        """The files of the folder, hidden ones too."""
        return sorted(entry.name for entry in self.folder.iterdir())


def samples(width, height, channels, depth=8, seed=1):
    """Pseudo-random samples, rows one after the other."""
    state, values = seed, []
    for _ in range(width * height * channels):
        state = (state * 1103515245 + 12345) & 0x7FFFFFFF
        values.append((state >> 12) & ((1 << depth) - 1))
    return values


def packed(values, depth):
    """Samples as big-endian bytes."""
    return bytes(values) if depth == 8 else struct.pack(f">{len(values)}H", *values)


def write_netpbm(path, width, height, values, channels=3, depth=8):
    """A binary PPM or PGM."""
    head = f"P{6 if channels == 3 else 5}\n{width} {height}\n{(1 << depth) - 1}\n".encode()
    Path(path).write_bytes(head + packed(values, depth))


def read_netpbm(path):
    """Width, height, channels, depth and samples of a binary PPM or PGM that orv wrote."""
    kind, size, white, body = Path(path).read_bytes().split(b"\n", 3)
    width, height = map(int, size.split())
    depth = 8 if white == b"255" else 16
    values = list(body) if depth == 8 else list(struct.unpack(f">{len(body) // 2}H", body))
    return width, height, 3 if kind == b"P6" else 1, depth, values


def chunk(kind, body):
    """One chunk of a PNG."""
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


PNG_KINDS = {1: 0, 2: 4, 3: 2, 4: 6}


def write_png(path, width, height, values, channels, depth=8, extra=b""):
    """A PNG without filters; extra chunks stand before the pixels."""
    row = width * channels * depth // 8
    body = packed(values, depth)
    lines = b"".join(b"\0" + body[y * row : (y + 1) * row] for y in range(height))
    head = struct.pack(">IIBBBBB", width, height, depth, PNG_KINDS[channels], 0, 0, 0)
    Path(path).write_bytes(
        b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + extra + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b"")
    )


def png_chunks(path):
    """The chunks of a PNG as pairs of kind and body."""
    data, at, found = Path(path).read_bytes(), 8, []
    while at < len(data):
        (length,) = struct.unpack_from(">I", data, at)
        found.append((data[at + 4 : at + 8], data[at + 8 : at + 8 + length]))
        at += 12 + length
    return found


def unfilter(kind, line, above, step):
    """Undoes one line of a PNG's filter."""
    for i, value in enumerate(line):
        left = line[i - step] if i >= step else 0
        up = above[i]
        corner = above[i - step] if i >= step else 0
        if kind == 1:
            value += left
        elif kind == 2:
            value += up
        elif kind == 3:
            value += (left + up) // 2
        elif kind == 4:
            guess = left + up - corner
            value += min((abs(guess - left), 0, left), (abs(guess - up), 1, up), (abs(guess - corner), 2, corner))[2]
        line[i] = value & 0xFF
    return line


def read_png(path):
    """Width, height, channels, depth and samples of a PNG without interlacing or palette."""
    chunks = png_chunks(path)
    width, height, depth, kind = struct.unpack_from(">IIBB", chunks[0][1])
    channels = {code: count for count, code in PNG_KINDS.items()}[kind]
    raw = zlib.decompress(b"".join(body for name, body in chunks if name == b"IDAT"))
    step = channels * depth // 8
    row = width * step
    above, body = bytearray(row), b""
    for y in range(height):
        line = bytearray(raw[y * (row + 1) + 1 : (y + 1) * (row + 1)])
        above = unfilter(raw[y * (row + 1)], line, above, step)
        body += bytes(above)
    values = list(body) if depth == 8 else list(struct.unpack(f">{len(body) // 2}H", body))
    return width, height, channels, depth, values


def write_float_tiff(path, width, height, values):
    """A TIFF of one strip of float RGB samples."""
    body = struct.pack(f"<{len(values)}f", *values)
    entries = [
        (256, 3, 1, width),
        (257, 3, 1, height),
        (258, 3, 1, 32),
        (259, 3, 1, 1),
        (262, 3, 1, 2),
        (273, 4, 1, 8),
        (277, 3, 1, 3),
        (278, 3, 1, height),
        (279, 4, 1, len(body)),
        (284, 3, 1, 1),
        (339, 3, 1, 3),
    ]
    table = b"".join(struct.pack("<HHII", *entry) for entry in entries)
    head = b"II*\0" + struct.pack("<I", 8 + len(body))
    Path(path).write_bytes(head + body + struct.pack("<H", len(entries)) + table + struct.pack("<I", 0))


def jpeg_segments(data):
    """The segments of a JPEG before its scan, as pairs of marker and body."""
    at, found = 2, []
    while data[at + 1] != 0xDA:
        (length,) = struct.unpack_from(">H", data, at + 2)
        found.append((data[at + 1], data[at + 4 : at + 2 + length]))
        at += 2 + length
    return found


def with_segment(data, marker, body):
    """A JPEG with one more segment at its head."""
    return data[:2] + bytes([0xFF, marker]) + struct.pack(">H", len(body) + 2) + body + data[2:]


def exif(orientation, maker=b"Orv Works\0"):
    """An EXIF block with an orientation and the maker's name."""
    entries = struct.pack("<HHIHH", 0x0112, 3, 1, orientation, 0)
    entries = struct.pack("<HHII", 0x010F, 2, len(maker), 8 + 2 + 24 + 4) + entries
    return b"Exif\0\0II*\0" + struct.pack("<IH", 8, 2) + entries + struct.pack("<I", 0) + maker
