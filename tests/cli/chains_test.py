"""Several methods in one go, automatic strength, recipes and comparisons beside the picture."""

import json
import os
import re
import shutil
import signal
import subprocess
import time
import unittest

from cli_support import NEEDS_VIPS, ROOT, TOOL, FolderCase, read_netpbm, run, samples, write_netpbm

PHOTO = ROOT / "examples/photos/chelsea-noisy.png"


class Case(FolderCase):
    def setUp(self):
        super().setUp()
        self.noisy = [100 + (v & 31) for v in samples(40, 32, 3)]
        write_netpbm(self.folder / "in.ppm", 40, 32, self.noisy)

    def orv(self, *arguments):
        return run(*arguments, cwd=self.folder)

    def done(self, *arguments):
        code, out, error = self.orv(*arguments)
        self.assertEqual((code, error), (0, ""))
        return out

    def refused(self, code, line, *arguments):
        before = self.names()
        self.check((code, "", f"orv: {line}\n"), *arguments)
        self.assertEqual(self.names(), before)

    def bytes(self, name):
        return (self.folder / name).read_bytes()


class Chains(Case):
    def test_a_chain_is_its_steps_on_unrounded_samples(self):
        self.done("blur", "in.ppm", "--sigma", "1", ",", "shock", "--iterations", "2", "-o", "chain.ppm")
        self.done("blur", "in.ppm", "one.ppm", "--sigma", "1")
        self.done("shock", "one.ppm", "two.ppm", "--iterations", "2")
        chain, steps = read_netpbm(self.folder / "chain.ppm")[4], read_netpbm(self.folder / "two.ppm")[4]
        self.assertLessEqual(max(abs(a - b) for a, b in zip(chain, steps)), 8)
        self.assertNotEqual(chain, read_netpbm(self.folder / "one.ppm")[4])

    def test_options_may_stand_in_any_part(self):
        self.done("blur", "in.ppm", "-o", "a.ppm", ",", "shock")
        self.done("blur", "in.ppm", ",", "shock", "-o", "b.ppm", "-q")
        self.assertEqual(self.bytes("a.ppm"), self.bytes("b.ppm"))
        self.refused(2, "--output: is given 2 times; give it once", "blur", "in.ppm", "-o", "c.ppm", ",", "shock", "-o", "d.ppm")

    def test_a_second_picture_follows_its_verb(self):
        write_netpbm(self.folder / "style.ppm", 9, 9, samples(9, 9, 3, seed=5))
        self.done("blur", "in.ppm", ",", "recolor", "style.ppm", "-o", "a.ppm")
        self.done("blur", "in.ppm", ",", "recolor", "--with", "style.ppm", "-o", "b.ppm")
        self.assertEqual(self.bytes("a.ppm"), self.bytes("b.ppm"))
        code, _, error = self.orv("blur", "in.ppm", ",", "recolor", "-o", "c.ppm")
        self.assertEqual((code, error[:48]), (2, "orv: recolor: the second picture, STYLE, is miss"))

    def test_wrong_chains(self):
        self.refused(2, "a verb is missing after ','", "blur", "in.ppm", ",")
        self.refused(2, "',' is followed by 'shok', which is no method, did you mean 'shock'? (orv methods lists them)", "blur", "in.ppm", ",", "shok")
        self.refused(2, "',' is followed by 'solvers', which is no method (orv methods lists them)", "blur", "in.ppm", ",", "solvers")
        self.refused(2, "'b.ppm': pictures stand before the first ','; -o names the file to write", "blur", "in.ppm", ",", "shock", "b.ppm")

    def test_help_of_a_part(self):
        self.assertEqual(self.orv("blur", "in.ppm", ",", "shock", "--help"), self.orv("shock", "--help"))

    def test_the_result_beside_its_picture(self):
        self.done("blur", "in.ppm", "-q")
        self.done("blur", "in.ppm", ",", "shock", "-q")
        self.assertEqual(self.names(), ["in.blur.ppm", "in.ppm", "in.restored.ppm"])


