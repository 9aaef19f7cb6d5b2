#!/usr/bin/env python3
"""orv.exe under Wine, beside the tool of this machine: tool_test.py ORV_EXE WINE_PREFIX [ORV].

ORV is the tool to compare with, build/release/tools/orv/orv by default. The prefix is a folder of Wine that
is ready, as `wineboot -i` makes it. The last line is the count. Wine gives exit code 0 for a program that it
couldn't start, so each run is judged by what it wrote as well.
"""

import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

sys.dont_write_bytecode = True

from tool_support import (  # noqa: E402
    DOTS_300,
    HEIGHT,
    NEEDS_VIPS,
    PROGRAM,
    WIDTH,
    WINE_SETTINGS,
    Counted,
    WindowsCase,
    as_rgba,
    wine,
)

# Behind those, which say where it is.
from cli_support import (  # noqa: E402
    KEEP,
    chunk,
    exif,
    jpeg_segments,
    png_chunks,
    read_netpbm,
    samples,
    with_segment,
    write_netpbm,
)
from metadata_samples import Metadata as Held  # noqa: E402
from metadata_samples import profile, xmp  # noqa: E402


class Program(WindowsCase):
    def test_version_names_the_component(self):
        version = self.here("--version").split()[1]
        self.assertEqual(self.done("--version"), f"orv {version} (Windows Imaging Component)\n")

    def test_lists_are_those_of_this_machine(self):
        for verb in ("methods", "solvers"):
            self.assertEqual(self.done(verb), self.here(verb))

    def test_help_of_formats_tells_what_this_build_writes(self):
        text = self.done("help", "formats")
        self.assertIn(".png .jpg .jpeg .tif .tiff .bmp .ppm .pgm .pnm", text.replace("\n", " ").replace("  ", " "))

    def test_wrong_words_end_with_their_exit_code(self):
        code, out, errors = self.orv("restor")
        self.assertEqual((code, out), (2, ""))
        self.assertIn("unknown verb 'restor'", errors)

    def test_word_of_a_command_may_hold_quotes_and_spaces(self):
        code, _, errors = self.orv('no "such" verb', "")
        self.assertEqual((code, errors.split(" (")[0]), (2, "orv: unknown verb 'no \"such\" verb'"))


