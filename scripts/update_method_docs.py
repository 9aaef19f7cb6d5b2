#!/usr/bin/env python3
"""Writes the parameter tables of docs/methods/*.md from the tool's own catalogue.

    scripts/update_method_docs.py build/user/tools/orv/orv           rewrites the tables
    scripts/update_method_docs.py build/user/tools/orv/orv --check   fails when one is out of date

A table stands between the lines <!-- parameters --> and <!-- end -->; `orv methods --json` is its
source, so a parameter is described once, in the code.
"""

import argparse
import json
import os
import re
import subprocess
import sys

from source_tree import ROOT, report

BLOCK = re.compile(r"(<!-- parameters -->\n).*?(<!-- end -->)", re.DOTALL)


def plain(number):
    return f"{number:g}"


def takes(parameter):
    """Returns what the parameter takes, in words."""
    if parameter["kind"] == "flag":
        return "flag"
    if parameter["kind"] == "choice":
        if len(parameter["choices"]) > 10:
            return "a name or number"
        return ", ".join(f"`{choice['name']}`" for choice in parameter["choices"])
    unit = parameter.get("unit", "")
    return f"{plain(parameter['from'])} to {plain(parameter['to'])} {unit}".strip()


def default(parameter):
    value = parameter["default"]
    if isinstance(value, bool):
        return "on" if value else "off"
    return f"`{value}`" if isinstance(value, str) else plain(value)


def effect(parameter):
    """Returns what the parameter does, and what a larger number does."""
    larger = parameter.get("larger", "")
    return parameter["help"] + (f"; larger {larger}" if larger else "")


def cell(text):
    return text.replace("|", "\\|")


def tables(method):
    """Returns the table of all parameters and one table for each choice of a few names."""
    lines = ["| Parameter | Takes | Default | What it does |", "|---|---|---|---|"]
    for parameter in method["parameters"]:
        fields = (f"`--{parameter['name']}`", takes(parameter), default(parameter), effect(parameter))
        lines.append("| " + " | ".join(cell(field) for field in fields) + " |")
    for parameter in method["parameters"]:
        choices = parameter.get("choices", [])
        if not choices or len(choices) > 10:
            continue
        lines += ["", f"| `--{parameter['name']}` | Meaning |", "|---|---|"]
        lines += [f"| `{choice['name']}` | {cell(choice['help'])} |" for choice in choices]
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("tool")
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    listing = subprocess.run(
        [arguments.tool, "methods", "--json"], check=True, capture_output=True, text=True
    ).stdout
    problems = []
    for method in json.loads(listing):
        path = os.path.join(ROOT, "docs", "methods", method["name"] + ".md")
        if not os.path.exists(path):
            problems.append(f"docs/methods/{method['name']}.md is missing")
            continue
        with open(path, encoding="utf-8") as file:
            before = file.read()
        after = BLOCK.sub(lambda m: m.group(1) + tables(method) + m.group(2), before)
        if after == before and tables(method) in before:
            continue
        if arguments.check:
            problems.append(f"docs/methods/{method['name']}.md is not what the catalogue says")
            continue
        with open(path, "w", encoding="utf-8") as file:
            file.write(after)
    sys.exit(report("method docs", problems))


if __name__ == "__main__":
    main()
