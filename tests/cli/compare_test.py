"""orv compare: the table, the figures as JSON, the sheet, the page, wrong command lines and files."""

import base64
import html.parser
import json
import os
import re
import struct
import subprocess
import unittest

from cli_support import (
    HAVE_VIPS,
    NEEDS_VIPS,
    ROOT,
    TOOL,
    FolderCase,
    read_netpbm,
    read_png,
    run,
    samples,
    write_float_tiff,
    write_netpbm,
    write_png,
)

USAGE = "(usage: orv compare BEFORE AFTER [options])"
FIGURES = {"identical", "psnr", "meanSquare", "meanDifference", "maxDifference", "meanShift", "changed"}
TABLE = """\
before              a.ppm
                    20 x 16 pixels, 8-bit colour
after               b.ppm
                    20 x 16 pixels, 8-bit colour

PSNR                37.34 dB
SSIM                {ssim}
mean difference     2 grey levels of 0 to 255
largest difference  6 grey levels
changed samples     33.3 %

channel         PSNR      mean   largest    changed
red         32.57 dB         6         6      100 %
green       infinite         0         0        0 %
blue        infinite         0         0        0 %
"""


def refuse_constant(text):
    raise ValueError(f"{text} is no JSON")


def strict_json(text):
    return json.loads(text, parse_constant=refuse_constant)


def read_bmp(data):
    """Width, height, channels and samples of a BMP of greys or of 24 bits."""
    (offset,) = struct.unpack_from("<I", data, 10)
    width, height, _, bits = struct.unpack_from("<iiHH", data, 18)
    step = bits // 8
    stride = (width * step + 3) // 4 * 4
    values = []
    for y in range(height - 1, -1, -1):
        row = data[offset + y * stride :][: width * step]
        for x in range(0, len(row), step):
            values += reversed(row[x : x + step])
    return width, height, step, values


class Page(html.parser.HTMLParser):
    """The pictures, inputs, references and data of a page."""

    def __init__(self, text):
        super().__init__()
        self.pictures, self.inputs, self.references, self.labels, self.data, self.inside = {}, {}, [], [], "", False
        self.feed(text)
        self.close()

    def handle_starttag(self, tag, attributes):
        told = dict(attributes)
        if tag == "img":
            self.pictures[told["id"]] = told
        elif tag == "input":
            self.inputs[told.get("id", told.get("value"))] = told
        self.references += [told[name] for name in ("src", "href", "srcset", "action") if name in told]
        self.inside = tag == "script" and told.get("id") == "data"

    def handle_endtag(self, tag):
        self.inside = False

    def handle_data(self, data):
        if self.inside:
            self.data += data

    def decoded(self, name, folder):
        """Width, height, channels and samples of a picture that is held without loss."""
        kind, coded = self.pictures[name]["src"].split(";base64,")
        data = base64.b64decode(coded, validate=True)
        if kind == "data:image/bmp":
            return read_bmp(data)
        assert kind == "data:image/png", kind
        path = folder / "decoded.png"
        path.write_bytes(data)
        width, height, channels, depth, values = read_png(path)
        path.unlink()
        assert depth == 8
        return width, height, channels, values


class CompareCase(FolderCase):
    def setUp(self):
        super().setUp()
        self.before = [min(value, 240) for value in samples(20, 16, 3)]
        # Red is 6 levels brighter, the rest is equal.
        self.after = [value + (6 if place % 3 == 0 else 0) for place, value in enumerate(self.before)]
        write_netpbm(self.folder / "a.ppm", 20, 16, self.before)
        write_netpbm(self.folder / "b.ppm", 20, 16, self.after)

    def compare(self, *arguments):
        """Runs and gives standard output; the run has to go well."""
        code, out, error = run("compare", *arguments, cwd=self.folder)
        self.assertEqual((code, error), (0, ""))
        return out

    def figures(self, *arguments):
        return strict_json(self.compare(*arguments, "--json"))

    def page(self, *arguments):
        self.compare(*arguments, "-o", "out.html", "-f", "-q")
        return (self.folder / "out.html").read_text(encoding="utf-8")


