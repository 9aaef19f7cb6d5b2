#!/usr/bin/env python3
"""What `cmake --install` gives, and whether a stranger's project can use it.

The tree is installed and then moved before anything looks at it, so that whatever remembers where
it was built or installed is found out.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = os.environ["ORV_BUILD"]
SOURCE = os.environ["ORV_SOURCE"]
VERSION = os.environ["ORV_VERSION"]
BUILD_TYPE = os.environ["ORV_BUILD_TYPE"]
CMAKE = os.environ["ORV_CMAKE"]
GENERATOR = os.environ["ORV_GENERATOR"]
COMPILER = os.environ["ORV_CC"]
HERE = os.path.dirname(os.path.abspath(__file__))

LIBRARY = os.environ["ORV_LIBDIR"]
PACKAGE = f"{LIBRARY}/cmake/orv"
RUNTIME = {f"{LIBRARY}/liborv.so.1", f"{LIBRARY}/liborv.so.{VERSION}"}
DEVELOPMENT = {
    "include/orv/orv.h", "include/orv/orv_constants.h", f"{LIBRARY}/liborv.so",
    f"{PACKAGE}/orv-config.cmake", f"{PACKAGE}/orv-config-version.cmake",
    f"{PACKAGE}/orv-targets.cmake",
    f"{PACKAGE}/orv-targets-{BUILD_TYPE.lower()}.cmake",
    f"{LIBRARY}/pkgconfig/orv.pc",
}
TOOL = {
    "bin/orv", "share/man/man1/orv.1", "share/bash-completion/completions/orv",
    "share/zsh/site-functions/_orv", "share/fish/vendor_completions.d/orv.fish",
} if os.environ["ORV_HAS_TOOL"] == "1" else set()


def run(*command, **options):
    """The standard output of a command that has to succeed."""
    done = subprocess.run(command, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(command)}:\n{done.stdout}{done.stderr}")
    return done.stdout


def files_below(folder):
    """All that is no folder, by its path from the folder given."""
    found = set()
    for place, _, names in os.walk(folder):
        found.update(os.path.relpath(os.path.join(place, name), folder) for name in names)
    return found


class InstalledTree(unittest.TestCase):
    """Base of all: a tree that was installed at one place and moved to another."""

    @classmethod
    def setUpClass(cls):
        cls.work = tempfile.mkdtemp(prefix="install-", dir=os.path.join(BUILD, "tests"))
        cls.addClassCleanup(shutil.rmtree, cls.work)
        first = os.path.join(cls.work, "first")
        run(CMAKE, "--install", BUILD, "--prefix", first)
        cls.tree = os.path.join(cls.work, "moved", "tree")
        os.mkdir(os.path.dirname(cls.tree))
        os.rename(first, cls.tree)

    def folder(self, name):
        path = os.path.join(self.work, name)
        os.mkdir(path)
        return path


class Files(InstalledTree):

    def test_tree_holds_these_files_and_no_other(self):
        self.assertEqual(files_below(self.tree), RUNTIME | DEVELOPMENT | TOOL)

    def test_links_lead_from_name_to_soname_to_file(self):
        folder = os.path.join(self.tree, LIBRARY)

        self.assertEqual(os.readlink(f"{folder}/liborv.so"), "liborv.so.1")
        self.assertEqual(os.readlink(f"{folder}/liborv.so.1"), f"liborv.so.{VERSION}")

    def test_headers_are_those_of_the_source(self):
        for name in ("orv/orv.h", "orv/orv_constants.h"):
            with open(os.path.join(self.tree, "include", name), "rb") as installed, \
                    open(os.path.join(SOURCE, "include", name), "rb") as source:
                self.assertEqual(installed.read(), source.read(), name)

    @unittest.skipUnless(BUILD_TYPE == "Release", "debug information names the sources")
    def test_no_file_names_a_folder_of_the_build(self):
        folders = [os.fsencode(os.path.realpath(path)) for path in (SOURCE, BUILD)]
        for name in sorted(files_below(self.tree)):
            with open(os.path.join(self.tree, name), "rb") as file:
                content = file.read()
            for folder in folders + [os.fsencode(os.path.join(self.work, "first"))]:
                self.assertNotIn(folder, content, name)

    def test_library_and_tool_look_for_nothing_beside_the_loaders_path(self):
        for name in RUNTIME | (TOOL & {"bin/orv"}):
            dynamic = run("readelf", "-dW", os.path.join(self.tree, name))
            self.assertNotRegex(dynamic, r"\((RPATH|RUNPATH)\)", name)

    def test_each_component_holds_its_part(self):
        for component, files in (("runtime", RUNTIME), ("development", DEVELOPMENT),
                                 ("tool", TOOL)):
            prefix = os.path.join(self.work, component)
            run(CMAKE, "--install", BUILD, "--prefix", prefix, "--component", component)
            self.assertEqual(files_below(prefix), files, component)

    def test_destdir_goes_before_the_prefix(self):
        staging = os.path.join(self.work, "staging")

        run(CMAKE, "--install", BUILD, "--prefix", "/opt/orv",
            env={**os.environ, "DESTDIR": staging})

        self.assertEqual(files_below(os.path.join(staging, "opt", "orv")),
                         RUNTIME | DEVELOPMENT | TOOL)
        self.assertEqual(os.listdir(staging), ["opt"])


class Consumers(InstalledTree):

    def assert_restored(self, text):
        """The consumer's line: version, size, checksums before and after."""
        match = re.fullmatch(r"(\S+) 33x21 ([0-9a-f]{8}) ([0-9a-f]{8})\n", text)
        self.assertIsNotNone(match, text)
        self.assertEqual(match.group(1), VERSION)
        self.assertNotEqual(match.group(2), match.group(3))

    def test_cmake_project_finds_builds_and_runs(self):
        folder = self.folder("cmake")

        said = run(CMAKE, "-S", os.path.join(HERE, "cmake_consumer"), "-B", folder,
                   "-G", GENERATOR, f"-DCMAKE_C_COMPILER={COMPILER}",
                   f"-DCMAKE_PREFIX_PATH={self.tree}")
        run(CMAKE, "--build", folder)

        self.assertIn(f"found orv {VERSION}\n", said)
        self.assert_restored(run(os.path.join(folder, "consumer")))

    def test_cmake_package_refuses_another_major_version(self):
        major = int(VERSION.split(".", maxsplit=1)[0])
        folder = self.folder("version")
        project = os.path.join(folder, "CMakeLists.txt")
        with open(project, "w", encoding="utf-8") as file:
            file.write("cmake_minimum_required(VERSION 3.16)\nproject(version NONE)\n"
                       f"find_package(orv {major + 1} CONFIG REQUIRED)\n")

        done = subprocess.run([CMAKE, "-S", folder, "-B", folder, "-G", GENERATOR,
                               f"-DCMAKE_PREFIX_PATH={self.tree}"],
                              capture_output=True, text=True, check=False)

        self.assertNotEqual(done.returncode, 0)
        self.assertIn(f"orv-config.cmake, version: {VERSION}", done.stderr)

    @unittest.skipUnless(shutil.which("pkg-config"), "pkg-config is not installed")
    def test_pkg_config_gives_a_command_that_builds_and_runs(self):
        program = os.path.join(self.folder("pkg_config"), "consumer")
        libraries = os.path.join(self.tree, LIBRARY)
        environment = {**os.environ, "CC": COMPILER, "LD_LIBRARY_PATH": libraries,
                       "PKG_CONFIG_PATH": os.path.join(libraries, "pkgconfig")}

        run(os.path.join(HERE, "pkg_config_consumer", "build.sh"),
            os.path.join(HERE, "consumer.c"), program, env=environment)

        self.assert_restored(run(program, env=environment))
        self.assertEqual(run("pkg-config", "--modversion", "orv", env=environment),
                         VERSION + "\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv)