class Automatic(Case):
    def test_the_command_that_is_told_gives_the_same_bytes(self):
        for verb, more in (("restore", []), ("restore", ["--steps", "2"]), ("wavelet", ["--auto"]), ("denoise", ["--strength", "30"])):
            with self.subTest(verb=verb, more=more):
                out = self.done(verb, "in.ppm", "-o", "auto.ppm", "-f", *more)
                line = out.splitlines()[0]
                self.assertRegex(line, r"^in\.ppm: (noise [\d.]+ grey levels \(red .*\), strength \d+|strength 30); as: orv ")
                command = line.split("as: orv ")[1].split()
                self.assertEqual(command[-2:], ["-o", "auto.ppm"])
                self.done(*command[:-1], "told.ppm", "-f", "-q")
                self.assertEqual(self.bytes("auto.ppm"), self.bytes("told.ppm"))

    def test_strength(self):
        def spread(name):
            values = read_netpbm(self.folder / name)[4]
            return sum((v - 115.5) ** 2 for v in values)

        for strength in (0, 10, 40):
            self.done("restore", "in.ppm", f"{strength}.ppm", "--strength", strength)
        self.assertEqual(read_netpbm(self.folder / "0.ppm")[4], self.noisy)
        self.assertLess(spread("10.ppm"), spread("0.ppm"))
        self.assertLess(spread("40.ppm"), spread("10.ppm"))

    def test_an_explicit_parameter_wins(self):
        self.assertIn(" --tau 0.25 ", self.done("restore", "in.ppm", "a.ppm", "--tau", "0.25"))
        self.assertIn(" --scheme ADI ", self.done("restore", "in.ppm", "b.ppm", "--scheme", "ADI"))


    def test_nothing_to_remove_is_told(self):
        write_netpbm(self.folder / "flat.ppm", 20, 20, [90] * 1200)
        line = self.done("restore", "flat.ppm", "a.ppm").splitlines()[0]
        self.assertTrue(line.startswith("flat.ppm: noise 0.0 grey levels (red 0.0, green 0.0, blue 0.0), too little to remove; as: "), line)
        self.assertEqual(self.bytes("a.ppm"), self.bytes("flat.ppm"))

    def test_more_steps_smooth_more(self):
        shutil.copy(PHOTO, self.folder / "in.png")
        seen = []
        for steps in (1, 4, 20):
            self.done("restore", "in.png", f"{steps}.png", "--steps", steps, "-q")
            seen.append(json.loads(self.done("compare", "in.png", f"{steps}.png", "--json"))["psnr"])
        self.assertEqual(seen, sorted(seen, reverse=True))


class Words(Case):
    def test_a_second_picture_that_exists(self):
        write_netpbm(self.folder / "b.ppm", 4, 4, samples(4, 4, 3))
        line = (
            "b.ppm: exists already, and the second word is the file to write; "
            "-o FOLDER reads both pictures, --force overwrites it"
        )
        self.refused(4, line, "restore", "in.ppm", "b.ppm")

    def test_records_never_go_over_pictures(self):
        for option in ("--recipe", "--compare"):
            self.refused(2, f"{option}: in.ppm is the picture that is read", "blur", "in.ppm", "o.ppm", "-f", option, "in.ppm")
            self.refused(2, f"{option}: o.ppm is written already; name another file", "blur", "in.ppm", "o.ppm", option, "o.ppm")
            self.refused(2, f"{option}: takes a file, not standard output", "blur", "in.ppm", "o.ppm", option, "-")
        both = ["--recipe", "r.json", "--compare", "r.json"]
        self.refused(2, "--recipe: r.json is written already; name another file", "blur", "in.ppm", "o.ppm", *both)
        line = "--recipe: is for one picture, and these are 2; orv batch keeps a recipe of each"
        write_netpbm(self.folder / "b.ppm", 4, 4, samples(4, 4, 3))
        self.refused(2, line, "blur", "in.ppm", "b.ppm", "-o", "out/", "--recipe", "r.json")

    def test_reports_never_go_over_pictures(self):
        write_netpbm(self.folder / "b.ppm", 40, 32, samples(40, 32, 3))
        self.refused(4, "b.ppm: is one of the pictures that are compared", "compare", "in.ppm", "b.ppm", "-o", "b.ppm", "-f")
        self.refused(4, "in.ppm: is the picture that is read", "tune", "blur", "in.ppm", "--sigma", "1,2", "-o", "in.ppm", "-f")

    def test_a_comma_that_sticks_to_a_word(self):
        line = "'in.ppm,': a comma between methods is a word of its own: 'in.ppm ,'"
        self.refused(2, line, "blur", "in.ppm,", "shock", "-o", "o.ppm")

    def test_a_value_that_needs_its_sign(self):
        self.refused(2, "--strip: write --strip=gps", "blur", "in.ppm", "--strip", "gps")

    def test_a_preset_or_picture_in_the_place_of_a_recipe(self):
        self.refused(2, "run: 'night' is a preset, no file; write --preset night", "run", "night", "in.ppm")
        line = "run: 'in.ppm' is a picture; the recipe comes first: orv run RECIPE IN... (or orv run --preset NAME IN...)"
        self.refused(2, line, "run", "in.ppm", "o.ppm")

    def test_a_dash_before_a_name(self):
        write_netpbm(self.folder / "-a.ppm", 8, 8, samples(8, 8, 3))
        told = self.done("restore", "-o", "o.ppm", "--", "-a.ppm")
        self.assertIn("as: orv restore ./-a.ppm ", told)


