"""The page that `orv compare` writes: complete in itself, its parts fit together, its script reckons.

No browser is needed. Geometry and texts run in Node.js where it is installed.
"""

import json
import re
import subprocess
import unittest
from pathlib import Path

from report_page_test import NEEDS_NODE, NODE, SVG_SPACE, contrast, parsed

FOLDER = Path(__file__).resolve().parents[2] / "tools/orv/compare"
PARTS = {
    "@ORV_COMPARISON_STYLE@": "comparison.css",
    "@ORV_COMPARISON_VIEW@": "comparison_view.js",
    "@ORV_COMPARISON_SCRIPT@": "comparison.js",
}
PLACES = [f"@ORV_COMPARISON_{place}@" for place in ("BEFORE", "AFTER", "DIFFERENCE", "DATA")]


def part(name):
    return (FOLDER / name).read_text(encoding="utf-8")


def joined():
    page = part("comparison.html")
    for place, name in PARTS.items():
        page = page.replace(place, part(name))
    return page


def script():
    return part("comparison_view.js") + part("comparison.js")


class ComparisonPage(unittest.TestCase):
    def test_places_stand_once_and_in_order(self):
        self.assertEqual(sorted(re.findall(r"@ORV\w*@", part("comparison.html"))), sorted([*PARTS, *PLACES]))
        self.assertEqual(re.findall(r"@ORV\w*@", joined()), PLACES)

    def test_page_loads_nothing(self):
        page = joined()
        self.assertEqual(set(re.findall(r"\b(?:https?|ftp|wss?)://[^\s\"'<>)]*", page)), {SVG_SPACE})
        self.assertEqual(parsed(page).addresses, PLACES[:3])
        for word in ("@import", "url(", "fetch(", "XMLHttpRequest", "import(", "WebSocket", "sendBeacon", "eval("):
            self.assertNotIn(word, page)

    def test_texts_of_the_data_never_become_markup(self):
        for word in ("innerHTML", "outerHTML", "insertAdjacentHTML", "document.write", "DOMParser"):
            self.assertNotIn(word, joined())

    def test_parts_end_no_element_early(self):
        for name in PARTS.values():
            with self.subTest(name=name):
                self.assertNotRegex(part(name), r"(?i)</(script|style)|<!--")

    def test_markup_is_sound(self):
        markup = parsed(joined())
        self.assertEqual(markup.open, [])
        self.assertEqual(len(markup.ids), len(set(markup.ids)))
        self.assertEqual(set(markup.references) - set(markup.ids), set())
        self.assertEqual(markup.unlabelled, [])

    def test_script_and_markup_use_the_same_ids(self):
        ids = set(parsed(part("comparison.html")).ids)
        used = set(re.findall(r'byId\("(\w+)"\)', script()))
        self.assertGreater(len(used), 20)
        self.assertEqual(used - ids, set())

    def test_both_themes_set_the_same_colours(self):
        light, dark = re.findall(r"^ *:root \{\n(.*?)\n *\}$", part("comparison.css"), re.DOTALL | re.MULTILINE)[:2]
        names = [set(re.findall(r"(--\w+):", theme)) for theme in (light, dark)]
        self.assertEqual(names[0], names[1])
        self.assertGreater(len(names[0]), 8)

    def test_variables_are_set(self):
        style = part("comparison.css")
        # Those of the geometry are set by the script.
        known = set(re.findall(r"(--\w+):", style)) | set(re.findall(r'"(--\w+)"', script()))
        self.assertEqual(set(re.findall(r"var\((--\w+)", style)) - known, set())

    def test_colours_stand_out_from_the_panel(self):
        for theme in re.findall(r":root \{(.*?)\}", part("comparison.css"), re.DOTALL)[:2]:
            colours = dict(re.findall(r"--(\w+): (#\w{6});", theme))
            for name, least in [("ink", 4.5), ("soft", 4.5), ("accent", 4.5), ("bad", 4.5), ("edge", 3), ("after", 3)]:
                with self.subTest(name=name, colour=colours[name]):
                    self.assertGreaterEqual(contrast(colours[name], colours["panel"]), least)


# A document of plain objects: each id is one, sizes are those of a stage and a picture.
SETUP = """
const elements = {};
const element = (id) => (elements[id] ||= {
    id, style: { set: {}, setProperty(name, value) { this.set[name] = value; } }, dataset: {}, attributes: {},
    classList: { has: {}, toggle(name, on) { this.has[name] = on; } },
    setAttribute(name, value) { this.attributes[name] = value; },
    clientWidth: 800, clientHeight: 400, naturalWidth: 1000, naturalHeight: 1000,
});
globalThis.document = { getElementById: element, querySelector: () => element("chosen"), querySelectorAll: () => [] };
globalThis.window = { devicePixelRatio: 1, innerHeight: 900 };
const stage = element("stage");
const place = (name) => Number.parseFloat(stage.style.set[name]);
const told = {};
"""