class Refusals(CompareCase):
    def refused(self, code, line, *arguments):
        names = self.names()
        self.check((code, "", f"orv: {line}\n"), "compare", *arguments)
        self.assertEqual(self.names(), names)

    def test_words(self):
        self.refused(2, f"compare: the picture to read is missing {USAGE}")
        self.refused(2, f"compare: the picture to compare with is missing {USAGE}", "a.ppm")
        self.refused(2, f"compare: 'c.ppm' is one word too many; -o names the file to write {USAGE}", "a.ppm", "b.ppm", "c.ppm")

    def test_output_without_a_name(self):
        line = "--output: the value is missing (expected a file that ends in .html, .json or as a picture does)"
        self.refused(2, line, "a.ppm", "b.ppm", "-o")

    def test_sizes(self):
        write_netpbm(self.folder / "c.pgm", 16, 20, samples(16, 20, 1), channels=1)
        line = "a.ppm has 20 x 16 pixels and c.pgm has 16 x 20 pixels; pictures of one size can be compared"
        self.refused(3, line, "a.ppm", "c.pgm", "-o", "out.html")

    def test_pictures_that_cannot_be_read(self):
        (self.folder / "empty.ppm").touch()
        self.refused(3, "none.ppm: no such file", "none.ppm", "b.ppm")
        self.refused(3, "none.ppm: no such file", "a.ppm", "none.ppm", "--json")
        self.refused(3, "empty.ppm: is empty", "a.ppm", "empty.ppm", "-o", "out.html")

    def test_endings(self):
        for name in ("out", "out.txt", "out.html.", ".html"):
            with self.subTest(name=name):
                code, out, error = run("compare", "a.ppm", "b.ppm", "-o", name, cwd=self.folder)
                self.assertEqual((code, out), (4, ""))
                told = re.escape(f"orv: {name}: the ending names no comparison that orv writes (.html .json ")
                self.assertRegex(error, rf"^{told}[. a-z]*\.ppm \.pgm \.pnm\)\n$")
        self.refused(4, "out.pgm: PGM holds grey alone and this picture has colour; take .ppm", "a.ppm", "b.ppm", "-o", "out.pgm")

    def test_places_that_cannot_be_written(self):
        line = "a.ppm/out.html: can't be written: Not a directory"
        self.refused(4, line, "a.ppm", "b.ppm", "-o", "a.ppm/out.html")
        (self.folder / "folder.html").mkdir()
        self.refused(4, "folder.html: is a folder; name a file in it", "a.ppm", "b.ppm", "-o", "folder.html")

    def test_existing_file(self):
        for name in ("out.html", "out.json", "out.ppm"):
            (self.folder / name).write_text("mine")
            self.refused(4, f"{name}: exists already; --force overwrites it", "a.ppm", "b.ppm", "-o", name)
            self.assertEqual((self.folder / name).read_text(), "mine")
            self.compare("a.ppm", "b.ppm", "-o", name, "--force")
            self.assertNotEqual((self.folder / name).read_bytes(), b"mine")


