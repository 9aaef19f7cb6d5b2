#!/usr/bin/env python3
"""Checks that every literature key in the code, such as [PeronaMalik1990], is listed.

The list is docs/references.md. A listed key that nothing names is reported too.
"""

import re
import sys

from source_tree import code_files, read_text, report, tracked_files

REGISTER = "docs/references.md"
CITED = re.compile(r"[\[\"]([A-Z][A-Za-z]+(?:18|19|20)\d\d[a-z]?)[\]\"]")
LISTED = re.compile(r"^\| `(\w+)` \|", re.MULTILINE)


def main():
    register = read_text(REGISTER)
    listed = LISTED.findall(register)
    # A key may explain another one of the list.
    cited = {key: REGISTER for key in re.findall(r"printed as `(\w+)`", register)}
    texts = [p for p in tracked_files() if p.endswith(".md") and p != REGISTER]
    for path in code_files() + texts:
        for key in CITED.findall(read_text(path)):
            cited.setdefault(key, path)

    problems = [f"{REGISTER}: {key} is listed twice" for key in set(listed) if listed.count(key) > 1]
    problems += [f"{path}: [{key}] is not in {REGISTER}" for key, path in cited.items() if key not in listed]
    problems += [f"{REGISTER}: nothing names {key}" for key in listed if key not in cited]
    sys.exit(report("references", sorted(problems)))


if __name__ == "__main__":
    main()
