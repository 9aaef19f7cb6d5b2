#!/usr/bin/env python3
"""Tests of the scripts: each check has to see what it is there for."""

import os
import struct
import tempfile
import unittest
import zlib

import check_layers
import check_names
import check_quirks
import check_sizes
import check_words
import make_grey
import png_io
import psnr
import side_by_side
import update_golden

LAYERS = """
base     | src/base/*              |
narrow   | src/images/rgb_*        | images base
images   | src/images/*            | base
algebra  | src/algebra/*           | base
solvers  | src/solvers/*           | algebra base
exports  | src/exports/*           | solvers/list.h narrow images
only     | images/discrete.h       | narrow exports
"""
KNOWN = {"src/images/plane.h", "src/images/discrete.h", "src/solvers/list.h", "src/solvers/cg.h"}


def layer_problems(path, header):
    rules = check_layers.Rules(LAYERS)
    return list(check_layers.problems_of(path, f'#include "{header}"\n', rules, KNOWN))


class Layers(unittest.TestCase):
    def test_listed_layer_is_seen(self):
        self.assertEqual(layer_problems("src/images/rgb_a.cpp", "images/plane.h"), [])

    def test_other_layer_is_refused(self):
        self.assertEqual(len(layer_problems("src/algebra/a.cpp", "images/plane.h")), 1)

    def test_single_header_opens_itself_alone(self):
        self.assertEqual(layer_problems("src/exports/a.cpp", "solvers/list.h"), [])
        self.assertEqual(len(layer_problems("src/exports/a.cpp", "solvers/cg.h")), 1)

    def test_unknown_header_is_refused(self):
        self.assertEqual(len(layer_problems("src/images/a.cpp", "plane.h")), 1)


class Sizes(unittest.TestCase):
    def lengths(self, head, body):
        text = "\n".join([head] + ["    x();"] * body + ["}"]) + "\n"
        return [length for _, length in check_sizes.functions_of(text)]

    def test_function_is_measured_with_its_braces(self):
        self.assertEqual(self.lengths("void f(int a) {", 59), [61])
        self.assertEqual(self.lengths("int C::f() const noexcept {", 3), [5])

    def test_head_over_two_lines_is_found(self):
        self.assertEqual(self.lengths("void f(int a,\n       int b) {", 3), [6])

    def test_loop_and_class_are_no_functions(self):
        self.assertEqual(self.lengths("for (int i = 0; f(i); ++i) {", 3), [])
        self.assertEqual(self.lengths("class A final : public B {", 3), [])


class Words(unittest.TestCase):
    def found(self, path, text):
        return len(list(check_words.code_problems(path, text)))

    def test_owning_words_are_refused_in_the_engine_alone(self):
        self.assertEqual(self.found("src/images/a.cpp", "int* p = new int[3];"), 1)
        self.assertEqual(self.found("src/images/a.cpp", "delete p;"), 1)
        self.assertEqual(self.found("src/base/aligned_block.cpp", "delete p;"), 0)
        self.assertEqual(self.found("tests/a.cpp", "delete p;"), 0)

    def test_comments_strings_and_deleted_functions_pass(self):
        self.assertEqual(self.found("src/a.h", "A(const A&) = delete;  // a new A"), 0)
        self.assertEqual(self.found("src/a.h", 'text("new restored image");'), 0)

    def test_streams_are_refused(self):
        self.assertEqual(self.found("tools/a.cpp", "#include <iostream>"), 1)
        self.assertEqual(self.found("src/a.cpp", "#include <sstream>"), 1)

    def test_library_functions_that_differ_are_refused_in_the_engine_alone(self):
        for name in ("std::exp", "std::log2", "std::powf", "__builtin_atan2", "std::sinh"):
            self.assertEqual(self.found("src/a.cpp", f"y = {name}(x);"), 1, name)
            self.assertEqual(self.found("tests/a.cpp", f"y = {name}(x);"), 0, name)
        for name in ("std::sqrt", "std::floor", "elementaryExp", "expOf"):
            self.assertEqual(self.found("src/a.cpp", f"y = {name}(x);"), 0, name)

    def test_machine_path_is_refused(self):
        path = "/" + "work/a"
        self.assertEqual(len(list(check_words.text_problems("README.md", path))), 1)