class Table(CompareCase):
    def test_colour(self):
        ssim = self.figures("a.ppm", "b.ppm")["ssim"]
        self.assertEqual(self.compare("a.ppm", "b.ppm"), TABLE.format(ssim=f"{ssim:.4f}"))

    def test_identical(self):
        write_netpbm(self.folder / "c.ppm", 20, 16, self.before)
        out = self.compare("a.ppm", "c.ppm")
        self.assertIn("\nPSNR                infinite: identical\nSSIM                1\n", out)
        self.assertTrue(out.endswith("\nlargest difference  0 grey levels\nchanged samples     0 %\n"))

    def test_grey_has_no_rows_of_channels(self):
        write_netpbm(self.folder / "a.pgm", 3, 1, [0, 128, 255], channels=1)
        write_netpbm(self.folder / "b.pgm", 3, 1, [0, 129, 255], channels=1)
        out = self.compare("a.pgm", "b.pgm")
        self.assertIn("3 x 1 pixels, 8-bit grey\n", out)
        self.assertIn("\nPSNR                52.90 dB\nSSIM                none below 11 x 11 pixels\n", out)
        self.assertTrue(out.endswith("\nmean difference     0.33 grey levels of 0 to 255\nlargest difference  1 grey levels\nchanged samples     33.3 %\n"))

    def test_grey_against_colour(self):
        write_netpbm(self.folder / "c.pgm", 20, 16, samples(20, 16, 1), channels=1)
        out = self.compare("a.ppm", "c.pgm")
        self.assertTrue(out.endswith("\n\nThe grey picture counts as three equal channels.\n"))

    @NEEDS_VIPS
    def test_alpha(self):
        values = samples(12, 10, 3)
        with_alpha = lambda level: [x for i in range(0, len(values), 3) for x in (*values[i : i + 3], level)]
        write_png(self.folder / "plain.png", 12, 10, values, 3)
        write_png(self.folder / "opaque.png", 12, 10, with_alpha(255), 4)
        write_png(self.folder / "clear.png", 12, 10, with_alpha(7), 4)
        for before, after, word, note in [
            ("plain.png", "plain.png", "none", "changed samples     0 %"),
            ("clear.png", "clear.png", "equal", "Alpha is equal in both and does not count."),
            ("opaque.png", "clear.png", "differs", "Alpha differs and does not count."),
            ("clear.png", "plain.png", "only before", "Only the picture before has alpha, which does not count."),
            ("plain.png", "clear.png", "only after", "Only the picture after has alpha, which does not count."),
        ]:
            with self.subTest(before=before, after=after):
                self.assertEqual(self.compare(before, after).splitlines()[-1], note)
                figures = self.figures(before, after)
                self.assertEqual((figures["alpha"], figures["identical"]), (word, True))

    def test_names_of_one_kind_keep_their_folders(self):
        (self.folder / "other").mkdir()
        write_netpbm(self.folder / "other" / "a.ppm", 20, 16, self.after)
        lines = self.compare("a.ppm", "other/a.ppm").splitlines()
        self.assertEqual([lines[0], lines[2]], ["before              a.ppm", "after               other/a.ppm"])

    def test_quiet(self):
        self.assertEqual(self.compare("a.ppm", "b.ppm", "-q", "-o", "out.json"), "")
        self.assertIn("PSNR", self.compare("a.ppm", "b.ppm", "-q"))

    def test_missing_folders_are_made(self):
        self.compare("a.ppm", "b.ppm", "-o", "new/deep/out.json")
        self.assertTrue((self.folder / "new" / "deep" / "out.json").is_file())

    def test_written_file_is_named(self):
        out = self.compare("a.ppm", "b.ppm", "-o", "out.json")
        self.assertRegex(out, r"\n\nout\.json: \d+ KB\n$")
        self.assertEqual(self.names(), ["a.ppm", "b.ppm", "out.json"])

    def test_lines_fit_sixty_columns(self):
        self.assertLessEqual(max(map(len, self.compare("a.ppm", "b.ppm").splitlines())), 60)


