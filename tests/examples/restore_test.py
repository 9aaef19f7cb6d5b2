"""What the example hosts write and print for pictures that are in order."""

import math
import struct
import unittest

from examples_support import COMMANDS, LIBRARY, NEEDS_PYTHON_HOST, PROGRESS, HostCase, bmp, noise, photo
from examples_support import restored, run, told


def psnr(first, second):
    squares = sum((a - b) * (a - b) for a, b in zip(first, second))
    return 10 * math.log10(255 * 255 * len(first) / squares)


@NEEDS_PYTHON_HOST
class Restore(HostCase):
    def check(self, width, height, pixels, source, after):
        """Every host turns the source into a plain BMP of the pixels after."""
        self.write("in.bmp", source)
        for host in COMMANDS:
            with self.subTest(host=host, width=width, height=height):
                code, out, error = run(host, "in.bmp", "out.bmp", cwd=self.folder)
                self.assertEqual(error, PROGRESS)
                self.assertEqual(out, f"in.bmp: {width} x {abs(height)} pixels\n" + told("out.bmp", pixels, after))
                self.assertEqual(code, 0)
                self.assertEqual(self.read("out.bmp"), bmp(width, height, after))
                self.assertEqual(self.names(), ["in.bmp", "out.bmp"])
                (self.folder / "out.bmp").unlink()

    def test_photo_in_both_row_orders(self):
        width, height, pixels = photo("chelsea-noisy")
        after = restored(width, height, pixels)
        self.assertEqual(width * 3 % 4, 1)
        self.check(width, height, pixels, bmp(width, height, pixels), after)
        self.check(width, -height, pixels, bmp(width, -height, pixels), after)

    def test_photo_comes_nearer_to_the_one_without_noise(self):
        for name, gain in (("chelsea", 8), ("coffee", 5)):
            clean = photo(name)[2]
            width, height, noisy = photo(name + "-noisy")
            with self.subTest(name=name):
                self.assertGreater(psnr(clean, restored(width, height, noisy)), psnr(clean, noisy) + gain)

    def test_every_padding_and_the_smallest_pictures(self):
        for width, height in ((1, 1), (2, 3), (3, -2), (4, 5), (5, -7), (6, 1), (7, 4), (64, -33)):
            pixels = noise(width * abs(height) * 3)
            self.check(width, height, pixels, bmp(width, height, pixels), restored(width, abs(height), pixels))

    def test_longer_headers_gaps_and_fields_that_nobody_needs(self):
        width, height = 9, 6
        pixels = noise(width * height * 3, seed=2)
        after = restored(width, height, pixels)
        unused = [(2, "I", 0), (34, "I", 0), (46, "I", 2), (50, "I", 2)]
        for source in (
            bmp(width, height, pixels, info_size=124),
            bmp(width, height, pixels, info_size=52, gap=b"12345"),
            bmp(width, height, pixels, unused, gap=bytes(8), tail=b"tail"),
        ):
            self.check(width, height, pixels, source, after)

    def test_output_may_exist_and_be_the_input(self):
        pixels = noise(8 * 8 * 3)
        source, result = bmp(8, 8, pixels), bmp(8, 8, restored(8, 8, pixels))
        for host in COMMANDS:
            with self.subTest(host=host):
                self.write("in.bmp", source)
                self.write("out.bmp", b"old")
                self.assertEqual(run(host, "in.bmp", "out.bmp", cwd=self.folder)[0], 0)
                self.assertEqual(self.read("out.bmp"), result)
                self.assertEqual(run(host, "in.bmp", "in.bmp", cwd=self.folder)[0], 0)
                self.assertEqual(self.read("in.bmp"), result)
                self.assertEqual(self.names(), ["in.bmp", "out.bmp"])

    def test_row_order_is_kept_and_not_undone(self):
        pixels = noise(5 * 4 * 3)
        self.write("down.bmp", bmp(5, -4, pixels))
        self.write("up.bmp", bmp(5, 4, pixels))
        for host in COMMANDS:
            with self.subTest(host=host):
                for name in ("down", "up"):
                    self.assertEqual(run(host, f"{name}.bmp", f"{name}-{host}.bmp", cwd=self.folder)[0], 0)
                down, up = self.read(f"down-{host}.bmp"), self.read(f"up-{host}.bmp")
                self.assertEqual(struct.unpack_from("<i", down, 22), (-4,))
                self.assertEqual(struct.unpack_from("<i", up, 22), (4,))
                self.assertEqual(down[54:], up[54:])


class Usage(HostCase):
    def test_wrong_number_of_arguments(self):
        for host in COMMANDS:
            for arguments in ((), ("one",), ("one", "two", "three")):
                with self.subTest(host=host, arguments=arguments):
                    code, out, error = run(host, *arguments, cwd=self.folder)
                    self.assertEqual((code, out), (2, ""))
                    self.assertRegex(error, r"^usage: restore_bmp .*IN\.bmp OUT\.bmp\n")
                    self.assertEqual(self.names(), [])

    @NEEDS_PYTHON_HOST
    def test_library_of_the_python_host(self):
        self.write("in.bmp", bmp(3, 3, noise(27)))
        self.write("text.so", b"no library")
        self.assertEqual(run("python", "--library", LIBRARY, "in.bmp", "out.bmp", cwd=self.folder)[0], 0)
        (self.folder / "out.bmp").unlink()
        for name in ("./missing.so", "./text.so"):
            code, out, error = run("python", "--library", name, "in.bmp", "out.bmp", cwd=self.folder)
            self.assertEqual((code, out), (1, ""))
            self.assertRegex(error, rf"^restore_bmp: cannot load the library: {name}: [^\n]+\n$")
        self.assertEqual(self.names(), ["in.bmp", "text.so"])


if __name__ == "__main__":
    unittest.main()
