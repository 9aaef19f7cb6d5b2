"""Reading and writing of 8-bit PNG pictures with the standard library alone.

Pictures are 8-bit grey, RGB or RGBA without interlacing. Colour profiles and other extra
chunks are not kept. The test scripts use this module, so that the tool's own picture library
is not the judge of its results.
"""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
CHANNELS_OF_COLOUR_TYPE = {0: 1, 2: 3, 6: 4}
COLOUR_TYPE_OF_CHANNELS = {1: 0, 3: 2, 4: 6}


class Picture:
    """Width, height, channels and the samples: rows top down, pixels interleaved."""

    def __init__(self, width, height, channels, samples):
        if len(samples) != width * height * channels:
            raise ValueError("the samples do not fill the picture")
        self.width = width
        self.height = height
        self.channels = channels
        self.samples = samples


def _chunks(data):
    position = len(SIGNATURE)
    while position + 12 <= len(data):
        (length,) = struct.unpack_from(">I", data, position)
        kind = data[position + 4 : position + 8]
        body = data[position + 8 : position + 8 + length]
        (checksum,) = struct.unpack_from(">I", data, position + 8 + length)
        if zlib.crc32(kind + body) != checksum:
            raise ValueError(f"chunk {kind.decode('ascii', 'replace')} is damaged")
        yield kind, body
        position += 12 + length


def _undo_average(row, above, step):
    for i in range(len(row)):
        left = row[i - step] if i >= step else 0
        row[i] = (row[i] + ((left + above[i]) >> 1)) & 255


def _undo_paeth(row, above, step):
    for i in range(len(row)):
        left = row[i - step] if i >= step else 0
        corner = above[i - step] if i >= step else 0
        estimate = left + above[i] - corner
        distances = (abs(estimate - left), abs(estimate - above[i]), abs(estimate - corner))
        nearest = (left, above[i], corner)[distances.index(min(distances))]
        row[i] = (row[i] + nearest) & 255


def _undo_filter(kind, row, above, step):
    if kind == 1:
        for i in range(step, len(row)):
            row[i] = (row[i] + row[i - step]) & 255
    elif kind == 2:
        for i in range(len(row)):
            row[i] = (row[i] + above[i]) & 255
    elif kind == 3:
        _undo_average(row, above, step)
    elif kind == 4:
        _undo_paeth(row, above, step)
    elif kind != 0:
        raise ValueError(f"row filter {kind} is unknown")


def read_png(path):
    """Returns the Picture in the file; raises ValueError for a form that is not read here."""
    with open(path, "rb") as file:
        data = file.read()
    if not data.startswith(SIGNATURE):
        raise ValueError(f"{path}: not a PNG")
    header = None
    packed = bytearray()
    for kind, body in _chunks(data):
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
    if header is None:
        raise ValueError(f"{path}: no header")
    width, height, depth, colour_type, _, _, interlaced = header
    if depth != 8 or interlaced or colour_type not in CHANNELS_OF_COLOUR_TYPE:
        raise ValueError(f"{path}: only 8-bit grey, RGB and RGBA without interlacing are read")

    channels = CHANNELS_OF_COLOUR_TYPE[colour_type]
    stride = width * channels
    raw = zlib.decompress(bytes(packed))
    if len(raw) != height * (stride + 1):
        raise ValueError(f"{path}: the pixel data is incomplete")
    samples = bytearray()
    above = bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        row = bytearray(raw[start + 1 : start + 1 + stride])
        _undo_filter(raw[start], row, above, channels)
        samples += row
        above = row
    return Picture(width, height, channels, samples)


def _chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def write_png(path, picture):
    """Writes the Picture; every row is stored as its difference to the left neighbour."""
    stride = picture.width * picture.channels
    step = picture.channels
    raw = bytearray()
    for y in range(picture.height):
        row = picture.samples[y * stride : (y + 1) * stride]
        raw.append(1)
        raw += row[:step]
        raw += bytes((row[i] - row[i - step]) & 255 for i in range(step, stride))
    header = struct.pack(
        ">IIBBBBB",
        picture.width,
        picture.height,
        8,
        COLOUR_TYPE_OF_CHANNELS[picture.channels],
        0,
        0,
        0,
    )
    with open(path, "wb") as file:
        file.write(SIGNATURE)
        file.write(_chunk(b"IHDR", header))
        file.write(_chunk(b"IDAT", zlib.compress(bytes(raw), 9)))
        file.write(_chunk(b"IEND", b""))
