"""EXIF, profiles and XMP made by hand, and what a result holds of them."""

import struct
import zlib
from pathlib import Path

from cli_support import chunk, jpeg_segments, png_chunks, samples

MAKER = b"Orv Works\0"
NOTE = b"NOTE OF THE MAKER AT ITS PLACE"
DATE = b"2019:05:04 12:00:00\0"
PREVIEW = b"PREVIEW OF THE PICTURE AS IT WAS"
# Seconds of the latitude, over 100; by them the place is found.
SECONDS = 0x4F525621


def exif_block(orientation=6, order="<", gps=True, preview=True):
    """IFD0 with maker, resolution and orientation, an EXIF directory, GPS and a preview."""

    def number(form, *values):
        return struct.pack(order + form, *values)

    def directory(entries, following=0):
        body = number("H", len(entries))
        for tag, kind, count, value in entries:
            body += number("HHI", tag, kind, count) + (number("HH", value, 0) if kind == 3 else number("I", value))
        return body + number("I", following)

    places = {"inner": 110, "gps": 200, "second": 300, "maker": 400, "dots": 420, "date": 450, "note": 500, "place": 600}
    preview_at = 700
    first = [(0x010F, 2, len(MAKER), places["maker"]), (0x0112, 3, 1, orientation), (0x011A, 5, 1, places["dots"])]
    first += [(0x8769, 4, 1, places["inner"])] + ([(0x8825, 4, 1, places["gps"])] if gps else [])
    inner = [(0x9003, 2, 20, places["date"]), (0x927C, 7, len(NOTE), places["note"]), (0xA002, 4, 1, 4000), (0xA003, 4, 1, 3000)]
    parts = {
        0: (b"II" if order == "<" else b"MM") + number("HI", 42, 8),
        8: directory(first, places["second"] if preview else 0),
        places["inner"]: directory(inner),
        places["maker"]: MAKER,
        places["dots"]: number("II", 300, 1),
        places["date"]: DATE,
        places["note"]: NOTE,
    }
    if gps:
        parts[places["gps"]] = directory([(1, 2, 2, 0x4E), (2, 5, 3, places["place"])])
        parts[places["place"]] = number("6I", 48, 1, 8, 1, SECONDS, 100)
    if preview:
        parts[places["second"]] = directory([(0x0201, 4, 1, preview_at), (0x0202, 4, 1, len(PREVIEW))])
        parts[preview_at] = PREVIEW
    block = b""
    for at in sorted(parts):
        block = block.ljust(at, b"\0") + parts[at]
    return block


def exif_values(block):
    """Orientation, size, whether there is a directory of GPS, and all text of a block."""
    order = "<" if block[:2] == b"II" else ">"

    def entries(at):
        (count,) = struct.unpack_from(order + "H", block, at)
        found = {}
        for i in range(count):
            tag, kind, _ = struct.unpack_from(order + "HHI", block, at + 2 + 12 * i)
            found[tag] = struct.unpack_from(order + ("H" if kind == 3 else "I"), block, at + 10 + 12 * i)[0]
        return found

    first = entries(struct.unpack_from(order + "I", block, 4)[0])
    inner = entries(first[0x8769])
    return {
        "orientation": first[0x0112],
        "size": (inner[0xA002], inner[0xA003]),
        "gps": 0x8825 in first,
        "seconds": struct.pack(order + "I", SECONDS) in block,
        "maker": MAKER in block,
        "date": DATE in block,
        # A note stays legible where it stays in its place.
        "note": block[500 : 500 + len(NOTE)] == NOTE,
        "preview": PREVIEW in block,
    }


def profile(space=b"RGB ", name=b"Orv wide"):
    """A colour profile with its name, and nothing to compute with."""
    tag = b"desc" + bytes(4) + struct.pack(">I", len(name) + 1) + name + bytes(1)
    # Readers of PNG take a profile that shrinks to nothing for a damaged one.
    tag += bytes(samples(200, 1, 1))
    tag += bytes(-len(tag) % 4)
    size = 144 + len(tag)
    head = struct.pack(">II4s4s4s4s12s4s", size, 0, b"\2\x10\0\0", b"mntr", space, b"XYZ ", bytes(12), b"acsp")
    d50 = struct.pack(">III", 0xF6D6, 0x10000, 0xD32D)
    return head.ljust(68, b"\0") + d50 + bytes(48) + struct.pack(">I4sII", 1, b"desc", 144, len(tag)) + tag


def xmp(gps=False, orientation=None):
    """A packet of XMP."""
    text = "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:Description dc:creator='Ada'"
    text += " exif:GPSLatitude='48,8.5N'" if gps else ""
    text += f' tiff:Orientation="{orientation}"' if orientation else ""
    return (text + "/></x:xmpmeta>").encode()


XMP_MARK = b"http://ns.adobe.com/xap/1.0/\0"


class Metadata:
    """What a JPEG, PNG or WebP holds beside its samples."""

    def __init__(self, path):
        self.exif = self.profile = self.xmp = self.iptc = None
        self.texts, self.dots, self.kinds = [], None, []
        data = Path(path).read_bytes()
        {b"\xff\xd8": self.jpeg, b"\x89P": self.png, b"RI": self.webp}[data[:2]](path, data)

    def jpeg(self, _, data):
        for marker, body in jpeg_segments(data):
            self.kinds.append(marker)
            if marker == 0xE1 and body.startswith(b"Exif\0\0"):
                assert self.exif is None, "two blocks of EXIF"
                self.exif = body[6:]
            elif marker == 0xE1 and body.startswith(XMP_MARK):
                self.xmp = body[len(XMP_MARK) :]
            elif marker == 0xE2 and body.startswith(b"ICC_PROFILE"):
                self.profile = body[14:]
            elif marker == 0xED:
                self.iptc = body
            elif marker == 0xE0:
                self.dots = struct.unpack_from(">BHH", body, 7)

    def png(self, path, _):
        for kind, body in png_chunks(path):
            self.kinds.append(kind)
            if kind == b"eXIf":
                self.exif = body
            elif kind == b"iCCP":
                self.profile = zlib.decompress(body[body.index(b"\0") + 2 :])
            elif kind == b"iTXt" and body.startswith(b"XML:com.adobe.xmp"):
                self.xmp = body[22:]
            elif kind == b"zTXt":
                self.texts.append(zlib.decompress(body[body.index(b"\0") + 2 :]))
            elif kind in (b"tEXt", b"iTXt"):
                self.texts.append(body)
            elif kind == b"pHYs":
                self.dots = struct.unpack(">IIB", body)

    def webp(self, _, data):
        assert struct.unpack_from("<I", data, 4)[0] == len(data) - 8, "the size of the file is wrong"
        flags, at = 0, 12
        while at < len(data):
            kind, size = struct.unpack_from("<4sI", data, at)
            body = data[at + 8 : at + 8 + size]
            self.kinds.append(kind)
            if kind == b"VP8X":
                flags = body[0]
            elif kind == b"EXIF":
                self.exif = body
            elif kind == b"ICCP":
                self.profile = body
            elif kind == b"XMP ":
                self.xmp = body
            at += 8 + size + size % 2
        for bit, there in ((0x08, self.exif), (0x20, self.profile), (0x04, self.xmp)):
            assert bool(flags & bit) == (there is not None), "the flags don't tell what is there"


def exif_chunk(block):
    """The chunk of a PNG that holds EXIF."""
    return chunk(b"eXIf", block)
