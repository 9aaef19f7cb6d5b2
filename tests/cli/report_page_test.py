"""The page that `orv solve` writes: complete in itself, and its parts fit together.

No browser is needed. The scales and formats run in Node.js where it is installed.
"""

import json
import re
import shutil
import subprocess
import unittest
from html.parser import HTMLParser
from pathlib import Path

FOLDER = Path(__file__).resolve().parents[2] / "tools/orv/report"
PARTS = {
    "@ORV_REPORT_STYLE@": "solver_report.css",
    "@ORV_REPORT_PLOT@": "solver_report_plot.js",
    "@ORV_REPORT_SCRIPT@": "solver_report.js",
}
DATA = "@ORV_REPORT_DATA@"
SVG_SPACE = "http://www.w3.org/2000/svg"
VOID = {"meta", "input", "link", "br", "hr", "img", "path"}

NODE = shutil.which("node")
NEEDS_NODE = unittest.skipUnless(NODE, "Node.js, which parses and runs the script, is not installed")


def part(name):
    return (FOLDER / name).read_text(encoding="utf-8")


def joined():
    page = part("solver_report.html")
    for place, name in PARTS.items():
        page = page.replace(place, part(name))
    return page


class Markup(HTMLParser):
    """Collects ids, references to ids and addresses, and sees to it that tags are closed."""

    def __init__(self):
        super().__init__()
        self.ids, self.references, self.addresses, self.open, self.unlabelled = [], [], [], [], []

    def handle_starttag(self, tag, attributes):
        told = dict(attributes)
        if "id" in told:
            self.ids.append(told["id"])
        for name in ("aria-labelledby", "aria-describedby", "aria-controls", "for"):
            self.references += told.get(name, "").split()
        self.addresses += [value for name, value in attributes if name in ("src", "href", "srcset", "data", "action")]
        if tag == "input" and "label" not in self.open:
            self.unlabelled.append(told)
        if tag not in VOID:
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        self.handle_starttag(tag, attributes)
        if tag not in VOID:
            self.open.pop()

    def handle_endtag(self, tag):
        if tag in VOID:
            return
        if not self.open or self.open.pop() != tag:
            raise AssertionError(f"</{tag}> in line {self.getpos()[0]} closes nothing")


def parsed(text):
    markup = Markup()
    markup.feed(text)
    markup.close()
    return markup


class ReportPage(unittest.TestCase):
    def test_each_place_stands_once(self):
        frame = part("solver_report.html")
        self.assertEqual(sorted(re.findall(r"@ORV\w*@", frame)), sorted([*PARTS, DATA]))
        self.assertEqual(re.findall(r"@ORV\w*@", joined()), [DATA])
        self.assertIn(f'<script type="application/json" id="data">{DATA}</script>', frame)

    def test_page_loads_nothing(self):
        page = joined()
        self.assertEqual(set(re.findall(r"\b(?:https?|ftp|wss?)://[^\s\"'<>)]*", page)), {SVG_SPACE})
        self.assertEqual(parsed(page).addresses, [])
        for word in ("@import", "url(", "fetch(", "XMLHttpRequest", "import(", "WebSocket", "sendBeacon", "eval("):
            self.assertNotIn(word, page.replace("url(#inside)", ""))

    def test_texts_of_the_data_never_become_markup(self):
        for word in ("innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "DOMParser"):
            self.assertNotIn(word, joined())

    def test_parts_end_no_element_early(self):
        for place, name in PARTS.items():
            with self.subTest(name=name):
                self.assertNotRegex(part(name), r"(?i)</(script|style)|<!--")

    def test_markup_is_sound(self):
        markup = parsed(joined())
        self.assertEqual(markup.open, [])
        self.assertEqual(len(markup.ids), len(set(markup.ids)))
        self.assertEqual(set(markup.references) - set(markup.ids), set())
        self.assertEqual(markup.unlabelled, [])

    def test_script_and_markup_use_the_same_ids(self):
        script = part("solver_report_plot.js") + part("solver_report.js")
        ids = set(parsed(part("solver_report.html")).ids)
        used = set(re.findall(r'byId\("(\w+)"\)', script))
        self.assertGreater(len(used), 20)
        self.assertEqual(used - ids, set())
        self.assertEqual(script.count("byId("), len(re.findall(r'byId\("\w+"\)', script)))

    def test_both_themes_set_the_same_colours(self):
        style = part("solver_report.css")
        light, dark = re.findall(r":root \{(.*?)\}", style, re.DOTALL)
        names = [set(re.findall(r"(--\w+):", theme)) for theme in (light, dark)]
        self.assertEqual(names[0], names[1])
        script = part("solver_report_plot.js") + part("solver_report.js")
        self.assertEqual(set(re.findall(r"var\((--\w+)\)", style + script)) - names[0], set())

    def test_colours_stand_out_from_the_panel(self):
        for theme in re.findall(r":root \{(.*?)\}", part("solver_report.css"), re.DOTALL):
            colours = dict(re.findall(r"--(\w+): (#\w{6});", theme))
            for name, least in [(f"c{index}", 3) for index in range(8)] + [
                *((name, 4.5) for name in ("ink", "soft", "accent", "good", "fair", "bad")),
                ("edge", 3),
            ]:
                with self.subTest(name=name, colour=colours[name]):
                    self.assertGreaterEqual(contrast(colours[name], colours["panel"]), least)


def contrast(first, second):
    """The contrast ratio of WCAG 2."""
    lights = []
    for colour in (first, second):
        parts = [int(colour[place : place + 2], 16) / 255 for place in (1, 3, 5)]
        parts = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
        lights.append(0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2])
    return (max(lights) + 0.05) / (min(lights) + 0.05)


