"""Recipes and presets: what they hold, that replaying gives the same pixels, what is refused."""

import json
import unittest

from cli_support import ROOT, FolderCase, read_netpbm, run, samples, write_netpbm

PRESETS = ["document", "night", "old-print", "portrait", "scan"]


class RecipeCase(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 40, 30, samples(40, 30, 3))
        write_netpbm(self.folder / "other.ppm", 40, 30, samples(40, 30, 3, seed=2))

    def orv(self, *words):
        """Runs the tool in the folder, which has to succeed, and gives its messages."""
        code, out, err = run(*words, cwd=self.folder)
        self.assertEqual((code, err), (0, ""))
        return out

    def write(self, name, recipe):
        text = recipe if isinstance(recipe, str) else json.dumps(recipe)
        (self.folder / name).write_text(text)

    def pixels(self, name):
        return read_netpbm(self.folder / name)


class Replay(RecipeCase):
    def test_a_recipe_gives_the_same_bytes_again(self):
        self.orv("restore", "in.ppm", ",", "shock", "--iterations", "2", "-o", "a.ppm", "--recipe", "a.json", "-q")

        told = self.orv("run", "a.json", "in.ppm", "-o", "b.ppm", "--recipe", "b.json")

        self.assertIn("in.ppm: verified: pixel by pixel the result that the recipe names\n", told)
        self.assertEqual((self.folder / "a.ppm").read_bytes(), (self.folder / "b.ppm").read_bytes())
        first, second = (json.loads((self.folder / name).read_text()) for name in ("a.json", "b.json"))
        self.assertEqual(second["output"].pop("file"), "b.ppm")
        self.assertEqual(first["output"].pop("file"), "a.ppm")
        self.assertEqual(first, second)

    def test_a_recipe_holds_every_parameter(self):
        self.orv("shock", "in.ppm", "-o", "a.ppm", "--recipe", "a.json", "-q")

        recipe = json.loads((self.folder / "a.json").read_text())

        listing = json.loads(run("methods", "--json")[1])
        shock = next(method for method in listing if method["name"] == "shock")
        self.assertEqual(recipe["steps"][0]["verb"], "shock")
        self.assertEqual(
            recipe["steps"][0]["parameters"],
            {parameter["name"]: parameter["default"] for parameter in shock["parameters"]},
        )
        self.assertEqual(recipe["input"]["width"], 40)
        self.assertRegex(recipe["output"]["pixels"], "^xxh3-128:[0-9a-f]{32}$")

    def test_another_picture_is_told_from_a_failure(self):
        self.orv("shock", "in.ppm", "-o", "a.ppm", "--recipe", "a.json", "-q")

        told = self.orv("run", "a.json", "other.ppm", "-o", "b.ppm")

        self.assertIn("other.ppm: the recipe was written for another picture", told)

    def test_other_pixels_from_the_same_picture_are_a_failure(self):
        self.orv("shock", "in.ppm", "-o", "a.ppm", "--recipe", "a.json", "-q")
        recipe = json.loads((self.folder / "a.json").read_text())
        recipe["steps"][0]["parameters"]["iterations"] = 7
        self.write("a.json", recipe)

        code, _, err = run("run", "a.json", "in.ppm", "-o", "b.ppm", "-q", cwd=self.folder)

        self.assertEqual(code, 5)
        self.assertIn("in.ppm: not the result that the recipe names: other pixels from the same input", err)

    def test_a_handwritten_recipe_does_what_the_chain_does(self):
        self.write(
            "mine.json",
            {"steps": [{"verb": "wavelet"}, {"verb": "shock", "parameters": {"iterations": "2", "method": "sign"}}]},
        )
        self.orv("run", "mine.json", "in.ppm", "-o", "a.ppm", "-q")
        self.orv("wavelet", "in.ppm", ",", "shock", "--iterations", "2", "--method", "sign", "-o", "b.ppm", "-q")
        self.orv("wavelet", "in.ppm", "-o", "c.ppm", "-q")

        self.assertEqual(self.pixels("a.ppm"), self.pixels("b.ppm"))
        self.assertNotEqual(self.pixels("a.ppm"), self.pixels("c.ppm"))


class Refusals(RecipeCase):
    def refused(self, expected, recipe):
        self.write("r.json", recipe)
        self.check((3, "", f"orv: r.json: {expected}\n"), "run", "r.json", "in.ppm", "-o", "a.ppm")
        self.assertEqual(self.names(), ["in.ppm", "other.ppm", "r.json"])

    def test_a_misspelt_name_is_refused_with_its_place(self):
        self.refused(
            "steps[1].parameters.iteration: is no parameter of shock, did you mean 'iterations'? "
            "(orv shock --help lists them)",
            {"steps": [{"verb": "wavelet"}, {"verb": "shock", "parameters": {"iteration": 2}}]},
        )

    def test_a_slip_is_refused_with_its_line(self):
        self.refused(
            "line 3, column 3: nothing follows the comma before this bracket",
            '{"steps": [\n  {"verb": "wavelet"},\n  ]}',
        )

    def test_a_newer_version_is_refused(self):
        self.refused(
            "version: this recipe has version 2 and this orv reads up to 1; take the orv that wrote it or a newer one",
            {"version": 2, "steps": [{"verb": "wavelet"}]},
        )

    def test_what_is_no_recipe_is_refused(self):
        self.refused("is empty (expected {\"steps\": [{\"verb\": \"restore\"}]})", "")
        self.refused("[0]" * 16 + ": nests deeper than 16 levels", "[" * 100000)
        self.check(
            (3, "", "orv: none.json: No such file or directory\n"), "run", "none.json", "in.ppm", "-o", "a.ppm"
        )


class Presets(RecipeCase):
    def test_every_preset_runs_and_is_written_down(self):
        for name in PRESETS:
            with self.subTest(preset=name):
                self.orv("run", "--preset", name, "in.ppm", "-o", f"{name}.ppm", "--recipe", f"{name}.json", "-q")
                self.assertNotEqual(self.pixels(f"{name}.ppm"), self.pixels("in.ppm"))
                source = ROOT / "tools" / "orv" / "recipe" / "presets" / f"{name}.json"
                verbs = [step["verb"] for step in json.loads(source.read_text())["steps"]]
                written = json.loads((self.folder / f"{name}.json").read_text())
                self.assertEqual([step["verb"] for step in written["steps"]], verbs)

                told = self.orv("run", f"{name}.json", "in.ppm", "-o", f"{name}-again.ppm")

                self.assertIn("verified", told)

    def test_a_misspelt_preset_is_refused(self):
        code, _, err = run("run", "--preset", "nihgt", "in.ppm", "-o", "a.ppm", cwd=self.folder)

        self.assertEqual(code, 2)
        self.assertIn("did you mean 'night'?", err)


if __name__ == "__main__":
    unittest.main()
