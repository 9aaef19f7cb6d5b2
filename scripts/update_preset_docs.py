#!/usr/bin/env python3
"""Writes the commands of docs/presets.md and its pictures docs/images/preset-*.png.

    scripts/update_preset_docs.py build/user/tools/orv/orv           both
    scripts/update_preset_docs.py --check                            fails when a command is out of date

A command stands between the lines <!-- preset NAME --> and <!-- end -->; its source is the recipe
tools/orv/recipe/presets/NAME.json. A picture is a part at 100 percent, before on the left, after
on the right. The pictures before are photos of examples/photos and a page of text that are
degraded here, always in the same way. Needs ImageMagick and the font DejaVu Serif.
"""

import argparse
import glob
import json
import os
import random
import re
import subprocess
import sys
import tempfile

from add_noise import add_noise
from png_io import Picture, read_png, write_png
from side_by_side import cut, join
from source_tree import ROOT, report

PRESETS = os.path.join(ROOT, "tools", "orv", "recipe", "presets")
PAGE = os.path.join(ROOT, "docs", "presets.md")
PHOTOS = os.path.join(ROOT, "examples", "photos")
MOST_BYTES = 250_000
WORDS = (
    "A picture is let to diffuse like heat. The conductivity at each place depends on the slope "
    "there: flat regions conduct and lose their noise, steep edges do not and stay sharp. A time "
    "step solves linear systems with the matrix of the right side, and a step of any length is "
    "stable in the schemes that are implicit. Each colour channel diffuses by itself. The border "
    "of one pixel has the diffusivity zero, and corners never change. Regions that are darker "
    "than the paper around them, such as the letters of this page, keep their form."
)


def convert(*words):
    """Runs ImageMagick; the last word is the PNG that it writes, 8 bits and three channels."""
    subprocess.run(["convert", *words[:-1], "-strip", "PNG24:" + words[-1]], check=True)


def noisy(path, sigma, seed):
    write_png(path, add_noise(read_png(path), sigma, seed))


def photo(name):
    return os.path.join(PHOTOS, name)


def night(path):
    """Half the light of a photo at dusk, and noise of 9 grey levels."""
    convert(photo("rocket.jpg"), "-evaluate", "multiply", "0.5", path)
    noisy(path, 9, seed=11)


def portrait(path):
    """Noise of 11 grey levels on a portrait."""
    convert(photo("astronaut.png"), path)
    noisy(path, 11, seed=12)


def scan(path):
    """A photo, slightly soft, under grain of more than a pixel and 11 grey levels."""
    grain = path + ".grain.png"
    write_png(grain, Picture(600, 400, 3, bytearray([128]) * (600 * 400 * 3)))
    noisy(grain, 26, seed=13)
    convert(grain, "-blur", "0x0.7", grain)
    # Adds the grain, whose mean is 128.
    convert(photo("coffee.png"), "-blur", "0x0.8", grain, "-compose", "mathematics",
            "-define", "compose:args=0,1,1,-0.502", "-composite", path)


def specks():
    """Returns light and dark dots as ImageMagick draws them."""
    generator = random.Random(15)
    dots = []
    for _ in range(160):
        x, y = generator.uniform(0, 512), generator.uniform(0, 512)
        radius = generator.choice([0.4, 0.6, 0.9])
        colour = generator.choice(["gray(235)", "gray(235)", "gray(20)"])
        dots.append(f"fill {colour} circle {x:.1f},{y:.1f} {x + radius:.1f},{y:.1f}")
    return " ".join(dots)


def old_print(path):
    """A portrait as a brown print: pale, darker to the bottom, with grain and specks."""
    convert(photo("astronaut.png"), "-colorspace", "Gray", "-blur", "0x0.6", "+level", "20%,82%",
            "(", "-size", "512x512", "gradient:gray(100%)-gray(62%)", ")",
            "-compose", "multiply", "-composite", path)
    noisy(path, 14, seed=14)
    convert(path, "-colorspace", "Gray", "-blur", "0x0.4", "-draw", specks(),
            "-colorspace", "sRGB", "+level-colors", "rgb(44,34,24),rgb(236,214,176)", path)


