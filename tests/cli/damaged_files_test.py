"""Files with flipped, lost and doubled bytes: read or refused in one line, never half a result."""

import random
import resource
import struct
import subprocess
import unittest
import zlib

from cli_support import HAVE_VIPS, KEEP, NEEDS_MAGICK, NEEDS_VIPS, TOOL, FolderCase, chunk, run, samples, write_netpbm
from cli_support import with_segment
from metadata_samples import exif_block

ROUNDS = 25


def mutated(data, chance):
    data = bytearray(data)
    for _ in range(chance.randint(1, 8)):
        at = chance.randrange(len(data))
        kind = chance.randrange(4)
        if kind == 0:
            data[at] = chance.randrange(256)
        elif kind == 1:
            del data[at : at + chance.randint(1, 40)]
        elif kind == 2:
            data[at:at] = data[at : at + chance.randint(1, 40)]
        else:
            data[at : at + 4] = chance.choice([b"\xff\xff\xff\xff", b"\0\0\0\0", b"\x7f\xff\xff\xff"])
        if not data:
            data = bytearray(b"\0")
    return bytes(data)


class DamagedFiles(FolderCase):
    def test_mutations(self):
        chance = random.Random(20)
        write_netpbm(self.folder / "source.ppm", 24, 20, samples(24, 20, 3))
        endings = ["ppm", "bmp"] + (["png", "jpg", "tif", "webp"] if HAVE_VIPS else [])
        for ending in endings:
            self.check((0, "", ""), "restore", "source.ppm", f"good.{ending}", "-q", *KEEP)
            good = (self.folder / f"good.{ending}").read_bytes()
            for turn in range(ROUNDS):
                bad = mutated(good, chance)
                name = f"bad.{ending}"
                (self.folder / name).write_bytes(bad)
                before = self.names()
                code, out, error = run("restore", name, "out.bmp", "-q", cwd=self.folder)
                with self.subTest(ending=ending, turn=turn, start=bad[:60].hex()):
                    self.assertIn(code, (0, 3))
                    self.assertEqual(out, "")
                    if code == 0:
                        self.assertEqual(error, "")
                        data = (self.folder / "out.bmp").read_bytes()
                        self.assertEqual(int.from_bytes(data[2:6], "little"), len(data))
                        (self.folder / "out.bmp").unlink()
                    else:
                        self.assertRegex(error, r"^orv: (bad|out)\.\w+: [^\n]+\n$")
                    self.assertEqual(self.names(), before)

    @NEEDS_VIPS
    def test_mutations_of_exif(self):
        chance = random.Random(21)
        write_netpbm(self.folder / "source.ppm", 24, 20, samples(24, 20, 3))
        self.check((0, "", ""), "restore", "source.ppm", "good.jpg", "-q", *KEEP)
        good = (self.folder / "good.jpg").read_bytes()
        for turn in range(ROUNDS // 3):
            block = mutated(exif_block(), chance)
            (self.folder / "bad.jpg").write_bytes(with_segment(good, 0xE1, b"Exif\0\0" + block))
            for ending in ("jpg", "png", "webp"):
                code, out, error = run("restore", "bad.jpg", "-o", f"out.{ending}", "-fq", "--strip=gps", *KEEP, cwd=self.folder)
                with self.subTest(turn=turn, ending=ending, block=block.hex()):
                    self.assertEqual((code, out, error), (0, "", ""))
                    self.check((0, "", ""), "restore", f"out.{ending}", "-o", "back.ppm", "-fq", *KEEP)


@unittest.skipIf("asan" in TOOL, "sanitizers need memory of their own")
class Bombs(FolderCase):
    """Pictures of 60 000 by 60 000 pixels are refused at once and in little memory."""

    def quickly(self, *arguments):
        """Exit code, output and errors of a run in half a gigabyte and ten seconds."""

        def limit():
            resource.setrlimit(resource.RLIMIT_DATA, (1 << 29, 1 << 29))

        ran = subprocess.run([TOOL, *arguments], cwd=self.folder, capture_output=True, preexec_fn=limit, timeout=10)
        return ran.returncode, ran.stdout.decode(), ran.stderr.decode()

    def refused(self, name, reason=r"60000 x 60000 pixels are more than the 268 million that orv takes"):
        before = self.names()
        code, out, error = self.quickly("restore", name, "-o", "out.bmp")
        self.assertIn(code, (3, 6))
        self.assertEqual(out, "")
        self.assertRegex(error, rf"^orv: {name}: {reason}[^\n]*\n$")
        self.assertEqual(self.names(), before)

    def png(self, name, body):
        head = struct.pack(">IIBBBBB", 60000, 60000, 8, 2, 0, 0, 0)
        data = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", body) + chunk(b"IEND", b"")
        (self.folder / name).write_bytes(data)

    @NEEDS_VIPS
    def test_png_of_a_head_alone(self):
        self.png("bomb.png", zlib.compress(b"\0"))
        self.refused("bomb.png")

    @NEEDS_VIPS
    def test_png_with_all_its_pixels(self):
        packer = zlib.compressobj(9)
        row = bytes(1 + 3 * 60000)
        body = b"".join(packer.compress(row * 100) for _ in range(600)) + packer.flush()
        self.assertLess(len(body), 12e6)
        self.png("bomb.png", body)
        self.refused("bomb.png")

    @NEEDS_VIPS
    def test_jpeg(self):
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))
        run("restore", "in.ppm", "-o", "bomb.jpg", "-q", cwd=self.folder)
        data = bytearray((self.folder / "bomb.jpg").read_bytes())
        at = data.index(b"\xff\xc0") + 5
        data[at : at + 4] = struct.pack(">HH", 60000, 60000)
        (self.folder / "bomb.jpg").write_bytes(data)
        self.refused("bomb.jpg")

    @NEEDS_VIPS
    def test_tiff(self):
        entries = [(256, 4, 1, 60000), (257, 4, 1, 60000), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1), (273, 4, 1, 8), (277, 3, 1, 1)]
        entries += [(278, 4, 1, 60000), (279, 4, 1, 4)]
        table = b"".join(struct.pack("<HHII", *entry) for entry in entries)
        (self.folder / "bomb.tif").write_bytes(b"II*\0" + struct.pack("<II", 12, 0) + struct.pack("<H", len(entries)) + table + bytes(4))
        self.refused("bomb.tif")

    def test_ppm_and_bmp_of_a_head_alone(self):
        (self.folder / "bomb.ppm").write_bytes(b"P6\n60000 60000\n255\n")
        self.refused("bomb.ppm", "is cut short")
        head = struct.pack("<2sIIIIiiHHIIIIII", b"BM", 0, 0, 54, 40, 60000, 60000, 1, 24, 0, 0, 0, 0, 0, 0)
        (self.folder / "bomb.bmp").write_bytes(head)
        self.refused("bomb.bmp", "is cut short")

    def test_ppm_with_a_hole_for_its_pixels(self):
        with open(self.folder / "bomb.ppm", "wb") as file:
            file.write(b"P6\n60000 60000\n255\n")
            file.truncate(19 + 3 * 60000 * 60000)
        self.refused("bomb.ppm")