@NEEDS_VIPS
class Formats(WindowsCase):
    def same_result(self, source, result, command=("restore", "--strength", "40")):
        """Both tools make the same pixels of a file."""
        verb, *options = command
        self.done(verb, source, f"wine.{result}", *options, "--quiet", "--force")
        self.here(verb, source, f"here.{result}", *options, "--quiet", "--force")
        return self.pixels(f"wine.{result}"), self.pixels(f"here.{result}")

    def test_all_pairs_of_exact_formats(self):
        self.png("in.png")
        for ending in ("tif", "bmp", "ppm"):
            self.here("restore", "in.png", f"in.{ending}", *KEEP, "--quiet")
        for source in ("png", "tif", "bmp", "ppm"):
            for result in ("png", "tif", "bmp", "ppm"):
                with self.subTest(source=source, result=result):
                    self.assertEqual(*self.same_result(f"in.{source}", result))

    def test_grey_stays_grey(self):
        self.png("in.png", channels=1)
        for ending in ("png", "tif", "bmp", "pgm"):
            with self.subTest(ending=ending):
                wine_pixels, here_pixels = self.same_result("in.png", ending)
                self.assertEqual(wine_pixels[2], 1)
                self.assertEqual(wine_pixels, here_pixels)
                self.assertEqual(*self.same_result(f"here.{ending}", "png"))

    def test_sixteen_bits(self):
        for channels in (1, 3, 4):
            self.png(f"{channels}.png", channels, 16)
            with self.subTest(channels=channels):
                wine_pixels, here_pixels = self.same_result(f"{channels}.png", "png")
                self.assertEqual(wine_pixels[3], 16)
                self.assertEqual(wine_pixels, here_pixels)

    def test_sixteen_bits_in_tiff(self):
        # Wine writes no grey TIFF of 16 bits, so that it becomes three equal channels.
        for channels in (1, 3, 4):
            self.png("in.png", channels, 16)
            with self.subTest(channels=channels):
                wine_pixels, here_pixels = self.same_result("in.png", "tif")
                self.assertEqual(wine_pixels[3], 16)
                self.assertEqual(as_rgba(wine_pixels), as_rgba(here_pixels))
                self.assertEqual(*self.same_result("here.tif", "png"))

    def test_alpha(self):
        self.png("in.png", channels=4)
        for ending in ("png", "tif", "bmp"):
            with self.subTest(ending=ending):
                self.assertEqual(*self.same_result("in.png", ending))
                self.assertEqual(*self.same_result(f"here.{ending}", "png"))

    def test_grey_with_alpha_is_written_as_rgba(self):
        for depth in (8, 16):
            self.png("in.png", 2, depth)
            wine_pixels, here_pixels = self.same_result("in.png", "png")
            self.assertEqual((wine_pixels[2], wine_pixels[3]), (4, depth))
            self.assertEqual(wine_pixels, as_rgba(here_pixels))

    def test_other_methods(self):
        self.png("in.png")
        for command in (("blur", "--sigma", "2"), ("shock",), ("wavelet", "--shifts", "1")):
            with self.subTest(command=command):
                self.assertEqual(*self.same_result("in.png", "png", command))

    def test_few_bits_of_grey(self):
        for depth in (1, 2, 4):
            row = bytes([(37 * i) & 255 for i in range(2 * depth)])
            head = (16).to_bytes(4, "big") + (5).to_bytes(4, "big") + bytes([depth, 0, 0, 0, 0])
            body = chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress((b"\0" + row) * 5))
            (self.folder / "few.png").write_bytes(b"\x89PNG\r\n\x1a\n" + body + chunk(b"IEND", b""))
            with self.subTest(depth=depth):
                self.assertEqual(*self.same_result("few.png", "png"))

    def test_smaller_side_is_that_of_this_machine_but_for_rounding(self):
        self.soft_png("in.png")
        wine_pixels, here_pixels = self.same_result("in.png", "png", ("restore", *KEEP, "--max-side", "20"))
        self.assertEqual(wine_pixels[:4], here_pixels[:4])
        # Both filter by Lanczos of three lobes; libvips rounds its weights to 1/4096.
        self.assertLessEqual(max(abs(a - b) for a, b in zip(wine_pixels[4], here_pixels[4])), 2)


@NEEDS_VIPS
class Jpeg(WindowsCase):
    def test_reads_what_this_machine_reads(self):
        self.soft_png("in.png")
        self.here("restore", "in.png", "in.jpg", *KEEP, "--quiet")
        self.done("restore", "in.jpg", "wine.png", *KEEP, "--quiet")
        a, b = self.pixels("wine.png"), self.pixels("in.jpg")
        self.assertEqual(a[:4], b[:4])
        # Decoders may round the transform and the colours each by one.
        self.assertLessEqual(max(abs(x - y) for x, y in zip(a[4], b[4])), 3)

    def test_writes_what_this_machine_reads(self):
        self.soft_png("in.png")
        self.done("restore", "in.png", "wine.jpg", *KEEP, "--quiet")
        self.here("restore", "in.png", "here.jpg", *KEEP, "--quiet")
        first = self.pixels("in.png")
        for name in ("wine.jpg", "here.jpg"):
            told = self.pixels(name)
            self.assertEqual(told[:4], first[:4])
            # A smooth picture of quality 92.
            self.assertLessEqual(max(abs(x - y) for x, y in zip(told[4], first[4])), 8, name)

    def test_quality_counts(self):
        self.png("in.png")
        sizes = []
        for quality in (20, 60, 95):
            self.done("restore", "in.png", "out.jpg", *KEEP, "--quality", quality, "--quiet", "--force")
            sizes.append((self.folder / "out.jpg").stat().st_size)
        if len(set(sizes)) == 1:
            self.skipTest("the JPEG encoder of this Wine takes no quality")
        self.assertLess(sizes[0] * 1.2, sizes[1])
        self.assertLess(sizes[1] * 1.2, sizes[2])

    def test_grey(self):
        self.png("in.png", channels=1)
        self.done("restore", "in.png", "wine.jpg", *KEEP, "--quiet")
        self.assertEqual(self.pixels("wine.jpg")[2], 1)

    def test_turned_picture_comes_upright(self):
        self.soft_png("in.png")
        self.here("restore", "in.png", "flat.jpg", *KEEP, "--quiet")
        data = (self.folder / "flat.jpg").read_bytes()
        for orientation in range(2, 9):
            (self.folder / "in.jpg").write_bytes(with_segment(data, 0xE1, exif(orientation)))
            self.done("restore", "in.jpg", "wine.png", *KEEP, "--quiet", "--force")
            a, b = self.pixels("wine.png"), self.pixels("in.jpg")
            with self.subTest(orientation=orientation):
                self.assertEqual(a[:4], b[:4])
                self.assertLessEqual(max(abs(x - y) for x, y in zip(a[4], b[4])), 3)

    def test_bytes_between_segments_hide_nothing(self):
        self.soft_png("in.png")
        self.here("restore", "in.png", "in.jpg", *KEEP, "--quiet")
        data = with_segment((self.folder / "in.jpg").read_bytes(), 0xE1, exif(6))
        at = data.index(b"\xff\xe1")
        (self.folder / "in.jpg").write_bytes(data[:at] + b"\xff\xff" + data[at:])
        self.done("restore", "in.jpg", "wine.png", *KEEP, "--quiet")
        self.assertEqual(self.pixels("wine.png")[:2], (HEIGHT, WIDTH))


