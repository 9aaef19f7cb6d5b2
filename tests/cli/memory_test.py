"""Memory: what a run needs is told beforehand, and refused in words when it is too much."""

import re
import sys
import unittest

from cli_support import NEEDS_VIPS, ROOT, TOOL, FolderCase, run, samples, write_netpbm

sys.path.insert(0, str(ROOT / "scripts"))

from measure_memory import RUNS, Measurement  # noqa: E402

# Above a megapixel, as the promise is; square enough for every method.
SIZE = (1250, 850)


class Refusal(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 500, 400, samples(50, 40, 3) * 100)

    def refused(self, *arguments):
        code, out, err = run(*arguments, cwd=self.folder)
        self.assertEqual((code, out), (6, ""), err)
        self.assertEqual(self.names(), ["in.ppm"])
        return err

    def test_needs_limit_and_what_would_fit(self):
        err = self.refused("shock", "in.ppm", "out.ppm", "--max-memory", "35M")
        found = re.fullmatch(
            r"orv: in\.ppm: needs (\d+) MB of memory for 500 x 400 pixels, and may take 35 MB; "
            r"take --max-side (\d+) or --max-memory (\d+)M\n",
            err,
        )
        self.assertIsNotNone(found, err)
        self.assertIn(int(found.group(3)) - int(found.group(1)), (0, 1))

    def test_what_would_fit_fits(self):
        enough = re.search(r"(\d+)M\n", self.refused("shock", "in.ppm", "out.ppm", "--max-memory", "35M")).group(1)
        code, _, err = run("shock", "in.ppm", "out.ppm", "--max-memory", f"{enough}M", cwd=self.folder)
        self.assertEqual((code, err), (0, ""))

    @NEEDS_VIPS
    def test_side_that_would_fit_fits(self):
        side = re.search(r"--max-side (\d+)", self.refused("shock", "in.ppm", "-o", "out.ppm", "--max-memory", "35M"))
        arguments = ["shock", "in.ppm", "out.ppm", "--max-memory", "35M", "--max-side"]
        self.refused(*arguments, int(side[1]) + 1)
        self.assertEqual(run(*arguments, side[1], cwd=self.folder)[0], 0)

    def test_lighter_solver_is_named(self):
        unsplit = ["restore", "in.ppm", "out.ppm", "--scheme", "2DSemi", "--max-memory"]
        self.assertIn("; take --solver CG or ", self.refused(*unsplit, "200M"))
        self.assertIn("; take --scheme AOS or ", self.refused(*unsplit, "48M"))

    def test_every_picture_of_several(self):
        write_netpbm(self.folder / "small.ppm", 8, 8, samples(8, 8, 3))
        code, out, err = run("shock", "in.ppm", "small.ppm", "-o", "done/", "--max-memory", "35M", cwd=self.folder)
        self.assertEqual(code, 1, err)
        self.assertIn("orv: in.ppm: needs ", err)
        self.assertIn("small.ppm: 8 x 8 pixels", out)

    def test_words_that_are_no_size(self):
        for word in ("lots", "0", "5X", "-1G", "1 G"):
            line = f"orv: --max-memory: '{word}' is not a size (expected a size such as 2G, 500M or 75%)\n"
            self.check((2, "", line), "shock", "in.ppm", "out.ppm", "--max-memory", word)

    def test_units_and_shares(self):
        for word in ("2G", "2048M", "2000000K", "1GiB", "100%", "0.5T"):
            code, _, err = run("blur", "in.ppm", "out.ppm", "-f", "--max-memory", word, cwd=self.folder)
            self.assertEqual((code, err), (0, ""), word)


@NEEDS_VIPS
@unittest.skipIf("asan" in TOOL, "sanitizers need memory of their own")
class Estimate(FolderCase):
    """The estimate lies between 3 percent below and 30 percent above the peak."""


def add_estimates():
    """A test for each method and option that changes what it holds; odd ones in 16 bits."""
    for index, text in enumerate(RUNS):
        channels, depth = ((3, 16), (3, 8), (1, 8))[index % 3]
        channels = 3 if "color-beltrami" in text else channels

        def test(self, text=text, channels=channels, depth=depth):
            measured = Measurement(TOOL, self.folder, text.split(), SIZE, channels, depth)
            self.assertTrue(measured.good, str(measured))

        setattr(Estimate, "test_" + re.sub(r"\W+", "_", text), test)


add_estimates()

if __name__ == "__main__":
    unittest.main()
