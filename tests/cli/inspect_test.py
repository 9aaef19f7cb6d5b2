"""orv inspect: what it says of pictures, as text and as JSON."""

import json
import random
import struct
import unittest

from cli_support import NEEDS_VIPS, ROOT, FolderCase, exif, run, samples, with_segment, write_netpbm, write_png

ROCKET = ROOT / "examples" / "photos" / "rocket.jpg"


def noisy(width, height, sigma, seed=5):
    """Grey samples of white noise around the middle."""
    generator = random.Random(seed)
    return [min(255, max(0, round(generator.gauss(128, sigma)))) for _ in range(width * height)]


def gps_exif():
    """An EXIF block whose GPS directory tells a latitude."""
    entry = struct.pack("<HHII", 0x8825, 4, 1, 8 + 2 + 12 + 4)
    reference = struct.pack("<HHI4s", 1, 2, 2, b"N\0\0\0")
    latitude = struct.pack("<HHII", 2, 5, 3, 26 + 2 + 24 + 4)
    gps = struct.pack("<H", 2) + reference + latitude + struct.pack("<I6I", 0, 52, 1, 31, 1, 0, 1)
    return b"Exif\0\0II*\0" + struct.pack("<IH", 8, 1) + entry + struct.pack("<I", 0) + gps


class Text(FolderCase):
    def inspect(self, *arguments):
        code, out, err = run("inspect", *arguments, cwd=self.folder)
        self.assertEqual((code, err), (0, ""))
        for line in out.splitlines():
            # The command stands in one line, so that it can be copied.
            if not line.startswith("  suggested "):
                self.assertLessEqual(len(line), 80, line)
        return out

    def test_whole_block(self):
        write_netpbm(self.folder / "flat.pgm", 400, 300, [90] * 120000, channels=1)
        out = self.inspect("flat.pgm")
        head, memory = out.split("  memory      ")
        self.assertEqual(
            head,
            "flat.pgm\n"
            "  size        400 x 300 pixels, 0.1 megapixels\n"
            "  format      PPM, 8-bit grey, 120 KB\n"
            "  profile     none; taken as sRGB\n"
            "  orientation upright\n"
            "  metadata    none\n"
            "  noise       0.0 grey levels\n"
            "  suggested   nothing: that little noise may well be texture\n",
        )
        self.assertRegex(memory, r"^restore +\d+ MB   denoise +\d+ MB   wavelet +\d+ MB\n")
        self.assertNotIn("*", memory)

    def test_noise_is_measured_and_the_suggestion_runs(self):
        write_netpbm(self.folder / "a b.pgm", 300, 300, noisy(300, 300, 12), channels=1)
        out = self.inspect("a b.pgm")
        self.assertRegex(out, r"\n  noise       1[12]\.\d grey levels\n")
        command = " ".join(out.split("  suggested   ")[1].split("  memory")[0].split())
        self.assertTrue(command.startswith("orv restore 'a b.pgm' --"), command)
        words = ["a b.pgm", "-o", "out.pgm", *command.split("'")[2].split()]
        self.assertEqual(run("restore", *words, cwd=self.folder)[0], 0)
        run("restore", "a b.pgm", "-o", "auto.pgm", cwd=self.folder)
        self.assertEqual((self.folder / "out.pgm").read_bytes(), (self.folder / "auto.pgm").read_bytes())

    def test_methods_above_the_limit_are_marked(self):
        write_netpbm(self.folder / "a.ppm", 600, 500, [7] * 900000)
        out = self.inspect("a.ppm", "--max-memory", "40M")
        self.assertRegex(out, r"shock +\d+ MB\*")
        self.assertRegex(out, r"blur +\d+ MB ")
        self.assertIn("* above the 40 MB that a run may take; --max-side makes it fit\n", out)

    def test_noise_isnt_measured_beyond_the_limit(self):
        write_netpbm(self.folder / "a.ppm", 600, 500, [7] * 900000)
        out = self.inspect("a.ppm", "--max-memory", "30M")
        self.assertIn("  noise       not measured: the picture needs more memory than a run may take\n", out)
        self.assertNotIn("suggested", out)

    @NEEDS_VIPS
    def test_place_and_orientation_of_a_photo(self):
        photo = ROCKET.read_bytes()
        (self.folder / "turned.jpg").write_bytes(with_segment(photo, 0xE1, exif(6)))
        (self.folder / "placed.jpg").write_bytes(with_segment(photo, 0xE1, gps_exif()))
        out = self.inspect("turned.jpg")
        self.assertIn("  size        427 x 640 pixels, 0.3 megapixels\n", out)
        self.assertIn("  orientation stored turned left by 90 degrees (EXIF 6); orv turns it upright\n", out)
        self.assertIn("  metadata    EXIF\n", out)
        self.assertIn("  metadata    EXIF; tells the PLACE (GPS), --strip=gps leaves it out\n", self.inspect("placed.jpg"))

    @NEEDS_VIPS
    def test_depth_and_transparency(self):
        write_png(self.folder / "deep.png", 40, 30, samples(40, 30, 4, depth=16), 4, depth=16)
        self.assertIn("  format      PNG, 16-bit colour, with transparency, ", self.inspect("deep.png"))

    def test_block_for_each_of_several(self):
        for name in ("a10.pgm", "a9.pgm"):
            write_netpbm(self.folder / name, 8, 8, samples(8, 8, 1), channels=1)
        out = self.inspect(".")
        blocks = out.split("\n\n")
        self.assertEqual([block.split("\n")[0] for block in blocks], ["./a9.pgm", "./a10.pgm"])