class Recipes(Case):
    def test_replay_gives_the_same_bytes_and_verifies(self):
        self.done("restore", "in.ppm", ",", "shock", "--iterations", "3", "-o", "a.ppm", "--recipe", "r.json")
        out = self.done("run", "r.json", "in.ppm", "-o", "b.ppm")
        self.assertEqual(self.bytes("a.ppm"), self.bytes("b.ppm"))
        self.assertEqual(out.splitlines()[1], "in.ppm: verified: pixel by pixel the result that the recipe names")
        steps = json.loads(self.bytes("r.json"))["steps"]
        self.assertEqual([step["verb"] for step in steps], ["restore", "shock"])
        listed = {method["name"]: method for method in json.loads(run("methods", "--json")[1])}
        for step in steps:
            wanted = {parameter["name"] for parameter in listed[step["verb"]]["parameters"]}
            self.assertEqual(set(step["parameters"]) - {"auto"}, wanted)

    def test_a_result_that_differs_fails(self):
        self.done("blur", "in.ppm", "a.ppm", "--recipe", "r.json")
        recipe = json.loads(self.bytes("r.json"))
        recipe["steps"][0]["parameters"]["sigma"] = 3
        (self.folder / "r.json").write_text(json.dumps(recipe))
        code, _, error = self.orv("run", "r.json", "in.ppm", "-o", "b.ppm")
        self.assertEqual((code, error), (5, "orv: in.ppm: not the result that the recipe names: other pixels from the same input\n"))

    def test_another_picture(self):
        self.done("blur", "in.ppm", "a.ppm", "--recipe", "r.json")
        code, out, error = self.orv("run", "r.json", "a.ppm", "-o", "b.ppm")
        self.assertEqual((code, error), (0, ""))
        self.assertNotIn("verified", out)

    def test_by_hand(self):
        (self.folder / "r.json").write_text('{"steps": [{"verb": "blur", "parameters": {"sigma": 1}}, {"verb": "shock"}]}')
        self.done("run", "r.json", "in.ppm", "-o", "a.ppm")
        self.done("blur", "in.ppm", "--sigma", "1", ",", "shock", "-o", "b.ppm")
        self.assertEqual(self.bytes("a.ppm"), self.bytes("b.ppm"))

    def test_a_failure_leaves_no_recipe(self):
        write_netpbm(self.folder / "thin.ppm", 1, 8, samples(1, 8, 3))
        code, _, _ = self.orv("restore", "thin.ppm", "o.ppm", "--scheme", "ADI", "--recipe", "r.json", "--compare", "c.json")
        self.assertEqual(code, 5)
        self.assertEqual(self.names(), ["in.ppm", "thin.ppm"])

    def test_existing_recipe_or_comparison(self):
        for option, name in (("--recipe", "r.json"), ("--compare", "c.json")):
            (self.folder / name).write_text("mine")
            self.refused(4, f"{name}: exists already; --force overwrites it", "blur", "in.ppm", "o.ppm", option, name)

    def test_presets(self):
        for name in ("old-print", "night", "scan", "portrait", "document"):
            self.done("restore", "in.ppm", "-o", "a.ppm", "--preset", name, "-f", "-q")
            self.done("run", "--preset", name, "in.ppm", "-o", "b.ppm", "-f", "-q")
            self.assertEqual(self.bytes("a.ppm"), self.bytes("b.ppm"))
            self.assertNotEqual(self.bytes("a.ppm"), self.bytes("in.ppm"))