@NEEDS_VIPS
class Metadata(WindowsCase):
    def jpeg(self, *segments):
        """in.jpg with further segments at its head."""
        self.soft_png("in.png")
        self.here("restore", "in.png", "in.jpg", *KEEP, "--quiet", "--force")
        data = (self.folder / "in.jpg").read_bytes()
        for marker, body in segments:
            data = with_segment(data, marker, body)
        (self.folder / "in.jpg").write_bytes(data)

    def test_exif_and_xmp_stay(self):
        packet = xmp(orientation=6)
        self.jpeg((0xE1, b"http://ns.adobe.com/xap/1.0/\0" + packet), (0xE1, exif(6)))
        for ending in ("jpg", "png"):
            self.done("restore", "in.jpg", f"wine.{ending}", *KEEP, "--quiet")
        bodies = [body for _, body in jpeg_segments((self.folder / "wine.jpg").read_bytes())]
        self.assertEqual(sum(b"Orv Works" in body for body in bodies), 1)
        self.assertEqual(sum(body.startswith(b"http://ns.adobe.com/xap/1.0/\0") for body in bodies), 1)
        chunks = dict(png_chunks(self.folder / "wine.png"))
        self.assertIn(b"Orv Works", chunks[b"eXIf"])
        self.assertIn(b"x:xmpmeta", chunks[b"iTXt"])
        # Upright from now on.
        told = self.here("inspect", "--json", "wine.jpg")
        self.assertIn('"orientation": 1', told)

    def test_strip_leaves_them_out(self):
        self.jpeg((0xE1, b"http://ns.adobe.com/xap/1.0/\0" + xmp()), (0xE1, exif(6)))
        self.done("restore", "in.jpg", "wine.jpg", *KEEP, "--strip", "--quiet")
        data = (self.folder / "wine.jpg").read_bytes()
        self.assertNotIn(b"Orv Works", data)
        self.assertNotIn(b"x:xmpmeta", data)

    def test_profile_stays(self):
        wide = profile()
        body = b"wide\0\0" + zlib.compress(wide)
        self.png("in.png", extra=chunk(b"iCCP", body))
        self.here("restore", "in.png", "in.jpg", *KEEP, "--quiet")
        for source in ("png", "jpg"):
            for ending in ("png", "jpg"):
                self.done("restore", f"in.{source}", f"wine.{ending}", *KEEP, "--force", "--quiet")
                with self.subTest(source=source, result=ending):
                    self.assertEqual(Held(self.folder / f"wine.{ending}").profile, wide)
                    self.assertIn("profile     Orv wide", self.here("inspect", f"wine.{ending}"))

    def test_long_profile_is_put_together(self):
        # More than one segment of a JPEG holds, and more than one stored block of a PNG.
        wide = profile() + bytes(samples(150000, 1, 1))
        wide = len(wide).to_bytes(4, "big") + wide[4:]
        self.png("in.png", extra=chunk(b"iCCP", b"wide\0\0" + zlib.compress(wide)))
        self.done("restore", "in.png", "a.jpg", *KEEP, "--quiet")
        self.done("restore", "a.jpg", "b.png", *KEEP, "--quiet")
        self.assertEqual(Held(self.folder / "b.png").profile, wide)

    def test_resolution_stays(self):
        self.png("in.png", extra=DOTS_300)
        for name in ("a.jpg", "a.png", "a.tif"):
            self.done("restore", "in.png", name, *KEEP, "--quiet")
            self.assertIn("resolution  300.0 dots per inch", self.here("inspect", name), name)
        self.png("in.png")
        for name, dots in (("b.jpg", (0, 1, 1)), ("b.png", None)):
            self.done("restore", "in.png", name, *KEEP, "--quiet")
            self.assertEqual(Held(self.folder / name).dots, dots)

    def test_header_is_that_of_this_machine(self):
        self.jpeg()
        # Where a PNG tells no resolution, libvips says one of its own.
        self.png("in.png", 4, 16, extra=DOTS_300)
        for name in ("in.jpg", "in.png"):
            self.assertEqual(self.done("inspect", name), self.here("inspect", name))