class Failures(FolderCase):
    def test_missing_picture(self):
        self.check((3, "", "orv: no.png: no such file\n"), "inspect", "no.png")

    def test_missing_word(self):
        line = "orv: inspect: the picture to read is missing (usage: orv inspect IN... [options])\n"
        self.check((2, "", line), "inspect")

    def test_some_of_several(self):
        write_netpbm(self.folder / "a.pgm", 8, 8, samples(8, 8, 1), channels=1)
        (self.folder / "empty.png").write_bytes(b"")
        code, out, err = run("inspect", "empty.png", "a.pgm", cwd=self.folder)
        self.assertEqual((code, err), (1, "orv: empty.png: is empty\n"))
        self.assertTrue(out.startswith("a.pgm\n"))
        code, out, err = run("inspect", "empty.png", "no.png", cwd=self.folder)
        self.assertEqual((code, out), (3, ""))

    def test_damaged_samples(self):
        write_netpbm(self.folder / "cut.pgm", 80, 80, samples(80, 80, 1), channels=1)
        whole = (self.folder / "cut.pgm").read_bytes()
        (self.folder / "cut.pgm").write_bytes(whole[:1000])
        code, out, err = run("inspect", "cut.pgm", cwd=self.folder)
        self.assertEqual((code, out), (3, ""))
        self.assertTrue(err.startswith("orv: cut.pgm: "), err)


class Json(FolderCase):
    def test_members(self):
        write_netpbm(self.folder / "a.ppm", 200, 100, samples(200, 100, 3))
        code, out, err = run("inspect", "a.ppm", "no.ppm", "--json", cwd=self.folder)
        self.assertEqual((code, err), (1, "orv: no.ppm: no such file\n"))
        first, second = json.loads(out)
        self.assertEqual(second, {"file": "no.ppm", "error": "no.ppm: no such file"})
        noise, memory = first.pop("noise"), first.pop("memory")
        suggested, strength = first.pop("suggested"), first.pop("strength")
        self.assertEqual(
            first,
            {
                "file": "a.ppm",
                "error": None,
                "format": "PPM",
                "bytes": 60015,
                "width": 200,
                "height": 100,
                "bitsPerSample": 8,
                "float": False,
                "channels": 3,
                "colour": True,
                "alpha": False,
                "palette": False,
                "cmyk": False,
                "profile": None,
                "orientation": 1,
                "dotsPerInch": None,
                "camera": None,
                "taken": None,
                "exif": False,
                "gps": False,
                "xmp": False,
                "iptc": False,
            },
        )
        self.assertEqual(len(noise["channels"]), 3)
        self.assertGreater(noise["overall"], 30)
        self.assertEqual(strength, 100)
        self.assertTrue(suggested.startswith("orv restore a.ppm --"))
        self.assertEqual(memory["methods"][0]["name"], "restore")
        self.assertEqual(len(memory["methods"]), len(json.loads(run("methods", "--json")[1])))
        self.assertTrue(all(entry["fits"] and entry["bytes"] > 60000 for entry in memory["methods"]))
        self.assertIsInstance(memory["limit"], int)


if __name__ == "__main__":
    unittest.main()
