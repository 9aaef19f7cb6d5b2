#!/usr/bin/env python3
"""Checks the reference that Doxygen made of the public headers.

Usage: scripts/check_reference.py DOXYFILE FOLDER

FOLDER holds the html and xml that DOXYFILE, which CMake wrote, has led to. Every function has to have
a description of itself, of each argument and of its result, every macro and every field of the bitmap
header one of its own. Then headers are spoilt in a folder of their own, and Doxygen has to fail each
time. Quiet but for failures; the last line is the count.
"""

import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path
from xml.etree import ElementTree

ROOT = Path(__file__).resolve().parent.parent
HEADERS = ROOT / "include" / "orv"
FUNCTION_COUNT = 16

# What is spoilt, in which header: a piece that stands there once, and what takes its place.
DAMAGES = (
    ("an argument without description", "orv.h",
     " * @param fidelity          weight of the pull toward the source, 0 (none) and up; has to be finite\n", ""),
    ("a description without argument", "orv.h", "@param lambda ", "@param lamda "),
    ("a result without description", "orv.h",
     "@return a new handle with the size of source, or null when either handle is null.", ""),
    ("a constant without description", "orv_constants.h", '/**< "SYMMLQ" */', ""),
    ("a field without description", "orv.h", "/**< has to be 24 */", ""),
)


class Count:
    """What was checked."""

    passed = 0
    failed = 0

    def check(self, name, good):
        if good:
            self.passed += 1
        else:
            self.failed += 1
            print(f"reference: {name}: FAILED")


def text_of(element):
    """All words of an element; an absent one has none."""
    return "" if element is None else " ".join("".join(element.itertext()).split())


def members_of(folder, kind):
    """The documented members of a kind, by name."""
    found = {}
    for page in (folder / "xml").glob("*.xml"):
        for member in ElementTree.parse(page).iter("memberdef"):
            if member.get("kind") == kind:
                found[text_of(member.find("name"))] = member
    return found


def described_arguments(member):
    """The names of the arguments that have a text."""
    return {
        text_of(name)
        for item in member.iter("parameteritem") if text_of(item.find("parameterdescription"))
        for name in item.iter("parametername")
    }


def is_described(member):
    return bool(text_of(member.find("briefdescription")) or text_of(member.find("detaileddescription")))


def check_function(count, name, members):
    member = members.get(name)
    if member is None:
        count.check(f"{name} is there", False)
        return
    declared = {text_of(argument.find("declname")) for argument in member.findall("param")}
    missing = declared ^ described_arguments(member)
    count.check(f"{name}: arguments {sorted(missing)}", not missing)
    result = [part for part in member.iter("simplesect") if part.get("kind") == "return" and text_of(part)]
    wanted = 0 if text_of(member.find("type")) == "void" else 1
    count.check(f"{name}: sentence and result", is_described(member) and len(result) == wanted)


def check_macros(count, folder):
    members = members_of(folder, "define")
    for header in sorted(HEADERS.glob("*.h")):
        names = set(re.findall(r"^\s*#define (ORV_\w+)", header.read_text(encoding="utf-8"), re.MULTILINE))
        names.discard("ORV_" + header.name.upper().replace(".", "_"))  # the guard
        bare = sorted(name for name in names if name not in members or not is_described(members[name]))
        count.check(f"{header.name}: {len(names)} macros, without description {bare}", names and not bare)


def check_pages(count, folder, functions):
    page = (folder / "html" / "index.html").read_text(encoding="utf-8")
    missing = [name for name in functions if f">{name}()</a>" not in page]
    count.check(f"main page: no way to {missing}", not missing)
    fields = [name for name, member in members_of(folder, "variable").items() if is_described(member)]
    count.check("bitmap header: eleven fields", len(fields) == 11)


def fails_when_spoilt(doxyfile, header, piece, place):
    """Whether Doxygen refuses headers of which one is spoilt."""
    with tempfile.TemporaryDirectory() as folder:
        spoilt = Path(folder) / "orv"
        shutil.copytree(HEADERS, spoilt)
        text = (spoilt / header).read_text(encoding="utf-8")
        if text.count(piece) != 1:
            return False
        (spoilt / header).write_text(text.replace(piece, place), encoding="utf-8")
        configuration = doxyfile.read_text(encoding="utf-8")
        configuration += f"\nINPUT = {spoilt}\nOUTPUT_DIRECTORY = {folder}\nGENERATE_XML = NO\n"
        done = subprocess.run(["doxygen", "-"], input=configuration, capture_output=True, text=True)
        return done.returncode != 0 and header in done.stderr


def main():
    doxyfile, folder = map(Path, sys.argv[1:3])
    header = (HEADERS / "orv.h").read_text(encoding="utf-8")
    functions = re.findall(r"^ORV_EXPORT [\w* ]*?\b(\w+)\(", header, re.MULTILINE)
    count = Count()
    count.check("sixteen functions", len(functions) == FUNCTION_COUNT)
    members = members_of(folder, "function")
    for name in functions:
        check_function(count, name, members)
    check_macros(count, folder)
    check_pages(count, folder, functions)
    for name, *damage in DAMAGES:
        count.check(f"Doxygen takes {name}", fails_when_spoilt(doxyfile, *damage))
    print(f"{count.passed} passed, {count.failed} failed")
    sys.exit(1 if count.failed else 0)


if __name__ == "__main__":
    main()