class Figures(CompareCase):
    def test_photos_against_scikit_image(self):
        # peak_signal_noise_ratio and structural_similarity of scikit-image 0.19.3, the latter on
        # 0.299 R + 0.587 G + 0.114 B with gaussian_weights=True, sigma=1.5,
        # use_sample_covariance=False, data_range=255.
        data = ROOT / "tests" / "data"
        figures = self.figures(data / "chelsea.ppm", data / "coffee.ppm")
        self.assertAlmostEqual(figures["psnr"], 8.448712867289895, places=10)
        self.assertAlmostEqual(figures["ssim"], 0.16565528792927314, places=10)
        self.assertAlmostEqual(figures["meanDifference"], 77.27783978174604, places=10)
        self.assertAlmostEqual(figures["meanShift"], 35.732142857142854, places=10)
        self.assertAlmostEqual(figures["changed"], 0.9963107638888888, places=12)
        self.assertEqual(figures["maxDifference"], 249)

    @NEEDS_VIPS
    def test_the_document_shows_what_is_printed(self):
        text = (ROOT / "docs" / "compare.md").read_text(encoding="utf-8")
        command, out = re.search(r"^\$ orv (compare .*)\n([^`]*)```$", text, re.MULTILINE).groups()
        self.assertEqual(run(*command.split(), cwd=ROOT), (0, out, ""))

    @NEEDS_VIPS
    def test_noise_on_a_photo_against_scikit_image(self):
        photos = ROOT / "examples" / "photos"
        figures = self.figures(photos / "chelsea-noisy.png", photos / "chelsea.png")
        self.assertAlmostEqual(figures["psnr"], 22.146274683144203, places=10)
        self.assertAlmostEqual(figures["ssim"], 0.5252681197139175, places=10)

    def test_names(self):
        figures = self.figures("a.ppm", "b.ppm")
        self.assertEqual(
            set(figures), FIGURES | {"program", "command", "before", "after", "alpha", "ssim", "channels"}
        )
        self.assertRegex(figures["program"], r"^orv \d+\.\d+\.\d+$")
        self.assertEqual(figures["command"], "orv compare a.ppm b.ppm --json")
        picture = {"name": "a.ppm", "width": 20, "height": 16, "bits": 8, "colours": 3, "alpha": False}
        self.assertEqual(figures["before"], picture)
        self.assertEqual(figures["after"], picture | {"name": "b.ppm"})
        self.assertEqual([channel["name"] for channel in figures["channels"]], ["red", "green", "blue"])
        for channel in figures["channels"]:
            self.assertEqual(set(channel), FIGURES | {"name", "differences", "before", "after"})

    def test_values(self):
        figures = self.figures("a.ppm", "b.ppm")
        red, green, _ = figures["channels"]
        self.assertEqual((figures["meanSquare"], figures["meanDifference"], figures["maxDifference"]), (12, 2, 6))
        self.assertEqual((figures["meanShift"], figures["identical"]), (2, False))
        self.assertAlmostEqual(figures["changed"], 1 / 3)
        self.assertEqual((green["psnr"], green["identical"], green["changed"]), (None, True, 0))
        self.assertEqual([red["differences"][255 + d] for d in (-6, 0, 5, 6, 7)], [0, 0, 0, 320, 0])
        for channel, place in (("red", 0), ("green", 1), ("blue", 2)):
            values = self.before[place::3]
            counts = figures["channels"][place]["before"]
            self.assertEqual(counts, [values.count(level) for level in range(256)], channel)
        self.assertEqual(red["after"][6:], red["before"][:-6])

    def test_file_and_standard_output_agree(self):
        out = self.compare("a.ppm", "b.ppm", "--json", "-o", "out.json")
        self.assertEqual((self.folder / "out.json").read_text(), out)

    def test_order_turns_the_shift_alone(self):
        there, back = self.figures("a.ppm", "b.ppm"), self.figures("b.ppm", "a.ppm")
        self.assertEqual(back["meanShift"], -there["meanShift"])
        for name in ("psnr", "ssim", "meanDifference", "maxDifference", "changed"):
            self.assertAlmostEqual(back[name], there[name], places=13)

    def test_depths_share_one_scale(self):
        write_netpbm(self.folder / "deep.ppm", 20, 16, [257 * value for value in self.before], depth=16)
        self.assertTrue(self.figures("a.ppm", "deep.ppm")["identical"])
        values = [257 * value for value in self.before]
        values[10] += 3
        write_netpbm(self.folder / "deep.ppm", 20, 16, values, depth=16)
        figures = self.figures("a.ppm", "deep.ppm")
        self.assertEqual(figures["after"]["bits"], 16)
        self.assertAlmostEqual(figures["maxDifference"], 3 / 257, places=12)
        self.assertAlmostEqual(figures["changed"], 1 / 960, places=12)

    @NEEDS_VIPS
    def test_float_samples(self):
        write_float_tiff(self.folder / "f.tif", 2, 1, [0.0, 1.0, 0.0, 1.0, 0.0, 0.5])
        write_netpbm(self.folder / "c.ppm", 2, 1, [0, 255, 0, 255, 0, 128])
        figures = self.figures("f.tif", "c.ppm")
        self.assertEqual((figures["before"]["bits"], figures["maxDifference"]), (32, 0.5))

    def test_names_that_are_no_text(self):
        name = b"a\xff\xed\xa0\x80b.ppm"
        os.rename(self.folder / "a.ppm", os.path.join(os.fsencode(self.folder), name))
        done = subprocess.run([TOOL, b"compare", name, b"b.ppm", b"--json"], cwd=self.folder, capture_output=True)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(strict_json(done.stdout.decode("utf-8", "strict"))["before"]["name"], "a????b.ppm")