class Strangers(FolderCase):
    def refused(self, name, reason):
        code, out, error = run("restore", name, "-o", "out.bmp", cwd=self.folder)
        self.assertEqual((code, out), (3, ""))
        self.assertRegex(error, rf"^orv: {name}: {reason}\n$")

    def test_known_formats_that_are_not_read_are_named(self):
        for start, word in (
            (b"GIF89a\x08\0\x08\0", "a GIF"),
            (b"\0\0\0\x18ftypheic", "a HEIC"),
            (b"\0\0\0\x18ftypavif", "an AVIF"),
            (b"\0\0\0\x0cJXL \r\n\x87\n", "a JPEG XL"),
            (b"8BPS\0\1", "a Photoshop file"),
            (b"%PDF-1.4", "a PDF"),
            (b"P3\n1 1\n255\n0 0 0\n", "a PBM, PAM or plain text PNM"),
        ):
            with self.subTest(word=word):
                (self.folder / "in.png").write_bytes(start + bytes(20))
                self.refused("in.png", f"is {word}; orv reads [A-Za-z, ]*BMP, PPM, PGM alone")

    @NEEDS_VIPS
    @NEEDS_MAGICK
    def test_moving_pictures_and_several_pages(self):
        self.magick("-size", "8x8", "xc:red", "xc:blue", "in.gif")
        self.refused("in.gif", r"is a GIF; orv reads [^\n]* alone")
        for name in ("in.webp", "in.tif"):
            self.magick("-size", "8x8", "xc:red", "xc:blue", "xc:green", name)
            self.refused(name, "holds 3 pages or frames; orv takes single pictures")

    def test_no_bytes(self):
        for name in ("in.png", "in.jpg", "in.ppm", "in"):
            (self.folder / name).write_bytes(b"")
            self.refused(name, "is empty")

    def test_few_bytes(self):
        for data in (b"B", b"BM", b"P6", b"P6\n", b"\x89PNG\r\n\x1a\n", b"\xff\xd8\xff", b"II*\0", b"RIFF\0\0\0\0WEBP"):
            with self.subTest(data=data):
                (self.folder / "in.png").write_bytes(data)
                self.refused("in.png", "(is (no picture|damaged|cut short|a damaged|a PBM)|this build).*")


if __name__ == "__main__":
    unittest.main()
