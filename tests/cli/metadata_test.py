"""What a picture's file tells beside its samples: kept, brought in line, or left out."""

import struct
import subprocess
import time
import unittest
import zlib

from cli_support import (
    KEEP,
    MAGICK,
    NEEDS_MAGICK,
    NEEDS_VIPS,
    TOOL,
    FolderCase,
    chunk,
    png_chunks,
    read_netpbm,
    run,
    samples,
    with_segment,
    write_netpbm,
    write_png,
)
from metadata_samples import MAKER, XMP_MARK, Metadata, exif_block, exif_chunk, exif_values, profile, xmp

ENDINGS = ("jpg", "png", "webp")
IPTC = b"Photoshop 3.0\x008BIM\x04\x04\0\0\0\0\0\x0c\x1c\x02\x78\0\x07Caption\0"


@NEEDS_VIPS
class MetadataCase(FolderCase):
    def done(self, *arguments):
        """Runs restore without change of samples; gives warnings."""
        code, _, error = run("restore", *arguments, *KEEP, "-f", cwd=self.folder)
        self.assertEqual(code, 0, error)
        return "".join(line + "\n" for line in error.splitlines() if "warning" in line)

    def photo(self, block=None, packet=None, width=24, height=16):
        """in.jpg, a photo as a camera stores it."""
        values = [v for y in range(height) for x in range(width) for v in (x * 255 // width, y * 255 // height, 80)]
        write_netpbm(self.folder / "source.ppm", width, height, values)
        self.done("source.ppm", "-o", "plain.jpg")
        data = (self.folder / "plain.jpg").read_bytes()
        data = with_segment(data, 0xED, IPTC)
        data = with_segment(data, 0xE2, b"ICC_PROFILE\0\1\1" + profile())
        data = with_segment(data, 0xE1, XMP_MARK + (packet or xmp()))
        data = with_segment(data, 0xE1, b"Exif\0\0" + (block or exif_block()))
        (self.folder / "in.jpg").write_bytes(data)

    def result(self, ending, *options, source="in.jpg"):
        self.assertEqual(self.done(source, "-o", f"out.{ending}", *options), "")
        return Metadata(self.folder / f"out.{ending}")


class Kept(MetadataCase):
    def test_exif_profile_and_xmp_stay(self):
        for order in "<>":
            self.photo(exif_block(order=order))
            for ending in ENDINGS:
                with self.subTest(ending=ending, order=order):
                    found = self.result(ending)
                    expected = {"orientation": 1, "size": (16, 24), "gps": True, "seconds": True, "preview": False}
                    expected.update(maker=True, date=True, note=True)
                    self.assertEqual(exif_values(found.exif), expected)
                    self.assertEqual(found.profile, profile())
                    self.assertEqual(found.xmp, xmp())

    def test_a_result_read_again_keeps_all(self):
        self.photo()
        for ending in ENDINGS:
            self.result(ending)
            again = self.result("png", source=f"out.{ending}")
            self.assertEqual(exif_values(again.exif)["maker"], True)
            self.assertEqual(again.profile, profile())

    def test_no_exif_comes_of_nothing(self):
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))
        for ending in ENDINGS:
            with self.subTest(ending=ending):
                self.assertIsNone(self.result(ending, source="in.ppm").exif)

    def test_xmp_tells_the_orientation_of_the_result(self):
        self.photo(packet=xmp(orientation=6))
        self.assertEqual(self.result("jpg").xmp, xmp(orientation=1))

    def test_orientation_of_a_png_is_applied(self):
        values = samples(6, 4, 3)
        write_png(self.folder / "in.png", 6, 4, values, 3, extra=exif_chunk(exif_block(6)))
        self.done("in.png", "-o", "out.ppm")
        width, height, _, _, after = read_netpbm(self.folder / "out.ppm")
        self.assertEqual((width, height), (4, 6))
        # Row 0 of what is stored is the last column of what is shown.
        self.assertEqual(after[9:12], values[0:3])
        found = self.result("png", source="in.png")
        self.assertEqual(exif_values(found.exif)["orientation"], 1)

    def test_png_from_standard_input_keeps_exif(self):
        write_png(self.folder / "in.png", 6, 4, samples(6, 4, 3), 3, extra=exif_chunk(exif_block(1)))
        with open(self.folder / "in.png", "rb") as source:
            subprocess.run([TOOL, "restore", "-", "-o", "out.png", "-q", *KEEP], stdin=source, cwd=self.folder, check=True)
        self.assertTrue(exif_values(Metadata(self.folder / "out.png").exif)["note"])

    def test_resolution_of_a_jpeg_is_kept_in_jpeg_and_png(self):
        self.photo()
        data = (self.folder / "in.jpg").read_bytes()
        at = data.index(b"JFIF\0") + 7
        for unit, dots, metre in ((1, 300, 11811), (2, 118, 11800)):
            (self.folder / "in.jpg").write_bytes(data[:at] + struct.pack(">BHH", unit, dots, dots) + data[at + 5 :])
            for options in ([], ["--strip=all"]):
                with self.subTest(unit=unit, options=options):
                    self.assertEqual(self.result("jpg", *options).dots, (unit, dots, dots))
                    self.assertEqual(self.result("png", *options).dots, (metre, metre, 1))

    def test_no_resolution_comes_of_nothing(self):
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))
        self.assertEqual(self.result("jpg", source="in.ppm").dots, (0, 1, 1))
        self.assertIsNone(self.result("png", source="in.ppm").dots)

    def test_runs_at_other_times_give_the_same_bytes(self):
        self.photo()
        before = {}
        for turn in range(2):
            for ending in (*ENDINGS, "tif", "bmp", "ppm"):
                self.done("in.jpg", "-o", f"out.{ending}")
                data = (self.folder / f"out.{ending}").read_bytes()
                self.assertEqual(before.setdefault(ending, data), data, ending)
            if turn == 0:
                time.sleep(1.1)


