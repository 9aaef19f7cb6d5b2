#!/usr/bin/env python3
"""Writes the measured table of docs/solvers.md by running every solver on a sample photo.

    scripts/update_solver_docs.py build/user/tools/orv/orv           rewrites the table
    scripts/update_solver_docs.py build/user/tools/orv/orv --check   fails when it is out of date

The table stands between the lines <!-- solvers --> and <!-- end -->. Iterations, errors and the
words are the same on every machine; times are ratios within one run and are not checked.
"""

import argparse
import json
import os
import re
import statistics
import subprocess
import sys
import tempfile

from source_tree import ROOT, report

PAGE = os.path.join("docs", "solvers.md")
PHOTO = os.path.join("examples", "photos", "chelsea-noisy.png")
BLOCK = re.compile(r"(<!-- solvers -->\n).*?(<!-- end -->)", re.DOTALL)
TIME_COLUMNS = (5, 8)
CG = 7


def study(tool, scheme):
    """Returns the report of all solvers on one scheme's systems, by id."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "report.json")
        command = [tool, "solve", PHOTO, "--scheme", scheme, "-o", path, "--quiet"]
        subprocess.run(command, check=True, cwd=ROOT, stdout=subprocess.DEVNULL)
        with open(path, encoding="utf-8") as file:
            data = json.load(file)
    return {solver["id"]: solver for solver in data["solvers"]}


def measured(tool, scheme, studies):
    """Returns one report with the median time over that of CG of several studies."""
    reports = [study(tool, scheme) for _ in range(studies)]
    for number, solver in reports[0].items():
        if solver["status"] != "skipped":
            ratios = [report[number]["seconds"] / report[CG]["seconds"] for report in reports]
            solver["ratio"] = statistics.median(ratios)
    return reports[0]


def short(value):
    """Returns a number with two digits, large ones up to 100,000 without an exponent."""
    rounded = float(f"{value:.2g}")
    return f"{rounded:.0f}" if 10 <= rounded < 1e5 else f"{rounded:.2g}"


def error_text(value):
    """Returns an error in grey levels with two digits; what float vectors can't resolve as 0."""
    if value is None:
        return "no number"
    return "below 0.001" if value < 0.001 else short(value)


def cells(solver):
    """Returns the status, the largest error and the time over that of CG."""
    if solver["status"] == "skipped":
        return ["left out", "", ""]
    status = solver["status"]
    if status == "converged":
        status = f"{solver['iterations']} iterations" if solver["iterations"] else "direct"
    return [status, error_text(solver["differenceMax"]), f"{short(solver['ratio'])}"]


def table(tool, studies):
    tool = os.path.abspath(tool)
    plane, rows = measured(tool, "2DSemi", studies), measured(tool, "AOS", studies)
    lines = [
        "| id | Solver | Plane | Error | Time | Rows | Error | Time |",
        "|---|---|---|---|---|---|---|---|",
    ]
    for number, solver in sorted(plane.items()):
        fields = [str(number), solver["name"]]
        fields += cells(solver)
        fields += cells(rows[number])
        lines.append("| " + " | ".join(fields) + " |")
    return "\n".join(lines) + "\n"


def without_times(page):
    """Returns the rows of the table as cells, those of the times left out."""
    rows = [line.split("|") for line in BLOCK.search(page).group().splitlines()]
    return [[cell for i, cell in enumerate(row) if i not in TIME_COLUMNS] for row in rows]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("tool")
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    path = os.path.join(ROOT, PAGE)
    with open(path, encoding="utf-8") as file:
        before = file.read()
    # A check doesn't look at the times.
    rows = table(arguments.tool, studies=1 if arguments.check else 5)
    after = BLOCK.sub(lambda match: match.group(1) + rows + match.group(2), before)
    problems = []
    if arguments.check:
        if without_times(after) != without_times(before):
            problems.append(f"{PAGE} is not what the solvers do")
    else:
        with open(path, "w", encoding="utf-8") as file:
            file.write(after)
    sys.exit(report("solver docs", problems))


if __name__ == "__main__":
    main()
