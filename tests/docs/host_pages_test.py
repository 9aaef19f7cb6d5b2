#!/usr/bin/env python3
"""The pages for host developers, docs/hosts.md and docs/hosts/exports.md, against the library.

ORV_SOURCE is the tree, ORV_LIBRARY the shared library, ORV_CC the C compiler.
"""

import _ctypes
import ctypes
import ctypes.util
import os
import random
import re
import shlex
import statistics
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["ORV_SOURCE"])
sys.path.insert(0, str(SOURCE / "scripts"))

from measure_host_memory import as_c  # noqa: E402

LIBRARY = Path(os.environ["ORV_LIBRARY"])
PROGRAMS_PAGE = SOURCE / "docs" / "hosts.md"
CONTRACT_PAGE = SOURCE / "docs" / "hosts" / "exports.md"

DIFFUSION = (2.0, 5, 0.7, 10.0)

# Restorations, and whether they treat the three channels alike. Colouring is not among them: no two calls agree.
CHANNEL_CALLS = [
    (("ORVFastRestoration", "AOS", 0, 1, *DIFFUSION, "PM", 0, 0), False),
    (("ORVFastRestoration", "AOS", 0, 1, 2.0, 5, 0.05, 10.0, "PM", 0, 0), True),
    (("ORVFastDenoiser", "AOS", 0, 1, 2.0, 2, 0.7, 10.0, 0.1, "VAR", 0, 0), False),
    (("ORVFastDenoiser", "AOS", 0, 1, 2.0, 2, 0.05, 10.0, 0.1, "VAR", 0, 0), True),
    (("ORVIFAosBarashOp", 1, 3, 0.1, 0.5, 1.0, 10.0, False, False), True),
    (("ORVIFVanVieltBlurringIirOp", 2.0), True),
    (("ORVIHomomorphicOp", 2.0, 8), True),
    (("ORVRetinex", 2.0, 0.0001, 0.1, 3), True),
    (("ORVIShockOp", 1, 2, 0.1), True),
    (("ORVISusanRestoration", 1, 20.0, 3.0), True),
    (("ORVWaveletDenoising", "SureShrink", -1, 0), True),
    (("ORVISimpleColorTranfer", "image"), False),
]

# The calls of the table of progress values, by the name of their row.
PROGRESS_CALLS = {
    "`ORVFastRestoration`, `AOS`, 1 iteration": ("ORVFastRestoration", "AOS", 0, 1, *DIFFUSION, "PM", 0, 0),
    "`ORVFastRestoration`, `AOS`, 3 iterations": ("ORVFastRestoration", "AOS", 0, 3, *DIFFUSION, "PM", 0, 0),
    "`ORVFastRestoration`, `LOD`, 1 iteration": ("ORVFastRestoration", "LOD", 0, 1, *DIFFUSION, "PM", 0, 0),
    "`ORVFastDenoiser`, `AOS`, 1 iteration": ("ORVFastDenoiser", "AOS", 0, 1, *DIFFUSION, 0.1, "VAR", 0, 0),
    "`ORVIFAosBarashOp`, 1 iteration": ("ORVIFAosBarashOp", 1, 3, 0.1, 0.5, 1.0, 10.0, False, False),
    "`ORVIFAosBarashOp`, 3 iterations": ("ORVIFAosBarashOp", 3, 3, 0.1, 0.5, 1.0, 10.0, False, False),
    "`ORVIFAosBarashOp`, 10 iterations": ("ORVIFAosBarashOp", 10, 3, 0.1, 0.5, 1.0, 10.0, False, False),
    "`ORVIHomomorphicOp`, mode 8": ("ORVIHomomorphicOp", 2.0, 8),
    "`ORVIHomomorphicOp`, mode 1": ("ORVIHomomorphicOp", 2.0, 1),
    "`ORVISusanRestoration`, 1 pass": ("ORVISusanRestoration", 1, 20.0, 3.0),
    "`ORVISusanRestoration`, 3 passes": ("ORVISusanRestoration", 3, 20.0, 3.0),
    "`ORVISimpleColorTranfer`": ("ORVISimpleColorTranfer", "image"),
    "`ORVIColorToGreyTranfertOp`": ("ORVIColorToGreyTranfertOp", "image"),
    "`ORVIFVanVieltBlurringIirOp`": ("ORVIFVanVieltBlurringIirOp", 2.0),
    "`ORVRetinex`": ("ORVRetinex", 2.0, 0.1, 0.1, 3),
    "`ORVIShockOp`": ("ORVIShockOp", 1, 2, 0.1),
    "`ORVWaveletDenoising`, `SureShrink`": ("ORVWaveletDenoising", "SureShrink", -1, 0),
}


