"""orv tune: the sheet, its figures and what it refuses."""

import json
import math
import unittest

from cli_support import NEEDS_VIPS, FolderCase, read_netpbm, run, samples, write_netpbm

GAP, LINE, WIDEST_CELL = 10, 22, 256
TOP = 3 * LINE + 2 * GAP


class Sheet(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 90, 70, samples(90, 70, 3))

    def tune(self, *arguments):
        code, out, err = run("tune", *arguments, cwd=self.folder)
        self.assertEqual((code, err), (0, ""))
        return out

    def crop_of(self, sheet, column, row, width, height):
        """The samples of a cell."""
        sheet_width, _, _, _, values = sheet
        left = GAP + column * (WIDEST_CELL + GAP)
        top = TOP + row * (2 * LINE + height + GAP) + 2 * LINE
        found = []
        for y in range(top, top + height):
            at = 3 * (y * sheet_width + left)
            found += values[at : at + 3 * width]
        return found

    def cut(self, name, x, y, width, height):
        """The samples of a part of a picture."""
        whole, _, _, _, values = read_netpbm(self.folder / name)
        return [v for row in range(y, y + height) for v in values[3 * (row * whole + x) : 3 * (row * whole + x + width)]]

    def test_cells_are_what_the_verb_gives(self):
        arguments = ["--threshold", "10,80", "--sigma", "1..2:1", "--passes", "1", "--crop", "30x20+40+30"]
        out = self.tune("susan", "in.ppm", *arguments, "-o", "sheet.ppm")
        self.assertRegex(out, r"^sheet\.ppm: 4 results, 30 x 20 pixels from \(40, 30\), in \d\.\d\d s\n$")
        sheet = read_netpbm(self.folder / "sheet.ppm")
        self.assertEqual(sheet[:2], (GAP + 3 * (WIDEST_CELL + GAP), TOP + 2 * (2 * LINE + 20 + GAP)))
        for row, sigma in enumerate(("1", "2")):
            self.assertEqual(self.crop_of(sheet, 0, row, 30, 20), self.cut("in.ppm", 40, 30, 30, 20))
            for column, threshold in enumerate(("10", "80")):
                values = ["--threshold", threshold, "--sigma", sigma, "--passes", "1"]
                run("susan", "in.ppm", "one.ppm", "-f", *values, cwd=self.folder)
                self.assertEqual(self.crop_of(sheet, column + 1, row, 30, 20), self.cut("one.ppm", 40, 30, 30, 20))

    def test_automation_measures_as_the_verb_does(self):
        self.tune("restore", "in.ppm", "--strength", "20,60", "--crop", "30x20+40+30", "-o", "sheet.ppm")
        sheet = read_netpbm(self.folder / "sheet.ppm")
        for column, strength in enumerate(("20", "60")):
            run("restore", "in.ppm", "one.ppm", "-f", "--strength", strength, cwd=self.folder)
            place = divmod(column + 1, 2)
            self.assertEqual(
                self.crop_of(sheet, place[1], place[0], 30, 20), self.cut("one.ppm", 40, 30, 30, 20), strength
            )

    def test_figures(self):
        out = self.tune("blur", "in.ppm", "--sigma", "0.5..8", "--json", "-q", "-o", "sheet.ppm")
        told = json.loads(out)
        self.assertEqual((told["verb"], told["output"], told["fixed"]), ("blur", "sheet.ppm", {}))
        self.assertEqual([cell["values"]["sigma"] for cell in told["cells"]], ["0.5", "1.26", "3.17", "8"])
        noise = [told["noise"]] + [cell["noise"] for cell in told["cells"]]
        self.assertEqual(noise, sorted(noise, reverse=True))
        psnr = [cell["psnr"] for cell in told["cells"]]
        self.assertEqual(psnr, sorted(psnr, reverse=True))
        # The command of a cell gives its figure.
        command = told["cells"][1]["command"].split()
        self.assertEqual(command[:3], ["orv", "blur", "in.ppm"])
        run(*command[1:], "-o", "one.ppm", cwd=self.folder)
        before, after = (read_netpbm(self.folder / name)[4] for name in ("in.ppm", "one.ppm"))
        mean = sum((a - b) ** 2 for a, b in zip(before, after)) / len(before)
        self.assertAlmostEqual(10 * math.log10(255 * 255 / mean), psnr[1], delta=0.05)

    def test_nothing_done_is_unchanged(self):
        told = json.loads(self.tune("shock", "in.ppm", "--iterations", "0,3", "--json", "-o", "sheet.ppm"))
        first, second = told["cells"]
        self.assertEqual((first["psnr"], first["unchanged"], second["unchanged"]), (None, True, False))

    def test_large_pictures_are_worked_on_in_part(self):
        write_netpbm(self.folder / "big.pgm", 2500, 1700, [9] * 4250000, channels=1)
        told = json.loads(
            self.tune("blur", "big.pgm", "--sigma", "1,2", "--json", "--at", "100,800", "-o", "sheet.ppm")
        )
        self.assertEqual(told["crop"], {"x": 0, "y": 672, "width": 256, "height": 256})
        self.assertEqual(told["worked"], {"x": 0, "y": 416, "width": 512, "height": 768})

    def test_second_picture(self):
        dark = [value // 4 for value in samples(40, 40, 3, seed=4)]
        write_netpbm(self.folder / "style.ppm", 40, 40, dark)
        told = json.loads(
            self.tune("recolor", "in.ppm", "style.ppm", "--strength", "0,1", "--json", "-o", "sheet.ppm")
        )
        self.assertEqual(told["cells"][1]["command"], "orv recolor in.ppm style.ppm --strength 1")
        self.assertLess(told["cells"][1]["psnr"], 20)

    @NEEDS_VIPS
    def test_sheet_lies_beside_the_picture(self):
        self.tune("blur", "in.ppm", "--sigma", "1,2", "-q")
        self.assertEqual(self.names(), ["in.ppm", "in.tune.png"])
        line = "orv: in.tune.png: exists already; --force overwrites it\n"
        self.check((4, "", line), "tune", "blur", "in.ppm", "--sigma", "1,2")

    def test_values_that_a_method_refuses_are_told(self):
        code, out, err = run("tune", "retinex", "in.ppm", "--levels", "2,20", "-o", "sheet.ppm", cwd=self.folder)
        self.assertEqual(code, 0)
        self.assertRegex(err, r"^orv: warning: levels 20: --levels: 20 is too many for 90 x 70 pixels")
        code, out, err = run("tune", "retinex", "in.ppm", "--levels", "19,20", "-o", "no.ppm", cwd=self.folder)
        self.assertEqual((code, out), (5, ""))
        self.assertRegex(err, r"^orv: retinex: --levels: 19 is too many")
        self.assertEqual(self.names(), ["in.ppm", "sheet.ppm"])


class Refusal(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 90, 70, samples(90, 70, 3))

    def refused(self, line, *arguments, code=2):
        self.check((code, "", f"orv: {line}\n"), "tune", *arguments, "-o", "sheet.ppm")
        self.assertEqual(self.names(), ["in.ppm"])

    def test_method(self):
        self.refused("tune: 'blurr' is no method, did you mean 'blur'? (orv methods lists all)", "blurr", "in.ppm")
        self.refused("tune: 'inspect' is no method (orv methods lists all)", "inspect", "in.ppm")
        line = "tune: the method to tune is missing (usage: orv tune VERB IN --PARAMETER VALUES [options])"
        self.check((2, "", f"orv: {line}\n"), "tune")

    def test_picture(self):
        line = "tune blur: the picture to read is missing (usage: orv tune blur IN [options])"
        self.refused(line, "blur", "--sigma", "1,2")
        self.refused("no.ppm: no such file", "blur", "no.ppm", "--sigma", "1,2", code=3)

    def test_values_as_the_verb_refuses_them(self):
        for text in ("2000", "much"):
            alone = run("blur", "in.ppm", "out.ppm", "--sigma", text, cwd=self.folder)
            self.assertEqual(alone[0], 2)
            self.check(alone, "tune", "blur", "in.ppm", "--sigma", f"1,{text}", "-o", "sheet.ppm")
            self.check(alone, "tune", "blur", "in.ppm", "--sigma", f"1..{text}", "-o", "sheet.ppm")

    def test_options_of_another_method(self):
        code, _, err = run("tune", "blur", "in.ppm", "--threshold", "1,2", cwd=self.folder)
        self.assertEqual(code, 2)
        self.assertIn("--threshold: is an option of susan, not of tune blur", err)

    def test_how_many_values(self):
        line = "tune: give one or two parameters several values, as --tau 1..8 or --contrast 5,10,20"
        self.refused(line, "blur", "in.ppm", "--sigma", "3")
        line = "tune: varies two parameters at a time, not 3; give --passes one value"
        self.refused(line, "susan", "in.ppm", "--threshold", "5,10", "--sigma", "1,2", "--passes", "1,2")
        line = "tune: 70 results are more than the 64 of a sheet; give fewer values"
        self.refused(line, "susan", "in.ppm", "--threshold", "1..10:1", "--sigma", "1..7:1")

    def test_places(self):
        line = "--crop: (90, 0) lies outside the picture, which has 90 x 70 pixels"
        self.refused(line, "blur", "in.ppm", "--sigma", "1,2", "--crop", "5x5+90+0")
        line = "--at: 'here' is no place (expected X,Y in pixels)"
        self.refused(line, "blur", "in.ppm", "--sigma", "1,2", "--at", "here")
        line = "--crop: the sheet would have more than 100 megapixels; take a smaller part or fewer values"
        self.refused(line, "blur", "in.ppm", "--sigma", "1,2", "--crop", "90000x9000")

    def test_memory(self):
        code, out, err = run("tune", "blur", "in.ppm", "--sigma", "1,2", "--max-memory", "1M", cwd=self.folder)
        self.assertEqual((code, out), (6, ""))
        self.assertRegex(err, r"^orv: in\.ppm: needs \d+ MB of memory, and may take 1 MB; take --max-memory \d+M\n$")

    def test_ending_of_the_sheet(self):
        code, _, err = run("tune", "blur", "in.ppm", "--sigma", "1,2", "-o", "sheet.txt", cwd=self.folder)
        self.assertEqual(code, 4)
        self.assertIn("orv: sheet.txt: the ending names no format that orv writes (", err)


if __name__ == "__main__":
    unittest.main()
