"""Files that are no 24-bit BMP, cut short or absurd: one line that names the value, exit code 1,
and every file as it was. No host is ahead of another: all three say and write the same."""

import os
import random
import unittest

from examples_support import COMMANDS, HostCase, bmp, noise, run

WIDTH, HEIGHT = 7, 5
GOOD = bmp(WIDTH, HEIGHT, noise(WIDTH * HEIGHT * 3))
ROWS = len(GOOD) - 54

# (offset, struct format, value) of a field, and what is said of it.
FIELDS = [
    ((0, "2s", b"PK"), "starts with bytes 50 4b, a BMP with 42 4d"),
    ((0, "2s", b"\x00\xff"), "starts with bytes 00 ff, a BMP with 42 4d"),
    ((2, "I", len(GOOD) + 1), f"is cut short: bfSize is {len(GOOD) + 1}, the file has {len(GOOD)} bytes"),
    ((2, "I", 2**32 - 1), f"is cut short: bfSize is 4294967295, the file has {len(GOOD)} bytes"),
    ((10, "I", 0), f"bfOffBits is 0, but the headers end at 54, the file at {len(GOOD)}"),
    ((10, "I", 53), f"bfOffBits is 53, but the headers end at 54, the file at {len(GOOD)}"),
    ((10, "I", 55), f"is cut short: biSizeImage is {ROWS}, the file has {ROWS - 1} bytes of rows"),
    ((10, "I", len(GOOD)), f"is cut short: biSizeImage is {ROWS}, the file has 0 bytes of rows"),
    ((10, "I", len(GOOD) + 1), f"bfOffBits is {len(GOOD) + 1}, but the headers end at 54, the file at {len(GOOD)}"),
    ((10, "I", 2**32 - 1), f"bfOffBits is 4294967295, but the headers end at 54, the file at {len(GOOD)}"),
    ((14, "I", 0), "biSize is 0, not 40 to 124"),
    ((14, "I", 12), "biSize is 12, not 40 to 124"),
    ((14, "I", 39), "biSize is 39, not 40 to 124"),
    ((14, "I", 124), f"bfOffBits is 54, but the headers end at 138, the file at {len(GOOD)}"),
    ((14, "I", 125), "biSize is 125, not 40 to 124"),
    ((14, "I", 2**32 - 1), "biSize is 4294967295, not 40 to 124"),
    ((18, "i", 0), "biWidth is 0, below 1"),
    ((18, "i", -7), "biWidth is -7, below 1"),
    ((18, "i", -(2**31)), "biWidth is -2147483648, below 1"),
    ((18, "i", 9), f"is cut short: 9 x 5 pixels, but {ROWS} bytes of rows"),
    ((18, "i", 2**31 - 1), f"is cut short: 2147483647 x 5 pixels, but {ROWS} bytes of rows"),
    ((22, "i", 0), "biHeight is 0, no number of rows"),
    ((22, "i", -(2**31)), "biHeight is -2147483648, no number of rows"),
    ((22, "i", 6), f"is cut short: 7 x 6 pixels, but {ROWS} bytes of rows"),
    ((22, "i", -6), f"is cut short: 7 x 6 pixels, but {ROWS} bytes of rows"),
    ((18, "ii", (2**31 - 1, 2**31 - 1)), f"is cut short: 2147483647 x 2147483647 pixels, but {ROWS} bytes of rows"),
    ((18, "ii", (2**30, -(2**31) + 1)), f"is cut short: 1073741824 x 2147483647 pixels, but {ROWS} bytes of rows"),
    ((18, "ii", (65536, 65536)), f"is cut short: 65536 x 65536 pixels, but {ROWS} bytes of rows"),
    ((26, "H", 0), "biPlanes is 0, not 1"),
    ((26, "H", 65535), "biPlanes is 65535, not 1"),
    ((28, "H", 0), "biBitCount is 0, not 24"),
    ((28, "H", 8), "biBitCount is 8, not 24"),
    ((28, "H", 32), "biBitCount is 32, not 24"),
    ((30, "I", 1), "biCompression is 1, not 0"),
    ((30, "I", 2**32 - 1), "biCompression is 4294967295, not 0"),
    ((34, "I", ROWS + 1), f"is cut short: biSizeImage is {ROWS + 1}, the file has {ROWS} bytes of rows"),
]