def blocks_of(page, language):
    """The code blocks of a language."""
    return re.findall(rf"^```{language}\n(.*?)^```$", page.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)


def commands_of(page):
    """The command lines, from blocks and from sentences."""
    text = page.read_text(encoding="utf-8")
    return re.findall(r"^cc .*$", text, re.MULTILINE) + re.findall(r"`(cc [^`]*)`", text)


def declarations():
    """Names and argument names of the functions of the header."""
    header = (SOURCE / "include" / "orv" / "orv.h").read_text(encoding="utf-8")
    for name, arguments in re.findall(r"^ORV_EXPORT [\w* ]*?\b(\w+)\(([^)]*)\);", header, re.MULTILINE):
        yield name, [argument.split()[-1].lstrip("*") for argument in arguments.split(",")]


class Loaded:
    """The library, loaded anew."""

    def __init__(self):
        self.orv = ctypes.CDLL(str(LIBRARY))
        for name, arguments in declarations():
            if name.startswith(("ConvertORV", "ORV", "GetORVImageData")):
                getattr(self.orv, name).restype = ctypes.c_void_p

    def image(self, width, height, pixels=None):
        """A handle with these pixels or with noise."""
        header = struct.pack("<IiiHH6I", 40, width, height, 1, 24, 0, 0, 0, 0, 0, 0)
        if pixels is None:
            pixels = random.Random(1).randbytes((3 * width + 3) // 4 * 4 * height)
        return ctypes.c_void_p(self.orv.ConvertORVImage(header, pixels))

    def call(self, image, name, *arguments):
        result = getattr(self.orv, name)(image, *(as_c(argument, image) for argument in arguments))
        return ctypes.c_void_p(result)

    def close(self):
        _ctypes.dlclose(self.orv._handle)


class Programs(unittest.TestCase):
    """The programs of the page, compiled with the command of the page."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        (self.folder / "orv.pc").write_text(
            f"Name: orv\nDescription: of this build\nVersion: 0\n"
            f"Cflags: -I{SOURCE}/include\nLibs: -L{LIBRARY.parent} -lorv\n", encoding="utf-8")
        self.environment = {**os.environ, "PKG_CONFIG_PATH": str(self.folder),
                            "LD_LIBRARY_PATH": str(LIBRARY.parent)}

    def run_program(self, name):
        """Compiles the program of that name, warnings being errors, and runs it."""
        programs = [block for block in blocks_of(PROGRAMS_PAGE, "c") if block.startswith(f"/* {name}.c:")]
        self.assertEqual(len(programs), 1)
        (self.folder / f"{name}.c").write_text(programs[0], encoding="utf-8")
        commands = [line for line in commands_of(PROGRAMS_PAGE) if f" {name}.c " in line]
        self.assertEqual(len(commands), 1)
        strict = f"{shlex.quote(os.environ['ORV_CC'])} -std=c99 -Wall -Wextra -Werror "
        command = commands[0].replace("cc ", strict, 1)
        if "&&" not in command:
            command += f" && ./{name}"
        done = subprocess.run(["sh", "-c", command], cwd=self.folder, env=self.environment, capture_output=True)
        # As text they would lose the returns of the progress line.
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def test_first_program_takes_the_noise_out(self):
        status, output, errors = self.run_program("host")
        self.assertEqual((status, output), (0, ""), errors)
        self.assertTrue(errors.startswith("\r  0 %\r  1 %") and errors.endswith("\rdone \n"), errors)
        picture = (self.folder / "restored.bmp").read_bytes()
        width, height = 301, 200
        self.assertEqual(struct.unpack_from("<2sIIIIiiHH", picture),
                         (b"BM", len(picture), 0, 54, 40, width, height, 1, 24))
        self.assertEqual(len(picture), 54 + 904 * height)

        def samples(left, bottom):
            return [picture[54 + 904 * y + 3 * x + c]
                    for y in range(bottom, bottom + 30) for x in range(left, left + 30) for c in range(3)]

        # Noise from -30 to 30 has a deviation of 17.6.
        for left, bottom, grey in ((20, 20, 70), (135, 85, 190)):
            found = samples(left, bottom)
            self.assertLess(statistics.pstdev(found), 4)
            self.assertLess(abs(statistics.mean(found) - grey), 2)

    def test_loader_finds_the_library_and_says_when_it_is_not_there(self):
        self.assertEqual(self.run_program("loader"), (0, "the library is there\n", ""))
        if ctypes.util.find_library("orv"):
            return  # the system has one, which is found then
        self.environment["LD_LIBRARY_PATH"] = str(self.folder)
        status, output, errors = self.run_program("loader")
        self.assertEqual((status, output), (1, ""))
        self.assertIn("liborv.so.1", errors)


class Contract(unittest.TestCase):
    """What the contract tells of the functions."""

    def test_every_function_has_a_section_with_every_argument(self):
        text = CONTRACT_PAGE.read_text(encoding="utf-8")
        sections = dict(re.findall(r"^## (\w+)\n(.*?)(?=^## )", text, re.MULTILINE | re.DOTALL))
        functions = dict(declarations())
        self.assertEqual(len(functions), 16)
        for name, arguments in functions.items():
            table = "".join(re.findall(r"^\| (`.*?) \|", sections[name], re.MULTILINE))
            self.assertEqual(sorted(re.findall(r"`(\w+)`", table)), sorted(arguments), name)

    def test_progress_values_are_those_of_the_table(self):
        text = CONTRACT_PAGE.read_text(encoding="utf-8").split("\n## Progress\n")[1]
        rows = [[cell.strip() for cell in line.strip("|").split("|")]
                for line in text.splitlines() if line.startswith("| `")][: len(PROGRESS_CALLS)]
        self.assertEqual([row[0] for row in rows], list(PROGRESS_CALLS))
        loaded = Loaded()
        image = loaded.image(400, 300)
        values = []
        callback = ctypes.CFUNCTYPE(None, ctypes.c_int)(values.append)
        for name, *cells in rows:
            values.clear()
            loaded.orv.SetORVCallBack(callback)
            result = loaded.call(image, *PROGRESS_CALLS[name])
            self.assertTrue(result.value, name)
            loaded.orv.DestroyORVImage(result)
            found = [len(values)] + ([values[0], values[-1], max(values)] if values else ["", "", ""])
            self.assertEqual(cells, [str(value) for value in found], name)
        loaded.orv.DestroyORVImage(image)
        loaded.close()

    def test_the_order_of_the_channels_matters_where_the_page_says_so(self):
        side = 32  # rows without padding
        pixels = bytes(random.Random(2).choices(range(1, 256), k=3 * side * side))

        def exchanged(samples):
            """Red and blue in each other's place."""
            return bytes(samples[i - i % 3 + 2 - i % 3] for i in range(len(samples)))

        loaded = Loaded()
        for call, alike in CHANNEL_CALLS:
            results = []
            for source in (pixels, exchanged(pixels)):
                image = loaded.image(side, side, source)
                result = loaded.call(image, *call)
                results.append(ctypes.string_at(loaded.orv.GetORVImageData(result), len(pixels)))
                loaded.orv.DestroyORVImage(result)
                loaded.orv.DestroyORVImage(image)
            self.assertEqual(results[0] == exchanged(results[1]), alike, call)
        loaded.close()

    def test_wavelets_find_the_noise_of_sizes_that_the_page_asks_for(self):
        def left_of_noise(width, height):
            """Deviation of what noise with a deviation of 17.6 on a grey picture becomes."""
            loaded = Loaded()
            stride = (3 * width + 3) // 4 * 4
            noise = bytes(random.Random(3).choices(range(98, 159), k=stride * height))
            image = loaded.image(width, height, noise)
            result = loaded.call(image, "ORVWaveletDenoising", "SureShrink", -1, 3)
            pixels = ctypes.string_at(loaded.orv.GetORVImageData(result), 3 * width * height)
            loaded.orv.DestroyORVImage(result)
            loaded.orv.DestroyORVImage(image)
            loaded.close()
            return statistics.pstdev(pixels)

        self.assertGreater(left_of_noise(100, 60), 14)  # padded
        self.assertLess(left_of_noise(128, 64), 4)

    def test_a_library_that_is_loaded_again_starts_anew(self):
        def two_pictures():
            loaded = Loaded()
            image = loaded.image(24, 24)
            results = [loaded.call(image, "ORVIColorToGreyTranfertOp", "image") for _ in range(2)]
            pictures = [ctypes.string_at(loaded.orv.GetORVImageData(result), 3 * 24 * 24)
                        for result in results]
            for handle in (image, *results):
                loaded.orv.DestroyORVImage(handle)
            loaded.close()
            return pictures

        first = two_pictures()
        self.assertNotEqual(first[0], first[1])
        self.assertEqual(two_pictures(), first)


if __name__ == "__main__":
    unittest.main()
