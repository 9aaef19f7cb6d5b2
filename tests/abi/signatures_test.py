#!/usr/bin/env python3
"""Holds the library against the recorded interface by abidiff, and the guard against changes.

signatures.cmake says what is compared and how a change that is meant is recorded.
"""

import os
import subprocess
import sys
import tempfile
import unittest

SKIPPED = 77


def abidiff(library, headers):
    """What abidiff finds between the record and a library; empty when they agree."""
    done = subprocess.run(
        [os.environ["ORV_ABIDIFF"], "--no-architecture", "--headers-dir2", headers,
         "--drop-private-types", "--exported-interfaces-only", os.environ["ORV_ABI_RECORD"],
         library],
        capture_output=True, text=True, check=False)
    # The lowest bit stands for an error, the next for wrong usage.
    if done.returncode & 3 or done.stderr:
        raise RuntimeError(done.stdout + done.stderr)
    return done.stdout if done.returncode else ""


class Signatures(unittest.TestCase):

    def setUp(self):
        self.source = os.environ["ORV_SOURCE"]
        self.headers = os.path.join(self.source, "include")
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = folder.name

    def write_changed(self, path, old, new):
        """A copy of a file of the project with one text in place of another."""
        with open(os.path.join(self.source, path), encoding="utf-8") as file:
            text = file.read()
        self.assertEqual(text.count(old), 1, f"{old} in {path}")
        copy = os.path.join(self.work, path)
        os.makedirs(os.path.dirname(copy), exist_ok=True)
        with open(copy, "w", encoding="utf-8") as file:
            file.write(text.replace(old, new))
        return copy

    def link(self, sources, version_script, *options):
        library = os.path.join(self.work, "liborv.so")
        subprocess.run(
            [os.environ["ORV_CXX"], "-std=c++20", "-g", "-O0", "-fPIC", "-fvisibility=hidden",
             "-shared", "-o", library, *options, "-I", self.headers,
             "-I", os.path.join(self.source, "src"), *sources, "-Wl,-soname,liborv.so.1",
             "-Wl,--version-script=" + version_script],
            check=True)
        return library

    def test_types_are_those_recorded(self):
        self.assertEqual(abidiff(os.environ["ORV_SIGNATURES"], self.headers), "")

    def test_shared_library_has_the_recorded_names(self):
        self.assertEqual(abidiff(os.environ["ORV_LIBRARY"], self.headers), "")

    def test_changed_parameter_is_seen(self):
        header = self.write_changed("include/orv/orv.h", "ORVIShockOp(void* image, int method",
                                    "ORVIShockOp(void* image, double method")
        changed = self.write_changed("src/exports/filter_exports.cpp",
                                     "ORVIShockOp(void* image, int method",
                                     "ORVIShockOp(void* image, double method")
        include = os.path.dirname(os.path.dirname(header))
        library = self.link([changed], os.path.join(self.source, "src/exports/orv.map"),
                            "-I", include)

        found = abidiff(library, include)

        self.assertIn("parameter 2 of type 'int' changed", found)
        self.assertIn("type name changed from 'int' to 'double'", found)

    def test_dropped_export_is_seen(self):
        names = self.write_changed("src/exports/orv.map", "        ORVRetinex;\n", "")
        source = os.path.join(self.source, "src/exports/filter_exports.cpp")

        found = abidiff(self.link([source], names), self.headers)

        self.assertIn("{ORVRetinex}", found)
        self.assertNotIn("{ORVIShockOp}", found)


if __name__ == "__main__":
    if "ORV_ABIDIFF" not in os.environ:
        print("skipped: abidiff (abigail-tools) is not installed, or a sanitizer adds symbols")
        sys.exit(SKIPPED)
    unittest.main()
