#!/usr/bin/env python3
"""Checks that required oddities are written down, tagged and tested, each under one name.

An entry "## some-slug" of docs/quirks.md, a tag "// quirk: some-slug" in src/ and a test
TEST(Quirk, SomeSlug) belong together; none may be without the others. A digit that follows a
hyphen joins the word before it.
"""

import re
import sys

from source_tree import code_files, read_text, report, tracked_files

REGISTER = "docs/quirks.md"
ENTRY = re.compile(r"^## ([a-z0-9-]+)\s*$", re.MULTILINE)
TAG = re.compile(r"//+ quirk: ([a-z0-9-]+)")
TEST = re.compile(r"\bTEST(?:_[FP])?\(\s*Quirk\w*,\s*(\w+)\)")


def camel(slug):
    """some-slug-2 -> SomeSlug2"""
    return "".join(word[:1].upper() + word[1:] for word in slug.split("-"))


def main():
    entries = ENTRY.findall(read_text(REGISTER)) if REGISTER in tracked_files() else []
    tags = {}
    tests = {}
    for path in code_files():
        text = read_text(path)
        if path.startswith("src/"):
            for slug in TAG.findall(text):
                tags.setdefault(slug, path)
        elif path.startswith("tests/"):
            for name in TEST.findall(text):
                tests.setdefault(name, path)

    problems = []
    for slug in sorted({s for s in entries if entries.count(s) > 1}):
        problems.append(f"{REGISTER}: {slug} has two entries")
    for slug in sorted(set(entries)):
        if slug not in tags:
            problems.append(f"{REGISTER}: {slug} has no tag in src/")
        if camel(slug) not in tests:
            problems.append(f"{REGISTER}: {slug} has no TEST(Quirk, {camel(slug)})")
    for slug in sorted(set(tags) - set(entries)):
        problems.append(f"{tags[slug]}: the tag {slug} has no entry in {REGISTER}")
    for name in sorted(set(tests) - {camel(slug) for slug in entries}):
        problems.append(f"{tests[name]}: TEST(Quirk, {name}) has no entry in {REGISTER}")
    sys.exit(report("quirks", problems))


if __name__ == "__main__":
    main()