# The drawing needs a document only where it draws; sizes come from one element.
SETUP = """
globalThis.document = { getElementById: () => ({ clientWidth: 900 }) };
(0, eval)(require("fs").readFileSync(process.argv[1], "utf8") + `
const point = (limit, residual) => ({ limit, seconds: limit / 1000, residual, differenceMax: residual, differenceMean: residual });
const solver = (values) => ({ status: "limit", groupIndex: 0, curve: values.map((value, index) => point(index + 1, value)) });
data = { system: { tolerance: 1e-4, systems: 1, startResidual: 100, startDifferenceMax: 10, startDifferenceMean: 1 } };
solvers = [solver([50, null, 1e-3]), solver([1e30, 10, 0])];
layOut();
const told = {};
`
"""


@NEEDS_NODE
class ReportScript(unittest.TestCase):
    def run_script(self, code):
        """Runs code after the script, in its scope, and gives the object `told`."""
        program = SETUP + f" + {json.dumps(code)} + '; process.stdout.write(JSON.stringify(told))')"
        command = [NODE, "-e", program, str(FOLDER / "solver_report_plot.js")]
        done = subprocess.run(command, capture_output=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr.decode()), (0, ""))
        return json.loads(done.stdout)

    def test_scripts_parse(self):
        for name in ("solver_report_plot.js", "solver_report.js"):
            done = subprocess.run([NODE, "--check", FOLDER / name], capture_output=True, timeout=60)
            self.assertEqual((done.returncode, done.stderr.decode()), (0, ""))

    def test_numbers(self):
        told = self.run_script(
            "told.numbers = [null, 0, 1234.5, 0.5, 8e-5, 3e38].map((value) => formatNumber(value));"
            "told.powers = [-4, -1, 0, 4, 12].map(power);"
            "told.times = [2, 0.0213, null].map(formatTime);"
        )
        self.assertEqual(told["numbers"], ["not finite", "0", "1,235", "0.5", "8.0e\u22125", "3.0e38"])
        self.assertEqual(told["powers"], ["10\u207b\u2074", "0.1", "1", "10,000", "10\u00b9\u00b2"])
        self.assertEqual(told["times"], ["2 s", "21.3 ms", "\u2013"])

    def test_null_leaves_a_gap_and_zero_stands_on_the_floor(self):
        told = self.run_script("told.y = solvers.map((one) => one.points.map((point) => point.y)); told.frame = plot.frame;")
        gap, zero = told["y"]
        self.assertEqual([value is None for value in gap], [False, False, True, False])
        self.assertEqual(zero[-1], told["frame"]["bottom"])
        self.assertEqual(gap[0], zero[0])

    def test_diverging_curve_widens_the_plot_only_when_asked(self):
        told = self.run_script("told.usual = heightRange(); state.whole = true; told.whole = heightRange();")
        self.assertTrue(told["usual"]["leaves"])
        self.assertLess(told["usual"]["top"], 4)
        self.assertGreater(told["whole"]["top"], 30)
        # The tolerance stays in sight, whatever the residuals.
        self.assertLess(told["usual"]["bottom"], -4)

    def test_time_axis_has_no_start_point(self):
        told = self.run_script('state.axis = "seconds"; layOut(); told.counts = solvers.map((one) => one.points.length);')
        self.assertEqual(told["counts"], [3, 3])

    def test_tolerance_is_summed_over_the_systems(self):
        told = self.run_script("data.system.systems = 256; told.line = referenceValue(); told.text = referenceText();")
        self.assertAlmostEqual(told["line"], 0.0016)
        self.assertEqual(told["text"], "tolerance 0.0001 of each of 256 systems, together 0.0016")

    def test_labels_never_touch(self):
        told = self.run_script(
            "const labels = Array.from({ length: 16 }, () => ({ x: 800, y: 300, width: 60 })); spread(labels);"
            "told.y = labels.map((label) => label.y);"
        )
        steps = [after - before for before, after in zip(told["y"], told["y"][1:])]
        self.assertGreater(min(steps), 13)


if __name__ == "__main__":
    unittest.main()
