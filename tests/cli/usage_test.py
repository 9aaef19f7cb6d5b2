"""Wrong command lines: one line on standard error and exit code 2."""

import json
import os
import subprocess
import unittest

from cli_support import TOOL, FolderCase, run, samples, write_netpbm

FLOWS = "PM, WE, WE2, WE3, WE4, VAR, TV"


class Usage(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))

    def refused(self, line, *arguments):
        self.check((2, "", f"orv: {line}\n"), *arguments)
        self.assertEqual(self.names(), ["in.ppm"])

    def test_misspelt_verb(self):
        self.refused("unknown verb 'restor', did you mean 'restore'? (orv --help lists all)", "restor")

    def test_missing_files(self):
        self.refused("restore: the picture to read is missing (usage: orv restore IN... [OUT] [options])", "restore")
        self.refused(
            "recolor: the second picture, STYLE, is missing (usage: orv recolor SOURCE STYLE [OUT] [options])",
            *("recolor", "in.ppm"),
        )

    def test_unknown_option(self):
        line = "unknown option '--tua', did you mean '--tau'? (orv restore --help lists all)"
        self.refused(line, "restore", "in.ppm", "out.ppm", "--tua", "3")
        self.refused("unknown option '--jso', did you mean '--json'? (orv methods --help lists all)", "methods", "--jso")

    def test_one_word_too_many(self):
        self.refused("solvers: 'more' is one word too many (usage: orv solvers [options])", "solvers", "more")

    def test_file_instead_of_a_verb(self):
        for words in (["in.ppm", "out.ppm", "--tau", "3"], ["none.JPG", "out.ppm"]):
            line = f"'{words[0]}' is a file name, not a verb; did you mean 'orv restore {' '.join(words)}'?"
            self.refused(line, *words)

    def test_option_of_another_verb(self):
        def refused(others, option, verb, *words):
            code, out, error = run(verb, *words, cwd=self.folder)
            self.assertEqual((code, out), (2, ""))
            self.assertRegex(error, rf"^orv: {option}: is an option of {others}, not of {verb} \(orv {verb} --help lists all\)\n$")
            self.assertEqual(self.names(), ["in.ppm"])

        refused("denoise", "--fidelity", "restore", "in.ppm", "out.ppm", "--fidelity", "1")
        refused("[a-z, ]+ and [a-z]+", "--json", "denoise", "in.ppm", "out.ppm", "--json")
        refused("restore and denoise", "--solver", "solvers", "--solver=3")
        refused("restore, denoise, wavelet and others", "-f", "methods", "-f")

    def test_values(self):
        range_text = "(expected PIXELS^2 from 0 to 1000, default 1.0)"
        for value, line in [
            ("wide", f"'wide' is not a number {range_text}"),
            ("nan", f"'nan' is not a finite number {range_text}"),
            ("1e9", f"1e9 is out of range {range_text}"),
            ("-1", f"-1 is out of range {range_text}"),
            ("", f"'' is not a number {range_text}"),
        ]:
            with self.subTest(value=value):
                self.refused(f"--tau: {line}", "restore", "in.ppm", "out.ppm", "--tau", value)

    def test_missing_value(self):
        self.refused(
            "--tau: the value is missing (expected PIXELS^2 from 0 to 1000, default 1.0)",
            *("restore", "in.ppm", "out.ppm", "--tau"),
        )
        self.refused(
            "--tau: the value is missing (expected PIXELS^2 from 0 to 1000, default 1.0)",
            *("restore", "in.ppm", "out.ppm", "--tau="),
        )
        line = "--output: the value is missing (expected a file, a folder, or - for standard output)"
        for words in (["-o"], ["-o", ""], ["--output="], ["--output", "--tau", "1"]):
            self.refused(line, "restore", "in.ppm", *words)

    def test_unknown_names(self):
        self.refused(
            f"--flow: 'PN' is not known, did you mean 'PM'? (expected {FLOWS}, default PM)",
            *("restore", "in.ppm", "out.ppm", "--flow", "PN"),
        )
        self.refused(
            "--solver: 'Tomas' is not known, did you mean 'Thomas'? (expected one of 42 names, "
            "'Thomas' to 'ILU0-BiCGStab', or a number from 0 to 41, default Thomas)",
            *("restore", "in.ppm", "out.ppm", "--solver", "Tomas"),
        )

    def test_solver_numbers(self):
        self.refused(
            "--solver: 99 is out of range (expected one of 42 names, 'Thomas' to 'ILU0-BiCGStab', "
            "or a number from 0 to 41, default Thomas)",
            *("restore", "in.ppm", "out.ppm", "--solver", "99"),
        )

    def test_solvers_that_spoil_pictures(self):
        def warning(*arguments):
            code, _, error = run("restore", "in.ppm", "out.ppm", "-f", *arguments, cwd=self.folder)
            self.assertEqual(code, 0)
            return error

        self.assertEqual(
            warning("--solver", "Jacobi"),
            "orv: warning: the solver Jacobi multiplies instead of solving: wrong pictures, for study only\n",
        )
        self.assertEqual(warning("--solver", "1", "--quiet"), "")
        self.assertEqual(warning("--solver", "29", "--solver-iterations", "2"), "")

    def test_a_parameter_with_the_name_of_an_option(self):
        self.check((0, "", ""), "retinex", "in.ppm", "a.ppm", "-q", "--alpha", "0.05")
        self.check((0, "", ""), "retinex", "in.ppm", "b.ppm", "-q", "--alpha", "drop")
        self.check((0, "", ""), "retinex", "in.ppm", "c.ppm", "-q")
        bright, dropped, plain = ((self.folder / name).read_bytes() for name in ("a.ppm", "b.ppm", "c.ppm"))
        self.assertNotEqual(bright, plain)
        self.assertEqual(dropped, plain)
        line = "orv: --alpha: 'lose' is not a number (expected N from 0 to 1, default 0.0001)\n"
        self.check((2, "", line), "retinex", "in.ppm", "d.ppm", "--alpha", "lose")

    def test_flags_take_no_value(self):
        self.refused("--substeps: takes no value", "restore", "in.ppm", "out.ppm", "--substeps=3")
        self.refused("--force: takes no value", "restore", "in.ppm", "out.ppm", "--force=yes")

    def test_repeated_options(self):
        self.refused("--tau: is given 2 times; give it once", "restore", "in.ppm", "out.ppm", "--tau", "5", "--tau=0")
        self.refused("--force: is given 2 times; give it once", "restore", "in.ppm", "out.ppm", "-f", "--force")
        self.refused("--substeps: is given 3 times; give it once", "restore", "in.ppm", "out.ppm", *["--substeps"] * 3)

    def test_names_that_look_like_options(self):
        self.check((0, "", ""), "restore", "-q", "--", "in.ppm", "-out.ppm")
        self.assertEqual(self.names(), ["-out.ppm", "in.ppm"])