@NEEDS_NODE
class ComparisonScript(unittest.TestCase):
    def run_script(self, code):
        """Runs code after the scripts, in their scope, and gives the object `told`."""
        text = script()
        self.assertTrue(text.endswith("\nstartPage();\n"))
        program = SETUP + text[: -len("startPage();\n")] + code + ";process.stdout.write(JSON.stringify(told))"
        done = subprocess.run([NODE, "-"], input=program.encode(), capture_output=True, timeout=60)
        self.assertEqual((done.returncode, done.stderr.decode()), (0, ""))
        return json.loads(done.stdout)

    def test_picture_fits_and_is_centred(self):
        told = self.run_script("settle(); for (const name of ['--x', '--y', '--w', '--h', '--split']) told[name] = place(name);")
        self.assertEqual(told, {"--x": 200, "--y": 0, "--w": 400, "--h": 400, "--split": 400})

    def test_line_stays_on_the_picture(self):
        told = self.run_script(
            "told.splits = [0, 200, 300, 600, 800].map((x) => { splitAt(x); return [look.split, place('--split')]; });"
            "told.spoken = element('split').attributes['aria-valuetext'];"
        )
        self.assertEqual(told["splits"], [[0, 200], [0, 200], [25, 300], [100, 600], [100, 600]])
        self.assertEqual(told["spoken"], "100 % before, 0 % after")

    def test_full_size_is_one_pixel_of_the_screen(self):
        for dots, width in ((1, 1000), (2, 500)):
            told = self.run_script(f"window.devicePixelRatio = {dots}; zoomTo(1); told.w = place('--w'); told.scale = element('scale').textContent;")
            self.assertEqual((told["w"], told["scale"]), (width, "100 %"))

    def test_zoom_holds_the_point_under_the_pointer(self):
        told = self.run_script(
            "zoomTo(1); const under = () => [(500 - place('--x')) / place('--w'), (150 - place('--y')) / place('--h')];"
            "told.before = under(); zoomTo(3, { x: 500, y: 150 }); told.after = under();"
        )
        for before, after in zip(told["before"], told["after"]):
            self.assertAlmostEqual(before, after, places=9)

    def test_picture_never_leaves_its_pane(self):
        told = self.run_script(
            "zoomTo(2); moveBy(99999, 99999); told.first = [place('--x'), place('--y')];"
            "moveBy(-99999, -99999); told.last = [place('--x'), place('--y')];"
        )
        self.assertEqual(told, {"first": [0, 0], "last": [800 - 2000, 400 - 2000]})

    def test_zoom_steps_end_at_both_ends(self):
        told = self.run_script(
            "for (let i = 0; i < 40; i += 1) zoomBy(1); told.most = look.zoom; for (let i = 0; i < 40; i += 1) zoomBy(-1); told.least = look.zoom;"
        )
        self.assertEqual(told, {"most": 32, "least": 0.05})

    def test_figures_never_read_as_equal(self):
        told = self.run_script(
            "told.shares = [0, 1e-7, 0.5, 0.9999, 1].map(shareText); told.ssim = [0.99999, 1, null].map(ssimText);"
            "told.psnr = [psnrText({ psnr: 31.416 }), psnrText({ psnr: null })]; told.levels = [3, 0.001234, -1.5].map(levelText);"
        )
        self.assertEqual(told["shares"], ["0 %", "0.00001 %", "50.0 %", "99.9 %", "100 %"])
        self.assertEqual(told["ssim"], ["0.9999", "1", "none"])
        self.assertEqual(told["psnr"], ["31.42 dB", "infinite"])
        self.assertEqual(told["levels"], ["3", "0.0012", "\u22121.5" + "0"])

    def test_shares_of_a_histogram(self):
        told = self.run_script(
            "const counts = Array(511).fill(0); counts[255] = 50; counts[257] = 40; counts[250] = 10;"
            "told.shares = [0.5, 0.9, 0.99].map((share) => differenceOfShare(counts, share)); told.reach = reachOf([{ differences: counts }]);"
            "const levels = Array(256).fill(0); levels[10] = 1; levels[200] = 3; told.level = [0.25, 0.5].map((share) => levelOfShare(levels, share));"
        )
        self.assertEqual(told, {"shares": [0, 2, 5], "reach": 8, "level": [10, 200]})


if __name__ == "__main__":
    unittest.main()
