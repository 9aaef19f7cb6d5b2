"""orv solve: the table, the three reports, wrong command lines and files."""

import csv
import html.parser
import io
import json
import os
import re
import signal
import subprocess
import time
import unittest

from cli_support import NEEDS_VIPS, ROOT, TOOL, FolderCase, run, samples, write_netpbm, write_png

SOLVERS_EXPECTED = "(expected all, or names or numbers from orv solvers with commas between)"
OUTPUT_EXPECTED = "(expected a file that ends in .html, .csv or .json)"
COLUMNS = ["id", "name", "limit", "status", "seconds", "residual", "difference_max", "difference_mean"]
STATUSES = {"converged", "limit", "broke down", "wrong", "skipped"}
SYSTEM = {
    *("scheme", "tau", "contrast", "sigma", "flow", "norm", "systems", "unknowns", "tolerance", "solverIterations"),
    *("startResidual", "startDifferenceMax", "startDifferenceMean", "exactResidual", "roundedResidual"),
}
MEASURES = {"seconds", "residual", "differenceMax", "differenceMean"}
SOLVER = {"id", "name", "group", "description", "note", "status", "reason", "iterations", "curve"} | MEASURES


def refuse_constant(text):
    raise ValueError(f"{text} is no JSON")


def strict_json(text):
    return json.loads(text, parse_constant=refuse_constant)


class Page(html.parser.HTMLParser):
    """What a page refers to, and the text of its data."""

    def __init__(self, text):
        super().__init__()
        self.references, self.data, self.inside = [], "", False
        self.feed(text)
        self.close()

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        self.references += [attributes[name] for name in ("src", "href") if name in attributes]
        self.inside = tag == "script" and attributes.get("id") == "data"

    def handle_endtag(self, tag):
        self.inside = False

    def handle_data(self, data):
        if self.inside:
            self.data += data


class SolveCase(FolderCase):
    def setUp(self):
        super().setUp()
        write_netpbm(self.folder / "in.ppm", 20, 16, samples(20, 16, 3))

    def solve(self, *arguments):
        """Runs and gives standard output; the run has to go well."""
        code, out, error = run("solve", *arguments, cwd=self.folder)
        self.assertEqual((code, error), (0, ""))
        return out

    def data(self, *arguments):
        """The JSON report of a run."""
        self.solve(*arguments, "-o", "out.json", "-f", "-q")
        return strict_json((self.folder / "out.json").read_text())