class Sheet(CompareCase):
    def pixel(self, sheet, x, y):
        width, _, _, _, values = sheet
        at = 3 * (y * width + x)
        return values[at : at + 3]

    def test_panels(self):
        self.compare("a.ppm", "b.ppm", "-o", "out.ppm")
        sheet = read_netpbm(self.folder / "out.ppm")

        self.assertEqual(sheet[:4], (768, 140, 3, 8))
        for y in range(16):
            for x in range(20):
                before = self.before[3 * (20 * y + x) :][:3]
                self.assertEqual(self.pixel(sheet, 12 + x, 56 + y), before)
                self.assertEqual(self.pixel(sheet, 264 + x, 56 + y), [before[0] + 6, *before[1:]])
                # 32 times 6 levels of red, and nothing else.
                self.assertEqual(self.pixel(sheet, 516 + x, 56 + y), [192, 0, 0])
        self.assertEqual(self.pixel(sheet, 500, 60), [236, 236, 236])

    def test_labels_stand_above_each_panel_and_below_all(self):
        self.compare("a.ppm", "b.ppm", "-o", "out.ppm")
        sheet = read_netpbm(self.folder / "out.ppm")
        for left in (12, 264, 516):
            for top, colour in ((12, [24, 24, 24]), (34, [84, 84, 84])):
                box = [self.pixel(sheet, x, y) for y in range(top, top + 20) for x in range(left, left + 240)]
                self.assertGreater(box.count(colour), 100)
        below = [self.pixel(sheet, x, y) for y in range(84, 104) for x in range(12, 700)]
        self.assertGreater(below.count([24, 24, 24]), 400)

    def test_long_names_stay_in_their_panel(self):
        name = "x" * 200 + ".ppm"
        (self.folder / "a.ppm").rename(self.folder / name)
        self.compare(name, "b.ppm", "-o", "out.ppm", "-q")
        sheet = read_netpbm(self.folder / "out.ppm")
        gap = [self.pixel(sheet, x, y) for y in range(12, 32) for x in range(252, 264)]
        self.assertEqual(gap, [[236, 236, 236]] * len(gap))

    def test_large_pictures_are_reduced_and_show_a_detail(self):
        width, height = 1700, 40
        before = [100] * (width * height)
        after = list(before)
        for y in range(20, 30):
            for x in range(1500, 1510):
                after[y * width + x] = 180
        write_netpbm(self.folder / "a.pgm", width, height, before, channels=1)
        write_netpbm(self.folder / "b.pgm", width, height, after, channels=1)
        self.compare("a.pgm", "b.pgm", "-o", "out.ppm", "-q")
        sheet = read_netpbm(self.folder / "out.ppm")

        # Half size: three panels of 850 pixels; then details of 850 x 40 at full size.
        self.assertEqual(sheet[0], 3 * 850 + 4 * 12)
        self.assertEqual(sheet[1], 12 + (44 + 20 + 12) + (44 + 40 + 12) + 22 + 12)
        second = 12 + 850 + 12
        self.assertEqual(self.pixel(sheet, second + 751, 56 + 12), [180] * 3)
        row = [self.pixel(sheet, second + x, 132 + 25) for x in range(850)]
        self.assertEqual(row.count([180] * 3), 10)
        self.assertEqual(row.count([100] * 3), 840)

    @NEEDS_VIPS
    def test_every_format_of_pictures(self):
        for ending, head in [("png", b"\x89PNG"), ("jpg", b"\xff\xd8\xff"), ("tif", b"II*\0"), ("webp", b"RIFF"), ("bmp", b"BM")]:
            name = f"out.{ending}"
            self.compare("a.ppm", "b.ppm", "-o", name, "-q")
            self.assertEqual((self.folder / name).read_bytes()[: len(head)], head)
        self.compare("a.ppm", "b.ppm", "-o", "out.ppm", "-q")
        self.assertEqual(read_png(self.folder / "out.png"), read_netpbm(self.folder / "out.ppm"))

    def test_two_runs_agree(self):
        for name in ("one.ppm", "two.ppm"):
            self.compare("a.ppm", "b.ppm", "-o", name, "-q")
        self.assertEqual((self.folder / "one.ppm").read_bytes(), (self.folder / "two.ppm").read_bytes())