class Listings(unittest.TestCase):
    def test_help(self):
        for arguments in (["--help"], ["-h"], ["restore", "--help"], ["denoise", "-h"], ["methods", "-h"], ["solvers", "--help"]):
            code, text, error = run(*arguments)
            self.assertEqual((code, error), (0, ""))
            self.assertIn("Usage: orv ", text)

    def test_help_of_a_verb(self):
        for verb in ("restore", "denoise", "methods", "solvers"):
            self.assertEqual(run("help", verb), run(verb, "--help"))
        code, text, error = run("help", "restor")
        self.assertEqual((code, text), (2, ""))
        self.assertIn("did you mean 'restore'?", error)

    def test_help_fits_and_keeps_ranges_together(self):
        for verb in ("restore", "denoise"):
            text = run(verb, "--help")[1].split("\nLiterature:")[0]
            self.assertLessEqual(max(map(len, text.splitlines())), 80)
            self.assertNotRegex(text, r"\[default:\s*\n|\d to\n|\d\n +to \d|[^ -~\n]")
            self.assertIn("1 to 10000 [default: 50]", run("help", verb, "--all")[1])

    def test_solvers(self):
        code, text, error = run("solvers")

        lines = text.splitlines()
        self.assertEqual((code, error, len(lines)), (0, "", 43))
        self.assertEqual(lines[0].split(), ["id", "name", "suits", "group", "description"])
        self.assertRegex(lines[1], r"^0   Thomas +both +Direct Methods +LU Doolittle")
        self.assertRegex(lines[42], r"^41  ILU0-BiCGStab +planes +SSOR ")

    @unittest.skipUnless(os.path.exists("/dev/full"), "this system lacks /dev/full")
    def test_full_disk_of_a_listing(self):
        for verb in ("solvers", "methods"):
            with open("/dev/full", "w") as full:
                done = subprocess.run([TOOL, verb, "--json"], stdout=full, stderr=subprocess.PIPE)
            self.assertEqual(done.returncode, 4)
            self.assertEqual(done.stderr, b"orv: standard output can't be written: No space left on device\n")

    def test_solvers_as_json(self):
        code, text, error = run("solvers", "--json")
        entries = json.loads(text)
        self.assertEqual((code, error, len(entries)), (0, "", 42))
        self.assertEqual(set(entries[1]), {"id", "name", "group", "description", "suitsLines", "suitsPlanes", "note"})
        spoiling = [entry["id"] for entry in entries if entry["note"]]
        self.assertEqual(spoiling[:3] + spoiling[-3:], [1, 5, 11, 32, 36, 40])
        for entry, line in zip(entries, run("solvers")[1].splitlines()[1:]):
            self.assertTrue(line.endswith(entry["note"]), line)

    def test_version(self):
        self.assertRegex(run("--version")[1], r"^orv \d+\.\d+\.\d+( \(libvips [\d.]+\))?\n$")


if __name__ == "__main__":
    unittest.main()
