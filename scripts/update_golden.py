#!/usr/bin/env python3
"""Rewrites tests/golden/cases.csv from what a library does, and says which cases moved.

Usage: scripts/update_golden.py [LIBRARY] [--runner PROGRAM] [--check]

The library is that of build/release, the runner is looked for beside it. The kernel target is
"generic", whose results are the reference. With --check nothing is written, and the exit code
is 1 when a case has moved. A new case is a line with its first five columns.
"""

import argparse
import csv
import io
import os
import subprocess
import sys

from source_tree import ROOT

TABLE = os.path.join(ROOT, "tests", "golden", "cases.csv")


def rows(text):
    """The cases by name, each a dictionary by column."""
    return {row["name"]: row for row in csv.DictReader(io.StringIO(text))}


def moves(before, after):
    """Yields a line for each case that isn't as before."""
    for name, row in after.items():
        old = before.get(name, {})
        columns = [column for column in row if row[column] != old.get(column)]
        if not columns:
            continue
        if old.get("equal") is None:
            yield f"{name}: new"
            continue
        yield f"{name}: moved: {', '.join(columns)}"
        for column in columns:
            yield f"    {column}: {old.get(column)} -> {row[column]}"


def runner_beside(library):
    build = os.path.dirname(os.path.dirname(os.path.abspath(library)))
    return os.path.join(build, "tests", "golden", "golden_runner")


def written(runner, library):
    """The table as the runner writes it."""
    command = [runner, library, TABLE, "--target", "generic", "--write"]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(f"{result.stderr}{' '.join(command)}: exit code {result.returncode}")
    return result.stdout


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    default = os.path.join(ROOT, "build", "release", "src", "liborv.so")
    parser.add_argument("shared_object", metavar="LIBRARY", nargs="?", default=default)
    parser.add_argument("--runner")
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()

    with open(TABLE, encoding="utf-8", newline="") as file:
        before = file.read()
    after = written(options.runner or runner_beside(options.shared_object), options.shared_object)
    lines = list(moves(rows(before), rows(after)))
    print("\n".join(lines) if lines else "No case has moved.")
    if options.check:
        sys.exit(1 if before != after else 0)
    if before != after:
        with open(TABLE, "w", encoding="utf-8", newline="") as file:
            file.write(after)


if __name__ == "__main__":
    main()