class Comparisons(Case):
    def test_it_is_that_of_orv_compare(self):
        self.done("blur", "in.ppm", "a.ppm", "--compare", "c.json")
        wanted = json.loads(self.done("compare", "in.ppm", "a.ppm", "--json"))
        told = json.loads(self.bytes("c.json"))
        for key in ("command", "program"):
            wanted.pop(key, None), told.pop(key, None)
        self.assertEqual(told, wanted)


class Streams(Case):
    def piped(self, *arguments, data):
        done = subprocess.run([TOOL, *arguments], input=data, capture_output=True, cwd=self.folder, timeout=100)
        return done.returncode, done.stdout, done.stderr.decode()

    def test_a_picture_through_pipes(self):
        self.done("blur", "in.ppm", "a.ppm")
        for words in (["-"], ["-", "-"], ["-", "-o", "-"]):
            code, out, error = self.piped("blur", *words, data=self.bytes("in.ppm"))
            self.assertEqual((code, error), (0, ""))
            self.assertEqual(out, self.bytes("a.ppm"))
        self.assertEqual(self.piped("blur", "-", "b.ppm", "-q", data=self.bytes("in.ppm"))[0], 0)
        self.assertEqual(self.bytes("b.ppm"), self.bytes("a.ppm"))

    def test_nothing_comes(self):
        code, out, error = self.piped("blur", "-", "o.ppm", data=b"")
        self.assertEqual((code, out), (3, b""))
        self.assertRegex(error, r"^orv: standard input: .*empty")
        self.assertEqual(self.names(), ["in.ppm"])

    @NEEDS_VIPS
    def test_another_format(self):
        code, out, error = self.piped("blur", "-", "--format", "png", data=self.bytes("in.ppm"))
        self.assertEqual((code, error, out[:4]), (0, "", b"\x89PNG"))


class Memory(Case):
    def test_too_little(self):
        code, out, error = self.orv("restore", "in.ppm", "o.ppm", "--max-memory", "1M")
        self.assertEqual((code, out), (6, ""))
        self.assertRegex(error, r"^orv: in\.ppm: needs \d+ MB of memory for 40 x 32 pixels, and may take 1 MB; take .*--max-memory \d+M\n$")
        self.assertEqual(self.names(), ["in.ppm"])
        told = re.search(r"--max-memory (\d+M)", error).group(1)
        self.done("restore", "in.ppm", "o.ppm", "--max-memory", told)


class Progress(Case):
    @NEEDS_VIPS
    def test_as_json(self):
        shutil.copy(PHOTO, self.folder / "in.png")
        code, _, error = self.orv("restore", "in.png", "--progress=json", "-o", "o.png")
        self.assertEqual(code, 0)
        events = [json.loads(line) for line in error.splitlines()]
        shares = [event["done"] for event in events if event["event"] == "progress"]
        self.assertEqual(shares, sorted(shares))
        self.assertEqual(shares[-1], 1.0)
        self.assertEqual([e["event"] for e in events if e["event"] != "progress"], ["reading", "writing"])

    @NEEDS_VIPS
    def test_an_interruption_ends_at_once_and_leaves_nothing(self):
        shutil.copy(PHOTO, self.folder / "in.png")
        work = [TOOL, "restore", "in.png", "-o", "o.png", "--steps", "1000", "--recipe", "r.json", "--compare", "c.html"]
        process = subprocess.Popen(work, cwd=self.folder, stderr=subprocess.PIPE)
        while not any(name.startswith(".orv") for name in os.listdir(self.folder)):
            time.sleep(0.01)
        time.sleep(0.5)
        began = time.monotonic()
        process.send_signal(signal.SIGINT)
        _, error = process.communicate(timeout=20)
        self.assertLess(time.monotonic() - began, 0.5)
        self.assertEqual(process.returncode, -signal.SIGINT)
        self.assertTrue(error.endswith(b"orv: cancelled, nothing written\n"), error)
        self.assertEqual(self.names(), ["in.png", "in.ppm"])


if __name__ == "__main__":
    unittest.main()