class Stripped(MetadataCase):
    def test_gps_leaves_all_but_the_place(self):
        self.photo()
        for ending in ENDINGS:
            with self.subTest(ending=ending):
                found = self.result(ending, "--strip=gps")
                expected = {"orientation": 1, "size": (16, 24), "gps": False, "seconds": False, "preview": False}
                expected.update(maker=True, date=True, note=True)
                self.assertEqual(exif_values(found.exif), expected)
                self.assertEqual(found.profile, profile())
                self.assertEqual(found.xmp, xmp())

    def test_gps_leaves_out_xmp_that_tells_a_place(self):
        self.photo(packet=xmp(gps=True))
        for ending in ENDINGS:
            with self.subTest(ending=ending):
                self.assertEqual(self.result(ending).xmp, xmp(gps=True))
                self.assertIsNone(self.result(ending, "--strip=gps").xmp)

    def test_exif_leaves_the_profile(self):
        self.photo()
        for ending in ENDINGS:
            with self.subTest(ending=ending):
                found = self.result(ending, "--strip=exif")
                self.assertEqual((found.exif, found.xmp, found.iptc), (None, None, None))
                self.assertEqual(found.profile, profile())

    def test_all_leaves_the_profile_alone(self):
        self.photo()
        data = (self.folder / "in.jpg").read_bytes()
        self.assertTrue(Metadata(self.folder / "in.jpg").iptc)
        for ending in ENDINGS:
            for option in ("--strip", "--strip=all"):
                with self.subTest(ending=ending, option=option):
                    found = self.result(ending, option)
                    self.assertEqual((found.exif, found.xmp, found.iptc), (None, None, None))
                    self.assertEqual(found.profile, profile())
                    after = (self.folder / f"out.{ending}").read_bytes()
                    for text in (MAKER, b"Caption", b"Ada"):
                        self.assertIn(text, data)
                        self.assertNotIn(text, after)

    def test_texts_of_a_png(self):
        texts = chunk(b"tEXt", b"Comment\0sea") + chunk(b"zTXt", b"Raw profile type exif\0\0" + zlib.compress(b"\nexif\n 4\n45786966\n"))
        write_png(self.folder / "in.png", 4, 4, samples(4, 4, 3), 3, extra=texts)
        kept = self.result("png", source="in.png").texts
        self.assertEqual(len(kept), 2)
        self.assertTrue(any(b"sea" in text for text in kept))
        for option in ("gps", "exif"):
            with self.subTest(option=option):
                kept = self.result("png", f"--strip={option}", source="in.png").texts
                self.assertEqual([b"sea" in text for text in kept], [True])
        self.assertEqual(self.result("png", "--strip=all", source="in.png").texts, [])

    def test_stripped_samples_are_the_same(self):
        self.photo()
        self.done("in.jpg", "-o", "a.ppm")
        for option in ("gps", "exif", "all"):
            self.done("in.jpg", "-o", "b.ppm", f"--strip={option}")
            self.assertEqual((self.folder / "a.ppm").read_bytes(), (self.folder / "b.ppm").read_bytes())