class Usage(SolveCase):
    def refused(self, line, *arguments):
        self.check((2, "", f"orv: {line}\n"), "solve", *arguments)
        self.assertEqual(self.names(), ["in.ppm"])

    def test_missing_picture(self):
        self.refused("solve: the picture to read is missing (usage: orv solve IN [options])")

    def test_report_without_its_option(self):
        line = "solve: 'out.html' is one word too many; -o names the file to write (usage: orv solve IN [options])"
        self.refused(line, "in.ppm", "out.html")

    def test_unknown_solvers(self):
        for names, word, hint in [
            ("Tomas", "Tomas", ", did you mean 'Thomas'?"),
            ("Thomas,GSS", "GSS", ", did you mean 'GS'?"),
            ("bicgstab(3)", "bicgstab(3)", ", did you mean 'BiCGStab(2)'?"),
            ("42", "42", ""),
            ("-1", "-1", ""),
            ("1.0", "1.0", ""),
            ("00", "00", ""),
            ("Thomas,", "", ""),
            (",", "", ""),
        ]:
            with self.subTest(names=names):
                self.refused(f"--solvers: '{word}' is not known{hint} {SOLVERS_EXPECTED}", "in.ppm", f"--solvers={names}")

    def test_all_among_names(self):
        self.refused(f"--solvers: 'all' goes with no other name {SOLVERS_EXPECTED}", "in.ppm", "--solvers", "CG,All")

    def test_missing_values(self):
        self.refused(f"--solvers: the value is missing {SOLVERS_EXPECTED}", "in.ppm", "--solvers=")
        self.refused(f"--solvers: the value is missing {SOLVERS_EXPECTED}", "in.ppm", "--solvers")
        self.refused(f"--output: the value is missing {OUTPUT_EXPECTED}", "in.ppm", "-o")
        self.refused(f"--output: the value is missing {OUTPUT_EXPECTED}", "in.ppm", "-o", "")

    def test_repeated_options(self):
        self.refused("--solvers: is given 2 times; give it once", "in.ppm", "--solvers", "1", "--solvers", "2")
        self.refused("--output: is given 2 times; give it once", "in.ppm", "-o", "a.csv", "--output", "b.csv")

    def test_schemes_without_one_system_to_study(self):
        expected = "(expected 2DSemi, LOD, AOS, default 2DSemi)"
        for name in ("ADI", "afi"):
            line = f"--scheme: '{name}' is a scheme of restore that solve doesn't study {expected}"
            self.refused(line, "in.ppm", "--scheme", name)
        self.refused(f"--scheme: 'AXI' is not known {expected}", "in.ppm", "--scheme", "AXI")

    def test_options_of_other_verbs(self):
        line = "--solver: is an option of restore and denoise, not of solve (orv solve --help lists all)"
        self.refused(line, "in.ppm", "--solver", "CG")
        self.refused("unknown option '--solvrs', did you mean '--solvers'? (orv solve --help lists all)", "in.ppm", "--solvrs", "CG")
        self.refused("unknown option '--outpu', did you mean '--output'? (orv solve --help lists all)", "in.ppm", "--outpu", "a.csv")

    def test_values(self):
        self.refused("--size: -1 is out of range (expected PIXELS from 0 to 100000, default 256)", "in.ppm", "--size", "-1")
        line = "--solver-iterations: 0 is out of range (expected ITERATIONS from 1 to 10000, default 50)"
        self.refused(line, "in.ppm", "--solver-iterations", "0")

    def test_misspelt_verb(self):
        self.check((2, "", "orv: unknown verb 'solv', did you mean 'solve'? (orv --help lists all)\n"), "solv", "in.ppm")

    def test_help(self):
        code, text, error = run("solve", "--help")
        self.assertEqual((code, error), (0, ""))
        self.assertEqual(run("help", "solve"), (0, text, ""))
        self.assertLessEqual(max(map(len, text.splitlines())), 80)
        self.assertNotRegex(text, r"\[default:\s*\n|[^ -~\n]")
        told = " ".join(run("help", "solve", "--all")[1].split())
        for word in ("--solvers NAMES", "--scheme NAME", "-o, --output FILE", ".html", ".csv", ".json", "broke down"):
            self.assertIn(word, told)
        self.assertIn("\n  solve ", run("--help")[1])

    def test_help_tells_what_restore_tells(self):
        told = " ".join(run("help", "solve", "--all")[1].split())
        methods = json.loads(run("methods", "--json")[1])
        restore = next(method for method in methods if method["name"] == "restore")
        for parameter in restore["parameters"]:
            if parameter["name"] in ("scheme", "flow", "tau", "sigma", "contrast", "norm", "solver-iterations"):
                self.assertIn(parameter["help"], told)