class Pages(CompareCase):
    def test_page_is_complete_in_itself(self):
        text = self.page("a.ppm", "b.ppm")
        page = Page(text)

        self.assertTrue(text.startswith("<!DOCTYPE html>"))
        self.assertFalse("@ORV" in text)
        self.assertEqual(len(page.references), 3)
        for reference in page.references:
            self.assertRegex(reference, r"^data:image/(png|bmp);base64,[A-Za-z0-9+/]+=*$")
        rest = text.replace("http://www.w3.org/2000/svg", "")
        self.assertIsNone(re.search(r"(?i)https?:|\burl\(|@import|\bfetch\(|XMLHttp|<link|<iframe", rest))

    def test_pictures(self):
        page = Page(self.page("a.ppm", "b.ppm"))
        self.assertEqual(page.decoded("before", self.folder), (20, 16, 3, self.before))
        self.assertEqual(page.decoded("after", self.folder), (20, 16, 3, self.after))
        self.assertEqual(page.decoded("difference", self.folder), (20, 16, 3, [6, 0, 0] * 320))
        for picture in page.pictures.values():
            self.assertNotEqual(picture["alt"], "")

    def test_slider_is_a_labelled_range(self):
        page = Page(self.page("a.ppm", "b.ppm"))
        slider = page.inputs["split"]
        self.assertEqual((slider["type"], slider["min"], slider["max"], slider["value"]), ("range", "0", "100", "50"))
        self.assertNotEqual(slider["aria-label"], "")

    def test_data(self):
        data = strict_json(Page(self.page("a.ppm", "b.ppm")).data)
        self.assertEqual(data["command"], "orv compare a.ppm b.ppm -o out.html -f -q")
        self.assertEqual((data["gain"], data["reduction"], data["lossless"]), (32, 1, True))
        figures = self.figures("a.ppm", "b.ppm")
        for name in set(figures) - {"command"}:
            self.assertEqual(data[name], figures[name], name)

    def test_wicked_names(self):
        name = "</script><b>&'\"$(x)@ORV_COMPARISON_AFTER@.ppm".replace("/", "\u2215")
        (self.folder / "a.ppm").rename(self.folder / name)
        text = self.page(name, "b.ppm")
        data = Page(text).data
        self.assertNotIn("<", data)
        self.assertEqual(strict_json(data)["before"]["name"], name)
        self.assertEqual(text.count("</script"), 2)
        self.assertEqual(len(Page(text).pictures), 3)

    def test_grey_pictures_stay_grey(self):
        write_netpbm(self.folder / "a.pgm", 3, 2, [0, 1, 2, 3, 4, 5], channels=1)
        write_netpbm(self.folder / "b.pgm", 3, 2, [5, 4, 3, 2, 1, 0], channels=1)
        page = Page(self.page("a.pgm", "b.pgm"))
        self.assertEqual(page.decoded("after", self.folder), (3, 2, 1, [5, 4, 3, 2, 1, 0]))
        self.assertEqual(page.decoded("difference", self.folder), (3, 2, 1, [5, 3, 1, 1, 3, 5]))

    def test_deep_pictures_are_shown_with_eight_bits(self):
        values = [257 * value + 128 for value in self.before]
        write_netpbm(self.folder / "deep.ppm", 20, 16, values, depth=16)
        page = Page(self.page("deep.ppm", "b.ppm"))
        self.assertEqual(page.decoded("before", self.folder), (20, 16, 3, self.before))

    def test_large_pictures(self):
        width, height = 2001, 1000
        for name, level in (("a.pgm", 7), ("b.pgm", 9)):
            head = f"P5\n{width} {height}\n255\n".encode()
            (self.folder / name).write_bytes(head + bytes([level]) * (width * height))
        page = Page(self.page("a.pgm", "b.pgm"))
        data = strict_json(page.data)
        difference = page.pictures["difference"]["src"]
        if HAVE_VIPS:
            self.assertEqual((data["lossless"], data["reduction"]), (False, 1))
            self.assertEqual(page.pictures["before"]["src"][:23], "data:image/jpeg;base64,")
            self.assertEqual(difference[:22], "data:image/png;base64,")
            head = base64.b64decode(difference[22:])[:29]
            self.assertEqual(struct.unpack_from(">IIBB", head, 16), (2001, 1000, 8, 0))
        else:
            self.assertEqual((data["lossless"], data["reduction"]), (True, 2))
            width, height, channels, values = page.decoded("difference", self.folder)
            self.assertEqual((width, height, channels, set(values)), (1001, 500, 1, {2}))

    def test_two_runs_agree(self):
        self.assertTrue(self.page("a.ppm", "b.ppm") == self.page("a.ppm", "b.ppm"))


if __name__ == "__main__":
    unittest.main()