def changed(field):
    at, form, value = field
    if not isinstance(value, tuple):
        return bmp(WIDTH, HEIGHT, GOOD[54:], [field])
    width, height = value
    return bmp(WIDTH, HEIGHT, GOOD[54:], [(at, "i", width), (at + 4, "i", height)])


class DamagedFiles(HostCase):
    def setUp(self):
        super().setUp()
        self.write("out.bmp", b"what was here before")

    def test_cut_at_every_byte_of_the_headers(self):
        for length in range(54):
            self.write("in.bmp", GOOD[:length])
            self.refused(f"in.bmp: has {length} bytes, the headers of a BMP alone have 54", "in.bmp", "out.bmp")

    def test_cut_in_the_rows(self):
        for length in (54, 55, len(GOOD) // 2, len(GOOD) - 1):
            self.write("in.bmp", GOOD[:length])
            self.refused(
                f"in.bmp: is cut short: bfSize is {len(GOOD)}, the file has {length} bytes", "in.bmp", "out.bmp"
            )

    def test_cut_in_the_rows_with_no_sizes_told(self):
        untold = bmp(WIDTH, HEIGHT, GOOD[54:], [(2, "I", 0), (34, "I", 0)])
        for length in (54, 55, len(GOOD) - 1):
            self.write("in.bmp", untold[:length])
            self.refused(
                f"in.bmp: is cut short: 7 x 5 pixels, but {length - 54} bytes of rows", "in.bmp", "out.bmp"
            )

    def test_every_field(self):
        for field, message in FIELDS:
            with self.subTest(field=field):
                self.write("in.bmp", changed(field))
                self.refused(f"in.bmp: {message}", "in.bmp", "out.bmp")

    def test_no_file_and_no_rights(self):
        self.refused("nothing.bmp: No such file or directory", "nothing.bmp", "out.bmp")
        self.refused(".: Is a directory", ".", "out.bmp")

    def test_mutations_end_alike_in_all_hosts(self):
        chance = random.Random(7)
        for turn in range(40):
            data = bytearray(GOOD)
            for _ in range(chance.randint(1, 3)):
                at = chance.choice([chance.randrange(54), chance.randrange(len(data))])
                size = chance.choice([1, 1, 2, 4])
                data[at : at + size] = chance.choice([b"\xff\xff\xff\xff", b"\0\0\0\0", chance.randbytes(4)])[:size]
            del data[chance.choice([len(data), chance.randrange(len(data))]) :]
            self.write("in.bmp", bytes(data))
            ends = {}
            for host in COMMANDS:
                self.write("out.bmp", b"what was here before")
                ends[host] = (*run(host, "in.bmp", "out.bmp", cwd=self.folder), self.read("out.bmp"))
            with self.subTest(turn=turn, data=bytes(data[:54]).hex()):
                code, out, error, result = ends["c"]
                self.assertIn(code, (0, 1))
                if code == 1:
                    self.assertRegex(error, r"^restore_bmp: in\.bmp: [^\n]+\n$")
                    self.assertEqual((out, result), ("", b"what was here before"))
                for host, end in ends.items():
                    self.assertEqual(end, ends["c"], host)
                self.assertEqual(self.names(), ["in.bmp", "out.bmp"])


class Output(HostCase):
    """Results that cannot be written."""

    def setUp(self):
        super().setUp()
        self.write("in.bmp", GOOD)

    def test_folder_that_is_not_there(self):
        self.refused(
            "no/out.bmp: cannot be written: No such file or directory", "in.bmp", "no/out.bmp", progress=True
        )

    def test_name_of_a_folder(self):
        (self.folder / "out.bmp").mkdir()
        self.refused("out.bmp: cannot be written: Is a directory", "in.bmp", "out.bmp", progress=True)

    @unittest.skipUnless(os.path.exists("/dev/full"), "no /dev/full here")
    def test_full_disk(self):
        self.write("out.bmp", b"what was here before")
        for host in COMMANDS:
            with self.subTest(host=host):
                (self.folder / "out.bmp.part").symlink_to("/dev/full")
                code, _, error = run(host, "in.bmp", "out.bmp", cwd=self.folder)
                self.assertEqual(
                    error.splitlines()[-1], "restore_bmp: out.bmp: cannot be written: No space left on device"
                )
                self.assertEqual(code, 1)
                self.assertEqual(self.names(), ["in.bmp", "out.bmp"])
                self.assertEqual(self.read("out.bmp"), b"what was here before")


if __name__ == "__main__":
    unittest.main()