class Files(WindowsCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", WIDTH, HEIGHT, samples(WIDTH, HEIGHT, 3))

    def test_names_of_all_scripts(self):
        folder = "Bilder für 中文"
        (self.folder / folder).mkdir()
        name = f"{folder}/Größe ж 日本 ½.ppm"
        (self.folder / name).write_bytes((self.folder / "in.ppm").read_bytes())
        result = "Ergebnis ü/neu 文.bmp"
        out = self.done("restore", name.replace("/", "\\"), "-o", result.replace("/", "\\"))
        self.assertIn(f"{result}: 33 x 21 pixels", out)
        self.assertTrue((self.folder / result).is_file())

    def test_paths_from_the_root_are_no_options(self):
        place = str(self.folder).replace("/", "\\")
        for prefix in (place, "Z:" + place, str(self.folder)):
            self.done("restore", f"{prefix}/in.ppm", f"{prefix}/out.bmp", *KEEP, "--quiet", "--force")
            self.assertIn("out.bmp", self.names(), prefix)
            (self.folder / "out.bmp").unlink()

    def test_patterns_are_the_tool_s_own(self):
        for name in ("b10.ppm", "b2.ppm", "c.ppm"):
            (self.folder / name).write_bytes((self.folder / "in.ppm").read_bytes())
        self.done("restore", "B*.ppm", "-o", "out\\", *KEEP, "--quiet")
        self.assertEqual(sorted(path.name for path in (self.folder / "out").iterdir()), ["b10.ppm", "b2.ppm"])

    def test_pattern_below_a_share(self):
        # Wine has no share of its own; this name of a drive begins as one does.
        pattern = "\\\\.\\Z:" + str(self.folder).replace("/", "\\") + "\\i*.ppm"
        self.done("restore", pattern, "-o", "out\\", *KEEP, "--quiet")
        self.assertEqual([path.name for path in (self.folder / "out").iterdir()], ["in.ppm"])

    def test_missing_file(self):
        code, out, errors = self.orv("restore", "no.png")
        self.assertEqual((code, out, errors), (3, "", "orv: no.png: no such file\n"))

    def test_existing_result_stays(self):
        (self.folder / "out.bmp").write_bytes(b"mine")
        code, _, errors = self.orv("restore", "in.ppm", "-o", "out.bmp")
        self.assertEqual((code, errors), (4, "orv: out.bmp: exists already; --force overwrites it\n"))
        self.assertEqual((self.folder / "out.bmp").read_bytes(), b"mine")
        self.done("restore", "in.ppm", "-o", "out.bmp", "--force", "--quiet")
        self.assertEqual((self.folder / "out.bmp").read_bytes()[:2], b"BM")

    def test_waits_for_a_program_that_holds_the_result(self):
        result, told = self.folder / "out.bmp", 2154
        result.write_bytes(b"mine")
        settings = {**os.environ, **WINE_SETTINGS}
        holding = ["wine", "cmd", "/c", "pause > out.bmp"]
        holder = subprocess.Popen(
            holding, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, cwd=self.folder, env=settings
        )
        self.addCleanup(holder.communicate)
        self.addCleanup(holder.kill)
        self.wait_for(lambda: result.read_bytes() != b"mine")
        command = ["wine", str(PROGRAM), "restore", "in.ppm", "out.bmp", *KEEP, "--force", "--quiet"]
        running = subprocess.Popen(command, stdin=subprocess.DEVNULL, cwd=self.folder, env=settings)
        self.wait_for(lambda: any(path.stat().st_size == told for path in self.folder.glob(".orv-*")))
        time.sleep(0.1)
        holder.kill()
        self.assertEqual(running.wait(60), 0)
        self.assertEqual(result.stat().st_size, told)

    def test_damaged_files(self):
        self.done("restore", "in.ppm", "a.png", *KEEP, "--quiet")
        self.done("restore", "in.ppm", "a.jpg", *KEEP, "--quiet")
        self.done("restore", "in.ppm", "a.tif", *KEEP, "--quiet")
        self.done("restore", "in.ppm", "a.bmp", *KEEP, "--quiet")
        before = self.names()
        for ending in ("png", "jpg", "tif", "bmp"):
            whole = (self.folder / f"a.{ending}").read_bytes()
            for size in (20, len(whole) // 2, len(whole) - 30):
                (self.folder / f"a.{ending}").write_bytes(whole[:size])
                with self.subTest(ending=ending, size=size):
                    code, out, errors = self.orv("restore", f"a.{ending}", "out.png")
                    self.assertEqual((code, out), (3, ""), errors)
                    self.assertRegex(errors, rf"^orv: a\.{ending}: .*(damaged|cut short)")
                    self.assertEqual(self.names(), before)

    def test_a_bmp_is_measured_by_its_rows(self):
        self.done("restore", "in.ppm", "a.bmp", *KEEP, "--quiet")
        whole = (self.folder / "a.bmp").read_bytes()
        for told in (0, 0xFFFFFFFF):
            (self.folder / "a.bmp").write_bytes(whole[:2] + told.to_bytes(4, "little") + whole[6:])
            self.done("restore", "a.bmp", "b.ppm", *KEEP, "--quiet", "--force")
            self.assertEqual(read_netpbm(self.folder / "b.ppm"), read_netpbm(self.folder / "in.ppm"))
            (self.folder / "a.bmp").write_bytes(whole[:2] + told.to_bytes(4, "little") + whole[6:-1])
            self.assertEqual(self.orv("restore", "a.bmp", "c.ppm")[0], 3)

    def test_wrong_checksum_of_a_png(self):
        self.png("in.png")
        data = bytearray((self.folder / "in.png").read_bytes())
        data[len(data) // 2] ^= 0x55
        (self.folder / "in.png").write_bytes(bytes(data))
        self.assertEqual(self.orv("restore", "in.png")[0], 3)
        self.assertNotIn("in.restored.png", self.names())

    def test_ctrl_c_leaves_nothing_behind(self):
        side = 1000
        (self.folder / "large.ppm").write_bytes(b"P6\n%d %d\n255\n" % (side, side) + bytes(range(250)) * (side * 12 * side // 1000))
        before = self.names()
        with tempfile.TemporaryFile() as errors:
            command = ["wine", str(PROGRAM), "denoise", "large.ppm", "out.png", "--steps", "200"]
            settings = {**os.environ, **WINE_SETTINGS}
            running = subprocess.Popen(command, stdout=errors, stderr=errors, cwd=self.folder, env=settings)
            for _ in range(600):
                if any(name.startswith(".orv-") for name in self.names()):
                    break
                time.sleep(0.1)
            self.assertNotEqual(self.names(), before)
            running.send_signal(signal.SIGINT)
            running.wait(60)  # Wine gives no exit code for this end.
            errors.seek(0)
            self.assertIn(b"orv: cancelled, nothing written\n", errors.read())
        self.assertEqual(self.names(), before)

    def test_formats_that_are_missing_are_named(self):
        code, _, errors = self.orv("restore", "in.ppm", "out.webp")
        self.assertEqual(code, 4)
        self.assertIn("Windows Imaging Component does and writes .png .jpg .jpeg .tif .tiff .bmp", errors)
        (self.folder / "in.webp").write_bytes(b"RIFF\x24\0\0\0WEBPVP8 " + bytes(24))
        code, _, errors = self.orv("restore", "in.webp", "out.png")
        self.assertEqual(code, 3)
        self.assertIn("Windows Imaging Component does and reads PNG, JPEG, TIFF, BMP, PPM, PGM alone", errors)

    def test_standard_streams_carry_bytes(self):
        # Line ends and the mark that ended texts of old.
        values = [10, 13, 26] * (WIDTH * HEIGHT)
        write_netpbm(self.folder / "ends.ppm", WIDTH, HEIGHT, values)
        code, out, errors = wine(
            "restore", "-", *KEEP, "--quiet", cwd=self.folder, stdin=(self.folder / "ends.ppm").read_bytes()
        )
        self.assertEqual((code, errors), (0, b""))
        (self.folder / "out.ppm").write_bytes(out)
        self.assertEqual(read_netpbm(self.folder / "out.ppm")[4], values)


@NEEDS_VIPS
class Work(WindowsCase):
    def test_recipe_is_verified_by_both(self):
        self.png("in.png")
        self.done("restore", "in.png", "wine.png", "--recipe", "wine.json", "--quiet")
        self.assertIn("verified", self.here("run", "wine.json", "in.png", "here.png"))
        self.here("restore", "in.png", "h.png", "--recipe", "here.json", "--quiet")
        self.assertIn("verified", self.done("run", "here.json", "in.png", "w.png"))

    def test_compare_measures_the_same(self):
        self.png("a.png")
        self.png("b.png", seed=2)
        self.assertEqual(self.done("compare", "a.png", "b.png"), self.here("compare", "a.png", "b.png"))
        self.done("compare", "a.png", "b.png", "-o", "page.html")
        page = (self.folder / "page.html").read_text()
        self.assertIn("data:image/png;base64,", page)

    def test_tune_writes_a_sheet(self):
        self.png("in.png")
        options = ("tune", "blur", "in.png", "--sigma", "1,2", "--quiet", "-o")
        self.done(*options, "wine.png")
        self.here(*options, "here.png")
        self.assertEqual(self.pixels("wine.png"), self.pixels("here.png"))

    def test_solve_writes_a_report(self):
        self.png("in.png")
        self.assertIn("42 solvers on 33 x 21 pixels", self.done("solve", "in.png", "-o", "page.html"))
        self.assertIn("<html", (self.folder / "page.html").read_text()[:500])


@NEEDS_VIPS
class Batch(WindowsCase):
    def setUp(self):
        super().setUp()
        (self.folder / "in" / "ü 文").mkdir(parents=True)
        for name, seed in (("a.png", 1), ("b.png", 2), ("ü 文/c.png", 3)):
            self.png(f"in/{name}", seed=seed)

    def files(self, folder="out"):
        """What lies in a folder, below it too."""
        base = self.folder / folder
        return sorted(str(path.relative_to(base)) for path in base.rglob("*") if path.is_file())

    def test_three_pictures_in_workers(self):
        self.done("batch", "blur", "in", "--sigma", "2", "--recursive", "-o", "out", "--jobs", "2", "--quiet")
        names = ["a.png", "b.png", "ü 文/c.png"]
        self.assertEqual(self.files(), sorted([*names, *(f".orv/{name}.json" for name in names)]))
        for name in names:
            self.here("blur", f"in/{name}", "here.png", "--sigma", "2", "--quiet", "--force")
            self.assertEqual(self.pixels(f"out/{name}"), self.pixels("here.png"))

    def test_a_bad_file_costs_itself_alone(self):
        whole = (self.folder / "in" / "b.png").read_bytes()
        (self.folder / "in" / "b.png").write_bytes(whole[:200])
        code, out, errors = self.orv("batch", "blur", "in", "-o", "out", "--report", "page.html")
        self.assertEqual(code, 1)
        self.assertIn("orv: in/b.png: is damaged or cut short\n", errors)
        self.assertIn("1 done, 1 failed", out)
        self.assertEqual(self.files(), [".orv/a.png.json", ".orv/failed.txt", "a.png"])
        page = (self.folder / "page.html").read_text()
        self.assertIn('href="out/a.png"', page)
        self.assertEqual(page.count("data:image/jpeg;base64,"), 2)
        # The rest is done when the file is whole; what is done stays.
        (self.folder / "in" / "b.png").write_bytes(whole)
        stamp = (self.folder / "out" / "a.png").stat().st_mtime_ns
        out = self.orv("batch", "blur", "in", "-o", "out", "--resume")[1]
        self.assertIn("1 done, 1 skipped", out)
        self.assertEqual((self.folder / "out" / "a.png").stat().st_mtime_ns, stamp)
        self.assertEqual(self.files(), [".orv/a.png.json", ".orv/b.png.json", "a.png", "b.png"])

    def test_pictures_stay_by_whatever_name_their_folder_goes(self):
        before = (self.folder / "in" / "a.png").read_bytes()
        (self.folder / "link").symlink_to("in")
        for folder in ("IN", "link", "in\\."):
            code, _, errors = self.orv("batch", "blur", "in", "-o", folder, "--force")
            self.assertEqual(code, 4, errors)
            self.assertIn("is the picture itself, which a batch never overwrites", errors)
            self.assertEqual((self.folder / "in" / "a.png").read_bytes(), before, folder)

    def test_names_that_differ_in_case_are_one(self):
        (self.folder / "in" / "b.png").unlink()
        write_netpbm(self.folder / "in" / "A.ppm", WIDTH, HEIGHT, samples(WIDTH, HEIGHT, 3))
        code, _, errors = self.orv("batch", "blur", "in", "-o", "out", "--format", "png")
        self.assertEqual(code, 2)
        self.assertIn("would both become out/", errors)
        self.assertFalse((self.folder / "out").exists())

    def test_ctrl_c_ends_the_workers_and_a_folder_is_for_one(self):
        side = 500
        for name in ("large", "other"):
            text = b"P6\n%d %d\n255\n" % (side, side) + bytes(range(250)) * (side * side * 3 // 250)
            (self.folder / "in" / f"{name}.ppm").write_bytes(text)
        options = ("--include", "*.ppm", "--steps", "900", "--jobs", "2", "-o", "out")
        with tempfile.TemporaryFile() as errors:
            command = ["wine", str(PROGRAM), "batch", "denoise", "in", *options]
            settings = {**os.environ, **WINE_SETTINGS}
            running = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=errors, stderr=errors, cwd=self.folder, env=settings
            )
            self.addCleanup(running.kill)
            self.wait_for(lambda: len(list(self.folder.glob("out/.orv/.work/*/.orv-*"))) == 4)
            code, _, told = self.orv("batch", "blur", "in", "-o", "OUT")
            self.assertEqual((code, told.split("; ")[0]), (4, "orv: OUT: another batch writes into this folder"))
            running.send_signal(signal.SIGINT)
            running.wait(60)
            errors.seek(0)
            self.assertIn(b"orv: cancelled, 0 of 2 pictures are done; --resume does the rest\n", errors.read())
        self.assertFalse((self.folder / "out").exists())

    def test_results_that_stand_are_not_overwritten(self):
        (self.folder / "out").mkdir()
        (self.folder / "out" / "a.png").write_bytes(b"mine")
        code, _, errors = self.orv("batch", "blur", "in", "-o", "out")
        self.assertEqual(code, 4)
        self.assertIn("1 of 2 results exist already", errors)
        self.assertEqual((self.folder / "out" / "a.png").read_bytes(), b"mine")


def main():
    if PROGRAM is None:
        print(__doc__, file=sys.stderr)
        return 2
    suite = unittest.defaultTestLoader.loadTestsFromModule(sys.modules["__main__"])
    result = unittest.TextTestRunner(verbosity=1, stream=sys.stderr, resultclass=Counted).run(suite)
    for test, reason in result.skipped:
        print(f"windows tool {test.id().removeprefix('__main__.')}: skipped: {reason}")
    failed = len(result.bad())
    skipped = len(result.skipped)
    print(f"{len(result.cases) - failed - skipped} passed, {failed} failed, {skipped} skipped")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
