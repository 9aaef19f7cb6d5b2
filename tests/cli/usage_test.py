"""Wrong command lines: one line on standard error and exit code 2."""

import json
import unittest

from cli_support import FolderCase, run, samples, write_netpbm

FLOWS = "PM, WE, WE2, WE3, WE4, VAR, TV"


class Usage(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 8, 8, samples(8, 8, 3))

    def refused(self, line, *arguments):
        self.check((2, "", f"orv: {line}\n"), *arguments)
        self.assertEqual(self.names(), ["in.ppm"])

    def test_missing_verb(self):
        self.refused("a verb is missing (usage: orv VERB [arguments]); orv --help lists all")

    def test_misspelt_verb(self):
        self.refused("unknown verb 'restor', did you mean 'restore'? (orv --help lists all)", "restor")

    def test_missing_files(self):
        usage = "(usage: orv restore IN OUT [options])"
        self.refused(f"restore: the picture to read is missing {usage}", "restore")
        self.refused(f"restore: the file to write is missing {usage}", "restore", "in.ppm")

    def test_unknown_option(self):
        self.refused("unknown option '--tua', did you mean '--tau'?", "restore", "in.ppm", "out.ppm", "--tua", "3")
        self.refused("unknown option '--jso', did you mean '--json'?", "methods", "--jso")

    def test_third_file(self):
        self.refused("unexpected argument 'more'", "restore", "in.ppm", "out.ppm", "more")

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

    def test_unknown_names(self):
        self.refused(
            f"--flow: 'PN' is not known, did you mean 'PM'? (expected {FLOWS}, default PM)",
            *("restore", "in.ppm", "out.ppm", "--flow", "PN"),
        )
        self.refused(
            "--solver: 'Tomas' is not known, did you mean 'Thomas'? (expected one of 42 names, "
            "'Thomas' to 'ILU0-BiCGStab', or a number, default Thomas)",
            *("restore", "in.ppm", "out.ppm", "--solver", "Tomas"),
        )

    def test_flags_take_no_value(self):
        self.refused("--substeps: takes no value", "restore", "in.ppm", "out.ppm", "--substeps=3")
        self.refused("--force: takes no value", "restore", "in.ppm", "out.ppm", "--force=yes")

    def test_last_value_counts(self):
        code, _, error = run("restore", "in.ppm", "out.ppm", "--tau", "5", "--tau=0", "-q", cwd=self.folder)

        self.assertEqual((code, error), (0, ""))
        self.assertEqual((self.folder / "out.ppm").read_bytes(), (self.folder / "in.ppm").read_bytes())

    def test_names_that_look_like_options(self):
        self.check((0, "", ""), "restore", "-q", "--", "in.ppm", "-out.ppm")
        self.assertEqual(self.names(), ["-out.ppm", "in.ppm"])


class Listings(unittest.TestCase):
    def test_help(self):
        for arguments in (["--help"], ["-h"], ["restore", "--help"], ["denoise", "-h"], ["methods", "-h"], ["solvers", "--help"]):
            code, text, error = run(*arguments)
            self.assertEqual((code, error), (0, ""))
            self.assertIn("Usage: orv ", text)

    def test_help_tells_what_the_catalogue_tells(self):
        for method in json.loads(run("methods", "--json")[1]):
            help_text = " ".join(run(method["name"], "--help")[1].split())
            for parameter in method["parameters"]:
                self.assertIn("--" + parameter["name"], help_text)
                self.assertIn(parameter["help"], help_text)
            self.assertIn(method["summary"], help_text)
            self.assertIn("3 a file can't be read or written", help_text)

    def test_solvers(self):
        code, text, error = run("solvers")

        lines = text.splitlines()
        self.assertEqual((code, error, len(lines)), (0, "", 43))
        self.assertEqual(lines[0].split(), ["id", "name", "built", "group", "description"])
        self.assertRegex(lines[1], r"^0   Thomas +yes +Direct Methods +LU Doolittle")
        self.assertRegex(lines[42], r"^41  ILU0-BiCGStab +(yes|no) ")

    def test_version(self):
        self.assertRegex(run("--version")[1], r"^orv \d+\.\d+\.\d+( \(libvips [\d.]+\))?\n$")


if __name__ == "__main__":
    unittest.main()