class Files(SolveCase):
    def refused(self, line, *arguments, code=4):
        before = self.names()
        self.check((code, "", f"orv: {line}\n"), "solve", *arguments)
        self.assertEqual(self.names(), before)

    def test_missing_input(self):
        self.refused("none.png: no such file", "none.png", code=3)
        self.refused("none.png: no such file", "none.png", "-o", "out.csv", code=3)

    def test_truncated_picture(self):
        data = (self.folder / "in.ppm").read_bytes()
        (self.folder / "cut.ppm").write_bytes(data[: len(data) // 2])
        code, out, error = run("solve", "cut.ppm", "-o", "out.html", cwd=self.folder)
        self.assertEqual((code, out), (3, ""))
        self.assertRegex(error, r"^orv: cut\.ppm: [^\n]+\n$")
        self.assertEqual(self.names(), ["cut.ppm", "in.ppm"])

    def test_unknown_endings(self):
        for name in ("out.txt", "out", ".csv", "out.json.gz", "out.htm"):
            line = f"{name}: the ending names no report that orv writes (.html .csv .json)"
            self.refused(line, "in.ppm", "-o", name)

    def test_folder_as_report(self):
        (self.folder / "sub").mkdir()
        (self.folder / "dir.csv").mkdir()
        self.refused("sub: is a folder; name a file in it", "in.ppm", "-o", "sub")
        self.refused("dir.csv: is a folder; name a file in it", "in.ppm", "-o", "dir.csv", "-f")

    def test_missing_folder(self):
        self.refused("in.ppm/out.csv: can't be written: Not a directory", "in.ppm", "-o", "in.ppm/out.csv")

    @unittest.skipIf(os.geteuid() == 0, "root may write anywhere")
    def test_read_only_folder(self):
        (self.folder / "sub").mkdir(mode=0o555)
        self.refused("sub/out.csv: can't be written: Permission denied", "in.ppm", "-o", "sub/out.csv")

    def test_existing_report(self):
        (self.folder / "out.csv").write_text("mine")
        self.refused("out.csv: exists already; --force overwrites it", "in.ppm", "-o", "out.csv")
        self.assertEqual((self.folder / "out.csv").read_text(), "mine")

        self.solve("in.ppm", "--solvers", "0", "-o", "out.csv", "--force", "-q")

        self.assertTrue((self.folder / "out.csv").read_text().startswith("id,name,"))
        self.assertEqual(self.names(), ["in.ppm", "out.csv"])

    def test_endings_in_capitals(self):
        self.solve("in.ppm", "--solvers", "0", "-o", "OUT.JSON", "-q")
        strict_json((self.folder / "OUT.JSON").read_text())

    @unittest.skipUnless(os.path.exists("/dev/full"), "this system lacks /dev/full")
    def test_full_disk_of_the_table(self):
        with open("/dev/full", "w") as full:
            done = subprocess.run([TOOL, "solve", "in.ppm", "--solvers", "0"], cwd=self.folder, stdout=full, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr), (4, b"orv: standard output can't be written: No space left on device\n"))

    def test_interruption_leaves_nothing(self):
        write_netpbm(self.folder / "in.ppm", 256, 256, samples(256, 256, 3))
        arguments = [TOOL, "solve", "in.ppm", "--solver-iterations", "10000", "--tau", "1000", "-o", "out.html"]
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number=number):
                process = subprocess.Popen(arguments, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
                deadline = time.monotonic() + 60
                while len(self.names()) < 2 and time.monotonic() < deadline:
                    time.sleep(0.01)
                self.assertEqual(len(self.names()), 2, "no file in the making")

                process.send_signal(number)
                out, error = process.communicate(timeout=60)

                self.assertEqual(process.returncode, -number)
                told = b"orv: cancelled, nothing written\n" if number == signal.SIGINT else b""
                self.assertEqual((out, error), (b"", told))
                self.assertEqual(self.names(), ["in.ppm"])


class Refusals(SolveCase):
    def test_planes_too_small_for_2dsemi(self):
        for width, height in [(1, 1), (1, 9), (9, 1)]:
            write_netpbm(self.folder / "in.ppm", width, height, samples(width, height, 3))
            line = f"solve: the scheme 2DSemi needs at least 2 x 2 pixels, this picture has {width} x {height}"
            self.check((5, "", f"orv: {line}\n"), "solve", "in.ppm", "-o", "out.html")
            self.assertEqual(self.names(), ["in.ppm"])

    def test_a_part_too_small_for_2dsemi(self):
        line = "solve: the scheme 2DSemi needs at least 2 x 2 pixels, this picture has 1 x 1"
        self.check((5, "", f"orv: {line}\n"), "solve", "in.ppm", "--size", "1")

    def test_nothing_to_measure(self):
        error = "orv: solve: nothing to measure: ILU0-BiCGStab: needs the five diagonals of 2DSemi\n"
        self.check((5, "", error), "solve", "in.ppm", "--scheme", "LOD", "--solvers", "ILU0-BiCGStab", "-o", "a.csv")
        self.assertEqual(self.names(), ["in.ppm"])


class Table(SolveCase):
    def test_all_solvers_by_id(self):
        lines = self.solve("in.ppm").splitlines()

        self.assertEqual(lines[0], "First time step of 2DSemi with tau 1: 1 system, 320 unknowns")
        self.assertEqual(lines[1], "")
        self.assertEqual(lines[2], "id  name              status      iterations  residual  max difference     time")
        self.assertRegex(lines[3], r"^    \(the picture\) +\d\.\d\de[+-]\d\d +\d\.\d\de[+-]\d\d$")
        self.assertRegex(lines[4], r"^    \(exact as floats\) +\d\.\d\de[+-]\d\d +\d\.\d\de[+-]\d\d$")
        rows = lines[5:-2]
        self.assertEqual([int(row.split()[0]) for row in rows], list(range(42)))
        names = [entry["name"] for entry in json.loads(run("solvers", "--json")[1])]
        self.assertEqual([row.split()[1] for row in rows], names)
        for row in rows:
            self.assertIn(row[22:34].strip(), STATUSES)
        self.assertLessEqual(max(map(len, lines[:-1])), 80)
        self.assertEqual(lines[-2], "")
        measured = sum(" skipped " not in row for row in rows)
        self.assertRegex(lines[-1], rf"^{measured} solvers on 20 x 16 pixels of in\.ppm in [\d.]+ s; -o writes a report$")

    def test_rows(self):
        out = self.solve("in.ppm", "--solvers", "gs,0,CBB,2,Jacobi")
        number = r"\d\.\d\de[+-]\d\d"
        rows = out.splitlines()[5:-2]
        self.assertEqual(len(rows), 4)
        self.assertRegex(rows[0], rf"^0   Thomas            converged       direct  {number}        {number} +[\d.]+ m?s$")
        self.assertRegex(rows[1], rf"^1   Jacobi            wrong                1  {number}        {number} +[\d.]+ m?s$")
        self.assertRegex(rows[2], rf"^2   GS                converged +\d+  {number}        {number} +[\d.]+ m?s$")
        self.assertRegex(rows[3], rf"^6   CBB               converged +\d+  {number}        {number} +[\d.]+ m?s$")

    def test_skipped_rows_tell_why(self):
        rows = self.solve("in.ppm", "--scheme", "AOS", "--solvers", "0,41").splitlines()[5:-2]
        self.assertEqual(rows[1], "41  ILU0-BiCGStab     skipped     needs the five diagonals of 2DSemi")

    def test_rows_of_a_breakdown_tell_where(self):
        rows = self.solve("in.ppm", "--solvers", "MR,GMRES*-CBB", "--scheme", "LOD").splitlines()[5:-2]
        self.assertEqual(rows[0], "14  MR                broke down  at 1 iteration")
        self.assertRegex(rows[1], r"^29  GMRES\*-CBB        broke down  at \d+ iterations; residual [\d.e-]+ at \d+$")

    def test_line_schemes(self):
        first = self.solve("in.ppm", "--solvers", "0", "--scheme", "lod", "--tau", "2.5").splitlines()[0]
        self.assertEqual(first, "First time step of LOD with tau 2.5: 16 systems, 320 unknowns")

    def test_last_line_names_the_report(self):
        out = self.solve("in.ppm", "--solvers", "0", "-o", "out.csv")
        self.assertRegex(out.splitlines()[-1], r"^1 solver on 20 x 16 pixels of in\.ppm in [\d.]+ s; report: out\.csv$")

    def test_quiet(self):
        self.assertEqual(self.solve("in.ppm", "--solvers", "0", "-o", "out.csv", "-q"), "")
        self.assertIn("Thomas", self.solve("in.ppm", "--solvers", "0", "-q"))

    def test_no_colour_and_no_progress_off_a_terminal(self):
        self.assertNotIn("\033", self.solve("in.ppm", "--solvers", "0,2"))


class Reports(SolveCase):
    def test_json_is_complete(self):
        self.solve("in.ppm", "-o", "out.json", "--tau", "2")
        data = strict_json((self.folder / "out.json").read_text())

        self.assertEqual(set(data), {"program", "command", "picture", "system", "solvers"})
        self.assertRegex(data["program"], r"^orv \d+\.\d+\.\d+$")
        self.assertEqual(data["command"], "orv solve in.ppm -o out.json --tau 2")
        self.assertEqual(
            data["picture"],
            {"name": "in.ppm", "width": 20, "height": 16, "x": 0, "y": 0, "usedWidth": 20, "usedHeight": 16},
        )
        system = data["system"]
        self.assertEqual(set(system), SYSTEM)
        told = {"scheme": "2DSemi", "tau": 2, "contrast": 5, "sigma": 0.5, "flow": "PM", "norm": "central", "systems": 1}
        told |= {"unknowns": 320, "tolerance": 0.0001, "solverIterations": 50}
        self.assertEqual({key: system[key] for key in told}, told)
        self.assertGreater(system["startResidual"], 1)
        self.assertLess(system["exactResidual"], 1e-9)
        self.assertEqual([solver["id"] for solver in data["solvers"]], list(range(42)))
        for solver in data["solvers"]:
            with self.subTest(solver=solver["name"]):
                self.check_solver(solver)

    def check_solver(self, solver):
        self.assertEqual(set(solver), SOLVER)
        self.assertIn(solver["status"], STATUSES)
        limits = [point["limit"] for point in solver["curve"]]
        self.assertEqual(limits, sorted(set(limits)))
        for point in solver["curve"]:
            self.assertEqual(set(point), MEASURES | {"limit"})
            self.assertGreaterEqual(point["seconds"], 0)
        if solver["status"] == "skipped":
            self.assertEqual((limits, solver["iterations"]), ([], None))
            self.assertNotEqual(solver["reason"], "")
            self.assertEqual([solver[measure] for measure in MEASURES], [None] * 4)
        elif solver["status"] == "broke down":
            self.assertIn(solver["iterations"], limits)
            self.assertIsNone(solver["residual"])
            self.assertTrue(solver["reason"].startswith("at "))
        else:
            last = solver["curve"][-1]
            self.assertEqual(last["residual"], solver["residual"])
            self.assertEqual(last["differenceMax"], solver["differenceMax"])
            if solver["id"] == 0:
                self.assertEqual((limits, solver["iterations"]), ([1], None))
            else:
                self.assertEqual(limits[-1], 50)
                self.assertIn(solver["iterations"], limits)

    def test_curves_end_at_the_exact_solution(self):
        for scheme in ("2DSemi", "LOD", "AOS"):
            for solver in self.data("in.ppm", "--solvers", "0,2,6", "--scheme", scheme)["solvers"]:
                with self.subTest(scheme=scheme, solver=solver["name"]):
                    self.assertEqual(solver["status"], "converged")
                    self.assertLess(solver["differenceMax"], 0.05)
                    self.assertLessEqual(solver["differenceMean"], solver["differenceMax"])
                    residuals = [point["residual"] for point in solver["curve"]]
                    self.assertEqual(residuals[-1], min(residuals[:1] + residuals[-1:]))

    def test_numbers_that_are_not_finite(self):
        data = self.data("in.ppm", "--solvers", "6,29", "--scheme", "LOD", "--tau", "10")
        broken = [solver for solver in data["solvers"] if solver["status"] == "broke down"]
        self.assertNotEqual(broken, [])
        for solver in broken:
            for point in solver["curve"]:
                finite = point["limit"] < solver["iterations"]
                self.assertEqual(point["residual"] is not None, finite)
                self.assertEqual(point["differenceMax"] is not None, finite)

    def test_csv(self):
        arguments = ["in.ppm", "--solvers", "0,1,6,29,41", "--scheme", "LOD", "--tau", "7"]
        self.solve(*arguments, "-o", "out.csv")
        text = (self.folder / "out.csv").read_text()
        rows = list(csv.DictReader(io.StringIO(text)))
        data = self.data(*arguments)

        self.assertEqual(text.splitlines()[0].split(","), COLUMNS)
        expected = []
        for solver in data["solvers"]:
            points = solver["curve"] or [{"limit": None, "residual": None, "differenceMax": None, "differenceMean": None}]
            for point in points:
                measures = [point["residual"], point["differenceMax"], point["differenceMean"]]
                expected.append([solver["id"], solver["name"], solver["status"], point["limit"], *measures])
        found = []
        for row in rows:
            self.assertEqual(row["seconds"] != "", row["limit"] != "")
            numbers = [float(row[name]) if row[name] else None for name in ("limit", "residual", "difference_max", "difference_mean")]
            found.append([int(row["id"]), row["name"], row["status"], *numbers])
        self.assertEqual(found, expected)

    def test_page(self):
        self.solve("in.ppm", "--solvers", "0,6", "-o", "out.html", "-q")
        text = (self.folder / "out.html").read_text()
        page = Page(text)

        self.assertTrue(text.startswith("<!DOCTYPE html>"))
        self.assertNotIn("@ORV", text)
        self.assertEqual(text.count('id="data"'), 1)
        self.assertEqual([solver["name"] for solver in strict_json(page.data)["solvers"]], ["Thomas", "CBB"])
        # Nothing is fetched; the one address that may stand in a page is a name of the SVG language.
        self.assertEqual([reference for reference in page.references if not reference.startswith("#")], [])
        self.assertNotRegex(text.replace("http://www.w3.org/2000/svg", ""), r"(?i)https?:|\burl\((?!#)|@import|\bfetch\(|XMLHttp")

    def test_page_of_a_picture_with_a_wicked_name(self):
        name = "</script><b>&'\"$(x)@ORV_REPORT_DATA@.ppm"
        name = name.replace("/", "\u2215")
        (self.folder / "in.ppm").rename(self.folder / name)
        self.solve(name, "--solvers", "0", "-o", "out.html", "-q")
        text = (self.folder / "out.html").read_text()
        data = Page(text).data
        self.assertNotIn("<", data)
        self.assertEqual(strict_json(data)["picture"]["name"], name)
        quoted = "'" + name.replace("'", "'\\''") + "'"
        self.assertEqual(strict_json(data)["command"], f"orv solve {quoted} --solvers 0 -o out.html -q")

    def test_names_that_are_no_text(self):
        name = b"a\xff\xed\xa0\x80b.ppm"
        os.rename(self.folder / "in.ppm", os.path.join(os.fsencode(self.folder), name))
        done = subprocess.run([TOOL, b"solve", name, "--solvers", "0", "-o", "out.json", "-q"], cwd=self.folder, capture_output=True)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        data = strict_json((self.folder / "out.json").read_bytes().decode("utf-8", "strict"))
        self.assertEqual(data["picture"]["name"], "a????b.ppm")

    def test_two_runs_agree_but_for_time(self):
        def measured():
            data = self.data("in.ppm", "--solvers", "0,2,6")
            return [[solver["status"], solver["iterations"]] + [(p["limit"], p["residual"]) for p in solver["curve"]] for solver in data["solvers"]]

        self.assertEqual(measured(), measured())


class Pictures(SolveCase):
    def used(self, *arguments):
        return self.data(*arguments, "--solvers", "0", "--scheme", "AOS")["picture"]

    def test_the_middle(self):
        part = self.used("in.ppm", "--size", "7")
        self.assertEqual((part["x"], part["y"], part["usedWidth"], part["usedHeight"]), (6, 4, 7, 7))
        part = self.used("in.ppm", "--size", "18")
        self.assertEqual((part["x"], part["y"], part["usedWidth"], part["usedHeight"]), (1, 0, 18, 16))
        part = self.used("in.ppm", "--size", "0")
        self.assertEqual((part["x"], part["y"], part["usedWidth"], part["usedHeight"]), (0, 0, 20, 16))

    def test_small_tall_and_wide(self):
        for width, height in [(1, 1), (2, 2), (1, 300), (300, 1), (2, 300), (300, 3)]:
            write_netpbm(self.folder / "in.ppm", width, height, samples(width, height, 3))
            for scheme in ("2DSemi", "LOD", "AOS"):
                if scheme == "2DSemi" and min(width, height) < 2:
                    continue
                with self.subTest(width=width, height=height, scheme=scheme):
                    data = self.data("in.ppm", "--scheme", scheme, "--size", "0")
                    self.assertEqual(data["system"]["unknowns"], width * height)
                    self.assertEqual(data["solvers"][0]["status"], "converged")

    def test_brightness(self):
        red, green, blue = [200, 10, 30], [20, 180, 40], [60, 70, 250]
        write_netpbm(self.folder / "colour.ppm", 3, 3, (red + green + blue) * 3)
        grey = [round(0.299 * r + 0.587 * g + 0.114 * b) for r, g, b in (red, green, blue)]
        write_netpbm(self.folder / "grey.pgm", 3, 3, grey * 3, channels=1)
        start = [
            self.data(name, "--solvers", "0", "--contrast", "1000")["system"]["startDifferenceMax"]
            for name in ("colour.ppm", "grey.pgm")
        ]
        self.assertGreater(start[0], 1)
        # Grey is rounded to whole levels.
        self.assertAlmostEqual(start[0], start[1], delta=1)

    @NEEDS_VIPS
    def test_depth_and_alpha_do_not_matter(self):
        values = samples(12, 10, 1)
        write_netpbm(self.folder / "grey.pgm", 12, 10, values, channels=1)
        write_png(self.folder / "deep.png", 12, 10, [257 * value for value in values], 1, depth=16)
        write_png(self.folder / "alpha.png", 12, 10, [x for value in values for x in (value, 77)], 2)
        plain = self.data("grey.pgm", "--solvers", "0")["system"]
        self.assertEqual(self.data("alpha.png", "--solvers", "0")["system"], plain)
        self.assertAlmostEqual(self.data("deep.png", "--solvers", "0")["system"]["startResidual"], plain["startResidual"], places=3)

    @NEEDS_VIPS
    def test_a_photo(self):
        photo = ROOT / "examples" / "photos" / "rocket.jpg"
        data = self.data(photo, "--solvers", "CBB", "--size", "64")
        self.assertEqual(data["picture"], {"name": "rocket.jpg", "width": 640, "height": 427, "x": 288, "y": 181, "usedWidth": 64, "usedHeight": 64})
        self.assertEqual(data["solvers"][0]["status"], "converged")


if __name__ == "__main__":
    unittest.main()
