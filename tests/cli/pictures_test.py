"""What a picture keeps on its way through the tool."""

import struct
import unittest

from cli_support import (
    KEEP,
    NEEDS_MAGICK,
    NEEDS_VIPS,
    FolderCase,
    exif,
    jpeg_segments,
    png_chunks,
    read_netpbm,
    read_png,
    run,
    samples,
    with_segment,
    write_float_tiff,
    write_netpbm,
    write_png,
)


class Pictures(FolderCase):
    def done(self, *arguments):
        self.check((0, "", ""), "restore", *arguments, "-q")

    def refused(self, pattern, *arguments, expected=3):
        before = self.names()
        code, out, error = run("restore", *arguments, cwd=self.folder)
        self.assertEqual((code, out, error.count("\n")), (expected, "", 1), error)
        self.assertRegex(error, pattern)
        self.assertEqual(self.names(), before)


class PlainFormats(Pictures):
    def test_netpbm_comes_back(self):
        for channels, depth in ((1, 8), (3, 8), (1, 16), (3, 16)):
            with self.subTest(channels=channels, depth=depth):
                values = samples(13, 7, channels, depth)
                write_netpbm(self.folder / "in.pnm", 13, 7, values, channels, depth)
                self.done("in.pnm", "out.pnm", "-f", *KEEP)
                self.assertEqual(read_netpbm(self.folder / "out.pnm"), (13, 7, channels, depth, values))

    def test_bmp_comes_back(self):
        for channels in (1, 3):
            for width in (1, 2, 3, 4, 13):
                with self.subTest(channels=channels, width=width):
                    values = samples(width, 5, channels)
                    write_netpbm(self.folder / "in.pnm", width, 5, values, channels)
                    self.done("in.pnm", "mid.bmp", "-f", *KEEP)
                    self.done("mid.bmp", "out.pnm", "-f", *KEEP)
                    self.assertEqual(read_netpbm(self.folder / "out.pnm"), (width, 5, channels, 8, values))

    def test_grey_becomes_ppm_by_its_ending(self):
        write_netpbm(self.folder / "in.pgm", 2, 1, [10, 200], 1)
        self.done("in.pgm", "out.ppm", *KEEP)
        self.assertEqual(read_netpbm(self.folder / "out.ppm"), (2, 1, 3, 8, [10, 10, 10, 200, 200, 200]))

    def test_top_down_bmp(self):
        write_netpbm(self.folder / "in.ppm", 3, 2, samples(3, 2, 3))
        self.done("in.ppm", "a.bmp", *KEEP)
        data = bytearray((self.folder / "a.bmp").read_bytes())
        data[22:26] = struct.pack("<i", -2)
        data[54:] = data[66:] + data[54:66]
        (self.folder / "b.bmp").write_bytes(data)
        self.done("b.bmp", "out.ppm", *KEEP)
        self.assertEqual((self.folder / "out.ppm").read_bytes(), (self.folder / "in.ppm").read_bytes())

    def test_sixteen_bits_narrow_for_bmp(self):
        write_netpbm(self.folder / "in.pgm", 4, 1, [0, 128, 129, 65535], 1, 16)
        code, _, error = run("restore", "in.pgm", "a.bmp", *KEEP, cwd=self.folder)
        line = "orv: warning: a.bmp: BMP holds 8 bits a sample; the picture's 16 are rounded\n"
        self.assertEqual((code, error), (0, line))
        self.done("a.bmp", "out.pgm", *KEEP)
        self.assertEqual(read_netpbm(self.folder / "out.pgm")[4], [0, 0, 1, 255])

    def test_cut_short(self):
        write_netpbm(self.folder / "in.ppm", 9, 9, samples(9, 9, 3))
        self.done("in.ppm", "in.bmp", *KEEP)
        for name in ("in.ppm", "in.bmp"):
            data = (self.folder / name).read_bytes()
            for size in (3, 20, len(data) // 2, len(data) - 1):
                (self.folder / ("cut-" + name)).write_bytes(data[:size])
                self.refused(r"^orv: cut-in\.(ppm|bmp): is (cut short|a damaged)", "cut-" + name, "out.ppm")

    def test_noise_shrinks(self):
        values = [100 + (v & 31) for v in samples(40, 40, 1)]
        write_netpbm(self.folder / "in.pgm", 40, 40, values, 1)
        for verb in ("restore", "denoise"):
            self.check((0, "", ""), verb, "in.pgm", "out.pgm", "-f", "-q")
            after = read_netpbm(self.folder / "out.pgm")[4]
            spread = lambda v: sum((a - 115.5) ** 2 for a in v)
            self.assertLess(spread(after), spread(values) / 2)


@NEEDS_VIPS
class VipsFormats(Pictures):
    def test_png_comes_back(self):
        for channels in (1, 2, 3, 4):
            for depth in (8, 16):
                with self.subTest(channels=channels, depth=depth):
                    values = samples(11, 6, channels, depth)
                    write_png(self.folder / "in.png", 11, 6, values, channels, depth)
                    self.done("in.png", "out.png", "-f", *KEEP)
                    self.assertEqual(read_png(self.folder / "out.png"), (11, 6, channels, depth, values))

    def test_alpha_stays_while_colour_changes(self):
        for depth in (8, 16):
            values = samples(16, 16, 4, depth)
            write_png(self.folder / "in.png", 16, 16, values, 4, depth)
            for name in ("out.png", "out.tif"):
                self.done("in.png", name, "-f")
            self.done("out.tif", "back.png", "-f", *KEEP)
            for name in ("out.png", "back.png"):
                after = read_png(self.folder / name)[4]
                self.assertEqual(after[3::4], values[3::4])
                self.assertNotEqual(after[0::4], values[0::4])

    def test_bmp_keeps_alpha(self):
        values = samples(5, 4, 4)
        write_png(self.folder / "in.png", 5, 4, values, 4)
        self.done("in.png", "mid.bmp", *KEEP)
        self.done("mid.bmp", "out.png", *KEEP)
        self.assertEqual(read_png(self.folder / "out.png")[4], values)

    def test_tiff_keeps_sixteen_bits(self):
        for channels in (1, 3):
            values = samples(9, 8, channels, 16)
            write_netpbm(self.folder / "in.pnm", 9, 8, values, channels, 16)
            self.done("in.pnm", "mid.tiff", "-f", *KEEP)
            self.done("mid.tiff", "out.pnm", "-f", *KEEP)
            self.assertEqual(read_netpbm(self.folder / "out.pnm"), (9, 8, channels, 16, values))

    def test_webp_is_close(self):
        write_netpbm(self.folder / "in.ppm", 16, 16, [90, 120, 60] * 256)
        self.done("in.ppm", "mid.webp", *KEEP)
        self.done("mid.webp", "out.ppm", *KEEP)
        for got, wanted in zip(read_netpbm(self.folder / "out.ppm")[4], [90, 120, 60] * 256):
            self.assertAlmostEqual(got, wanted, delta=3)

    def jpeg(self, width=24, height=16):
        values = [v for y in range(height) for x in range(width) for v in (x * 255 // width, y * 255 // height, 80)]
        write_netpbm(self.folder / "source.ppm", width, height, values)
        self.done("source.ppm", "plain.jpg", "-f", *KEEP)
        return (self.folder / "plain.jpg").read_bytes()

    def test_jpeg_has_no_chroma_subsampling(self):
        frames = [body for marker, body in jpeg_segments(self.jpeg()) if marker in (0xC0, 0xC2)]
        self.assertEqual([frames[0][i] for i in (7, 10, 13)], [0x11, 0x11, 0x11])

    def test_exif_orientation_is_applied_and_reset(self):
        (self.folder / "turned.jpg").write_bytes(with_segment(self.jpeg(), 0xE1, exif(6)))
        self.done("plain.jpg", "plain.ppm", *KEEP)
        self.done("turned.jpg", "out.ppm", *KEEP)
        self.done("turned.jpg", "out.jpg", *KEEP)
        self.done("out.jpg", "again.ppm", *KEEP)

        width, height, _, _, before = read_netpbm(self.folder / "plain.ppm")
        new_width, new_height, _, _, after = read_netpbm(self.folder / "out.ppm")
        self.assertEqual((new_width, new_height), (height, width))
        for y in range(height):
            for x in range(width):
                turned = (x * new_width + (height - 1 - y)) * 3
                self.assertEqual(after[turned : turned + 3], before[(y * width + x) * 3 : (y * width + x) * 3 + 3])
        self.assertEqual(read_netpbm(self.folder / "again.ppm")[:2], (height, width))
        blocks = [body for marker, body in jpeg_segments((self.folder / "out.jpg").read_bytes()) if marker == 0xE1]
        self.assertTrue(any(b"Orv Works" in body for body in blocks), "the rest of EXIF is gone")

    def test_colour_profile_and_xmp_are_kept(self):
        head = struct.pack(">II4s4s4s4s12s4s", 132, 0, b"\2\x10\0\0", b"mntr", b"RGB ", b"XYZ ", bytes(12), b"acsp")
        profile = b"ICC_PROFILE\0\1\1" + head.ljust(128, b"\0") + struct.pack(">I", 0)
        xmp = b"http://ns.adobe.com/xap/1.0/\0<x:xmpmeta xmlns:x='adobe:ns:meta/'/>"
        data = with_segment(with_segment(self.jpeg(), 0xE2, profile), 0xE1, xmp)
        (self.folder / "in.jpg").write_bytes(data)
        self.done("in.jpg", "out.jpg", *KEEP)
        found = jpeg_segments((self.folder / "out.jpg").read_bytes())
        self.assertIn((0xE2, profile), found)
        self.assertIn((0xE1, xmp), found)

    def test_colour_profiles_that_fit_nothing_are_left_out_with_a_warning(self):
        import zlib

        from cli_support import chunk, png_chunks

        def warnings(name, out):
            code, _, error = run("restore", name, out, "-f", *KEEP, cwd=self.folder)
            self.assertEqual(code, 0)
            return error

        head = struct.pack(">II4s4s4s4s12s4s", 132, 0, b"\2\x10\0\0", b"mntr", b"GRAY", b"XYZ ", bytes(12), b"acsp")
        grey = b"ICC_PROFILE\0\1\1" + head.ljust(128, b"\0") + struct.pack(">I", 0)
        (self.folder / "in.jpg").write_bytes(with_segment(self.jpeg(), 0xE2, grey))
        self.assertEqual(warnings("in.jpg", "out.jpg"), "orv: warning: the colour profile doesn't fit the result and is left out\n")
        self.assertNotIn(0xE2, [marker for marker, _ in jpeg_segments((self.folder / "out.jpg").read_bytes())])

        void = chunk(b"iCCP", b"void\0\0" + zlib.compress(b"no profile"))
        write_png(self.folder / "in.png", 4, 4, samples(4, 4, 3), 3, extra=void)
        self.assertEqual(warnings("in.png", "out.png"), "orv: warning: in.png: the colour profile is unusable and is left out\n")
        self.assertNotIn(b"iCCP", [kind for kind, _ in png_chunks(self.folder / "out.png")])

    def test_palette_becomes_rgb(self):
        import zlib

        from cli_support import chunk

        head = struct.pack(">IIBBBBB", 2, 1, 8, 3, 0, 0, 0)
        (self.folder / "in.png").write_bytes(
            b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", head)
            + chunk(b"PLTE", bytes([9, 8, 7, 200, 100, 50]))
            + chunk(b"IDAT", zlib.compress(bytes([0, 1, 0])))
            + chunk(b"IEND", b"")
        )
        self.done("in.png", "out.png", *KEEP)
        self.assertEqual(read_png(self.folder / "out.png"), (2, 1, 3, 8, [200, 100, 50, 9, 8, 7]))

    def test_cut_short(self):
        write_netpbm(self.folder / "in.ppm", 64, 64, samples(64, 64, 3))
        for name in ("in.png", "in.jpg", "in.tif", "in.webp"):
            self.done("in.ppm", name, *KEEP)
            data = (self.folder / name).read_bytes()
            for size in (13, len(data) // 2, len(data) * 9 // 10):
                with self.subTest(name=name, size=size):
                    (self.folder / ("cut-" + name)).write_bytes(data[:size])
                    reason = r"( \([^)]+\))?" if name == "in.jpg" else ""
                    self.refused(rf"^orv: cut-in\.\w+: is damaged or cut short{reason}\n$", "cut-" + name, "out.ppm")

    def test_float_tiff_stays_float(self):
        write_float_tiff(self.folder / "in.tif", 8, 8, [0.25, 0.5, 1.0] * 64)
        code, out, error = run("restore", "in.tif", "out.tif", cwd=self.folder)
        self.assertEqual((code, error), (0, ""))
        self.assertRegex(out, r"(^|\n)out\.tif: 8 x 8 pixels, float colour, ")
        self.refused("can't hold the float samples of this picture; take TIFF\n$", "in.tif", "out.png", expected=4)

    def test_float_samples_beyond_white_are_refused(self):
        for value in (1.5, -0.1, float("nan")):
            write_float_tiff(self.folder / "in.tif", 8, 8, [0.25, value, 0.5] * 64)
            self.refused("has float samples outside 0 to 1, where orv puts black and white\n$", "in.tif", "out.tif")

    def test_brackets_in_names(self):
        write_png(self.folder / "a[1].png", 4, 4, samples(4, 4, 3), 3)
        self.done("a[1].png", "b[2].png", *KEEP)
        self.assertEqual(read_png(self.folder / "b[2].png")[4], samples(4, 4, 3))

    def test_png_resolution_is_kept(self):
        from cli_support import chunk

        density = chunk(b"pHYs", struct.pack(">IIB", 11811, 11811, 1))
        write_png(self.folder / "in.png", 4, 4, samples(4, 4, 3), 3, extra=density)
        self.done("in.png", "out.png", *KEEP)
        self.assertIn((b"pHYs", struct.pack(">IIB", 11811, 11811, 1)), png_chunks(self.folder / "out.png"))


@NEEDS_VIPS
class Wishes(Pictures):
    """--format, --quality, --alpha and --max-side."""

    def size(self, name):
        return (self.folder / name).stat().st_size

    def test_quality_decides_on_the_size(self):
        write_netpbm(self.folder / "in.ppm", 64, 64, samples(64, 64, 3))
        for ending in ("jpg", "webp"):
            for quality in ("1", "92", "100"):
                self.done("in.ppm", "-o", f"{quality}.{ending}", "--quality", quality, *KEEP)
            self.done("in.ppm", "-o", f"usual.{ending}", *KEEP)
            self.assertLess(self.size(f"1.{ending}"), self.size(f"92.{ending}"))
            self.assertLess(self.size(f"92.{ending}"), self.size(f"100.{ending}"))
            self.assertEqual((self.folder / f"usual.{ending}").read_bytes(), (self.folder / f"92.{ending}").read_bytes())
        self.done("100.webp", "-o", "back.ppm", *KEEP)
        self.assertEqual(read_netpbm(self.folder / "back.ppm")[4], samples(64, 64, 3))

    def test_no_quality_has_less_resolution_of_colours(self):
        write_netpbm(self.folder / "in.ppm", 64, 64, samples(64, 64, 3))
        for quality in ("1", "50", "100"):
            self.done("in.ppm", "-o", "out.jpg", "--quality", quality, "-f", *KEEP)
            frames = [body for marker, body in jpeg_segments((self.folder / "out.jpg").read_bytes()) if marker in (0xC0, 0xC2)]
            self.assertEqual([frames[0][i] for i in (7, 10, 13)], [0x11, 0x11, 0x11])

    def test_format_decides_on_the_ending_beside(self):
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))
        self.done("in.ppm", "--format", "png", *KEEP)
        self.assertEqual(read_png(self.folder / "in.restored.png")[4], samples(8, 8, 3))

    def test_alpha_may_be_dropped(self):
        for depth in (8, 16):
            values = samples(8, 8, 4, depth)
            write_png(self.folder / "in.png", 8, 8, values, 4, depth)
            self.done("in.png", "-o", "out.png", "--alpha", "drop", "-f", *KEEP)
            colours = [v for i, v in enumerate(values) if i % 4 != 3]
            self.assertEqual(read_png(self.folder / "out.png"), (8, 8, 3, depth, colours))

    def test_alpha_may_be_restored(self):
        values = samples(32, 32, 4)
        write_png(self.folder / "in.png", 32, 32, values, 4)
        spread = {}
        for mode in ("keep", "restore"):
            self.done("in.png", "-o", f"{mode}.png", "--alpha", mode)
            alpha = read_png(self.folder / f"{mode}.png")[4][3::4]
            spread[mode] = sum((a - 127.5) ** 2 for a in alpha)
            self.assertEqual(alpha == values[3::4], mode == "keep")
        self.assertLess(spread["restore"], spread["keep"])

    def test_max_side_scales_down_and_never_up(self):
        write_png(self.folder / "in.png", 60, 30, [90, 120, 60] * 1800, 3)
        self.done("in.png", "-o", "small.png", "--max-side", "20", *KEEP)
        self.assertEqual(read_png(self.folder / "small.png"), (20, 10, 3, 8, [90, 120, 60] * 200))
        self.done("in.png", "-o", "same.png", "--max-side", "60", *KEEP)
        self.assertEqual(read_png(self.folder / "same.png")[:2], (60, 30))


@NEEDS_VIPS
@NEEDS_MAGICK
class UnusualPictures(Pictures):
    def test_cmyk_becomes_rgb(self):
        self.magick("-size", "8x8", "xc:red", "-colorspace", "CMYK", "in.jpg")
        self.done("in.jpg", "out.ppm", *KEEP)
        width, height, channels, _, values = read_netpbm(self.folder / "out.ppm")
        self.assertEqual((width, height, channels), (8, 8, 3))
        self.assertGreater(values[0], 200)
        self.assertLess(values[2], 80)

    def test_several_pages_are_refused(self):
        self.magick("-size", "8x8", "xc:red", "xc:blue", "in.tif")
        self.magick("-size", "8x8", "xc:red", "xc:blue", "in.webp")
        for name in ("in.tif", "in.webp"):
            self.refused(r"holds 2 pages or frames; orv takes single pictures\n$", name, "out.ppm")

    def test_other_colour_spaces_are_refused(self):
        self.magick("-size", "8x8", "xc:red", "-colorspace", "LAB", "in.tif")
        self.refused(r"channels of kind labs?; orv takes grey and RGB, with or without alpha\n$", "in.tif", "out.ppm")

    def test_unread_kinds_of_bmp(self):
        self.magick("-size", "8x8", "gradient:red-blue", "-colors", "16", "-depth", "4", "-type", "palette", "four.bmp")
        self.refused(r"is a (BMP of 4 bits a pixel; 8, 24 and 32 are read|compressed BMP, which isn't read)\n$", "four.bmp", "out.ppm")


if __name__ == "__main__":
    unittest.main()
