#!/usr/bin/env python3
"""Checks that every relative link and picture of the documents leads to a tracked file."""

import os
import re
import sys

from source_tree import read_text, report, tracked_files

LINK = re.compile(r"\]\(([^)#\s]+)(?:#[^)]*)?\)")


def problems_of(path, text, known):
    for target in LINK.findall(text):
        if "://" in target:
            continue
        reached = os.path.normpath(os.path.join(os.path.dirname(path), target))
        if reached not in known:
            yield f"{path}: {target} leads nowhere"


def main():
    known = set(tracked_files())
    pages = [path for path in known if path.endswith(".md")]
    problems = [p for path in pages for p in problems_of(path, read_text(path), known)]
    sys.exit(report("links", sorted(problems)))


if __name__ == "__main__":
    main()