class Lost(MetadataCase):
    def test_exif_in_tiff_is_told(self):
        self.photo()
        line = "orv: warning: {}orv writes no EXIF into TIFF; it is left out\n"
        self.assertRegex(self.done("in.jpg", "-o", "out.tif"), "^" + line.format("(out.tif: )?") + "$")
        self.assertEqual(self.done("in.jpg", "-o", "out.tif", "--strip=exif"), "")

    def test_profile_in_bmp_and_ppm_is_told(self):
        write_png(self.folder / "in.png", 4, 4, samples(4, 4, 3), 3, extra=chunk(b"iCCP", b"a\0\0" + zlib.compress(profile())))
        for ending, name in (("bmp", "BMP"), ("ppm", "PPM")):
            warning = self.done("in.png", "-o", f"out.{ending}")
            self.assertIn(f"{name} holds no colour profile; that of the picture (Orv wide) is left out\n", warning)
        srgb = profile(name=b"sRGB IEC61966-2.1")
        write_png(self.folder / "in.png", 4, 4, samples(4, 4, 3), 3, extra=chunk(b"iCCP", b"a\0\0" + zlib.compress(srgb)))
        self.assertEqual(self.done("in.png", "-o", "out.bmp"), "")

    def test_damaged_exif_is_told(self):
        block = exif_block()
        write_png(self.folder / "in.png", 4, 4, samples(4, 4, 3), 3, extra=exif_chunk(b"XX" + block[2:]))
        self.assertRegex(self.done("in.png", "-o", "out.png"), "the EXIF block is damaged and is left out\n$")
        self.assertNotIn(b"eXIf", [kind for kind, _ in png_chunks(self.folder / "out.png")])

    def test_exif_that_is_too_large_for_jpeg_is_told(self):
        write_png(self.folder / "in.png", 4, 4, samples(4, 4, 3), 3, extra=exif_chunk(exif_block(preview=False) + bytes(70000)))
        self.assertRegex(self.done("in.png", "-o", "out.jpg"), "the EXIF block is too large and is left out\n$")
        self.assertIsNone(Metadata(self.folder / "out.jpg").exif)
        self.assertEqual(self.done("in.png", "-o", "out.webp"), "")


@NEEDS_VIPS
@NEEDS_MAGICK
class OtherTools(MetadataCase):
    """Another program reads what orv wrote."""

    def test_exif_is_read_back(self):
        self.photo()
        for strip, place in ((None, b"48/1"), ("gps", b"")):
            self.result("jpg", *([f"--strip={strip}"] if strip else []))
            wanted = "%[EXIF:Make]|%[EXIF:GPSLatitude]|%[EXIF:Orientation]\n"
            told = subprocess.run([MAGICK, "out.jpg", "-format", wanted, "info:"], cwd=self.folder, capture_output=True, check=True)
            maker, latitude, orientation = told.stdout.strip().split(b"|")
            with self.subTest(strip=strip):
                self.assertEqual((maker, orientation), (b"Orv Works", b"1"))
                self.assertEqual(latitude[: len(place) or None], place)


if __name__ == "__main__":
    unittest.main()