class Names(unittest.TestCase):
    def problems(self, *texts):
        return list(check_names.problems_of({f"{i}.h": text for i, text in enumerate(texts)}))

    def test_two_types_of_one_name_are_refused(self):
        view = "namespace orv {\nstruct View {\n    int a;\n};\n}\n"
        kind = "namespace orv {\nclass View final : public Base {\n};\n}\n"
        self.assertEqual(self.problems(view, kind), ["1.h: orv::View is defined in 0.h too"])

    def test_other_namespaces_and_declarations_may_repeat(self):
        texts = [
            "namespace orv {\nstruct View {\n};\n}\n",
            "namespace orv::test {\nstruct View {\n};\n}\n",
            "namespace orv {\nstruct View;\n}\n",
            "namespace orv {\nnamespace {\nvoid f() {\n}\nstruct View {\n};\n}  // namespace\n}\n",
            "namespace orv {\nstruct Owner::View {\n};\n}\n",
        ]
        self.assertEqual(self.problems(*texts), [])


class Golden(unittest.TestCase):
    HEADER = "name,export,size,equal\n"

    def moves(self, before, after):
        before, after = (update_golden.rows(self.HEADER + text) for text in (before, after))
        return list(update_golden.moves(before, after))

    def test_a_case_that_moved_says_where(self):
        self.assertEqual(
            self.moves("a,X,1x1,bits\nb,X,2x2,bits\n", "a,X,1x1,bits\nb,X,null,bits\n"),
            ["b: moved: size", "    size: 2x2 -> null"],
        )

    def test_a_line_without_outcome_is_new(self):
        self.assertEqual(self.moves("a,X\n", "a,X,1x1,bits\n"), ["a: new"])


class Quirks(unittest.TestCase):
    def test_slug_becomes_the_test_name(self):
        self.assertEqual(check_quirks.camel("stab2-by-name"), "Stab2ByName")


def packed_png(rows, channels, width):
    """Returns PNG bytes whose rows are (filter, bytes)."""
    raw = b"".join(bytes([kind]) + body for kind, body in rows)
    colour = png_io.COLOUR_TYPE_OF_CHANNELS[channels]
    header = struct.pack(">IIBBBBB", width, len(rows), 8, colour, 0, 0, 0)
    chunks = ((b"IHDR", header), (b"IDAT", zlib.compress(raw)), (b"IEND", b""))
    return png_io.SIGNATURE + b"".join(png_io._chunk(kind, body) for kind, body in chunks)


class Png(unittest.TestCase):
    def read(self, data):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "a.png")
            with open(path, "wb") as file:
                file.write(data)
            return png_io.read_png(path)

    def test_every_row_filter_is_undone(self):
        rows = [
            (0, b"\x0a\x14\x1e"),
            (1, b"\x01\x02\x03"),  # 1 3 6
            (2, b"\x01\x01\xff"),  # 2 4 5
            (3, b"\x01\x01\x01"),  # 2 4 5
            (4, b"\x01\x01\x01"),  # 3 5 6
        ]

        picture = self.read(packed_png(rows, channels=1, width=3))

        expected = [10, 20, 30, 1, 3, 6, 2, 4, 5, 2, 4, 5, 3, 5, 6]
        self.assertEqual(list(picture.samples), expected)

    def test_damage_is_noticed(self):
        data = bytearray(packed_png([(0, b"\x01\x02\x03")], channels=3, width=1))
        data[45] ^= 1
        with self.assertRaises(ValueError):
            self.read(bytes(data))


class Pictures(unittest.TestCase):
    def test_grey_weighs_the_channels(self):
        colour = png_io.Picture(2, 1, 3, bytearray([255, 0, 0, 10, 20, 30]))

        grey = make_grey.grey(colour)

        self.assertEqual((grey.channels, list(grey.samples)), (1, [76, 18]))
        self.assertIs(make_grey.grey(grey), grey)

    def test_grey_beside_colour_gets_three_channels(self):
        grey = png_io.Picture(1, 1, 1, bytearray([7]))
        colour = png_io.Picture(1, 1, 3, bytearray([1, 2, 3]))

        both = side_by_side.join([grey, colour])

        self.assertEqual(list(both.samples), [7] * 3 + [255] * 24 + [1, 2, 3])

    def test_psnr_of_a_known_difference(self):
        first = png_io.Picture(2, 1, 1, bytearray([10, 10]))
        second = png_io.Picture(2, 1, 1, bytearray([10, 12]))

        # The mean squared difference is 2: 10 log10(65025 / 2).
        self.assertAlmostEqual(psnr.psnr(first, second), 45.1205, places=4)

    def test_pictures_stand_side_by_side(self):
        first = png_io.Picture(1, 2, 1, bytearray([1, 2]))
        second = png_io.Picture(1, 2, 1, bytearray([3, 4]))

        both = side_by_side.join([first, side_by_side.zoom(second, 1)])

        gap = [255] * side_by_side.GAP
        self.assertEqual(list(both.samples), [1] + gap + [3] + [2] + gap + [4])


if __name__ == "__main__":
    unittest.main()