def document(path):
    """A page of text as a hand-held camera takes it beside a lamp."""
    page = path + ".page.png"
    convert("-background", "white", "-fill", "gray(12%)", "-font", "DejaVu-Serif",
            "-pointsize", "17", "-size", "330x", "caption:" + WORDS,
            "-bordercolor", "white", "-border", "15x12", page)
    picture = read_png(page)
    size = f"{picture.width}x{picture.height}"
    turned = f"{picture.height}x{picture.width}"
    convert(page, "-blur", "0x0.8",
            "(", "-size", size, "gradient:gray(45%)-gray(100%)", ")",
            "-compose", "multiply", "-composite",
            "(", "-size", turned, "gradient:gray(100%)-gray(55%)", "-rotate", "90", ")",
            "-compose", "multiply", "-composite",
            "(", "-size", size, "xc:rgb(245,238,222)", ")",
            "-compose", "multiply", "-composite", path)
    noisy(path, 6, seed=16)


# How the picture before is made, and the part that is shown: x, y, width, height.
PICTURES = {
    "document": (document, (0, 0, 360, 202)),
    "night": (night, (250, 190, 280, 230)),
    "old-print": (old_print, (110, 0, 330, 270)),
    "portrait": (portrait, (120, 10, 250, 210)),
    "scan": (scan, (190, 60, 260, 210)),
}


def option(name, value):
    if isinstance(value, bool):
        return f" --{name}" if value else ""
    return f" --{name} {value}"


def command(recipe):
    """Returns the command that does what the recipe does."""
    steps = []
    for step in recipe["steps"]:
        options = "".join(option(*item) for item in step.get("parameters", {}).items())
        steps.append(step["verb"] + (" IN" if not steps else "") + options)
    return "orv " + " , ".join(steps) + " -o OUT"


def update_page(check):
    """Writes the commands of the page; returns what is wrong."""
    with open(PAGE, encoding="utf-8") as file:
        before = file.read()
    after = before
    problems = []
    for path in sorted(glob.glob(os.path.join(PRESETS, "*.json"))):
        with open(path, encoding="utf-8") as file:
            recipe = json.load(file)
        name = recipe["name"]
        block = re.compile(rf"(<!-- preset {name} -->\n).*?(<!-- end -->)", re.DOTALL)
        if not block.search(after):
            problems.append(f"docs/presets.md has no <!-- preset {name} -->")
        text = f"{recipe['description']}:\n\n```\n{command(recipe)}\n```\n"
        after = block.sub(lambda m: m.group(1) + text + m.group(2), after)
    if after != before and check:
        problems.append("docs/presets.md is not what the recipes say")
    elif after != before:
        with open(PAGE, "w", encoding="utf-8") as file:
            file.write(after)
    return problems


def draw(tool, name, folder):
    """Writes the picture of a preset; returns what is wrong."""
    make, part = PICTURES[name]
    before, after = os.path.join(folder, name + ".png"), os.path.join(folder, "after.png")
    make(before)
    subprocess.run([tool, "run", "--preset", name, before, "-o", after, "--force", "--quiet"],
                   check=True)
    shown = os.path.join(ROOT, "docs", "images", f"preset-{name}.png")
    write_png(shown, join([cut(read_png(path), part) for path in (before, after)]))
    # Better compression, the same samples.
    convert(shown, "-define", "png:compression-level=9", "-define", "png:compression-filter=5",
            shown)
    size = os.path.getsize(shown)
    return [] if size < MOST_BYTES else [f"docs/images/preset-{name}.png has {size} bytes"]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("tool", nargs="?", help="orv; without it no pictures are drawn")
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    problems = update_page(arguments.check)
    if arguments.tool and not arguments.check:
        with tempfile.TemporaryDirectory() as folder:
            for name in PICTURES:
                problems += draw(arguments.tool, name, folder)
    sys.exit(report("preset docs", problems))


if __name__ == "__main__":
    main()
