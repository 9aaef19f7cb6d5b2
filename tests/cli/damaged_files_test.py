"""Files with flipped, lost and doubled bytes: read or refused in one line, never half a result."""

import random
import unittest

from cli_support import HAVE_VIPS, KEEP, FolderCase, run, samples, write_netpbm

ROUNDS = 25


def mutated(data, chance):
    data = bytearray(data)
    for _ in range(chance.randint(1, 8)):
        at = chance.randrange(len(data))
        kind = chance.randrange(4)
        if kind == 0:
            data[at] = chance.randrange(256)
        elif kind == 1:
            del data[at : at + chance.randint(1, 40)]
        elif kind == 2:
            data[at:at] = data[at : at + chance.randint(1, 40)]
        else:
            data[at : at + 4] = chance.choice([b"\xff\xff\xff\xff", b"\0\0\0\0", b"\x7f\xff\xff\xff"])
        if not data:
            data = bytearray(b"\0")
    return bytes(data)


class DamagedFiles(FolderCase):
    def test_mutations(self):
        chance = random.Random(20)
        write_netpbm(self.folder / "source.ppm", 24, 20, samples(24, 20, 3))
        endings = ["ppm", "bmp"] + (["png", "jpg", "tif", "webp"] if HAVE_VIPS else [])
        for ending in endings:
            self.check((0, "", ""), "restore", "source.ppm", f"good.{ending}", "-q", *KEEP)
            good = (self.folder / f"good.{ending}").read_bytes()
            for turn in range(ROUNDS):
                bad = mutated(good, chance)
                name = f"bad.{ending}"
                (self.folder / name).write_bytes(bad)
                before = self.names()
                code, out, error = run("restore", name, "out.bmp", "-q", cwd=self.folder)
                with self.subTest(ending=ending, turn=turn, start=bad[:60].hex()):
                    self.assertIn(code, (0, 3))
                    self.assertEqual(out, "")
                    if code == 0:
                        self.assertEqual(error, "")
                        data = (self.folder / "out.bmp").read_bytes()
                        self.assertEqual(int.from_bytes(data[2:6], "little"), len(data))
                        (self.folder / "out.bmp").unlink()
                    else:
                        self.assertRegex(error, r"^orv: (bad|out)\.\w+: [^\n]+\n$")
                    self.assertEqual(self.names(), before)


if __name__ == "__main__":
    unittest.main()
