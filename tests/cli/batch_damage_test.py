"""Batches with bad files, crashes, and kills at any moment."""

import os
import random
import shutil
import signal
import sys
import time
import unittest

from batch_support import QUICK, SLOW, BatchCase, damage, is_running, picture, slow_picture, wait_until, workers_of
from cli_support import HAVE_VIPS, run

SEED = 20260301


class Damage(BatchCase):
    def test_bad_files_cost_themselves_alone(self):
        self.pictures(5)
        for number, kind in ((1, "truncated"), (2, "empty"), (4, "wrong")):
            damage(self.folder / f"in/{number}.ppm", kind)
        code, out, err = self.batch(*QUICK, "in", "-o", "out", "--jobs", "1")
        formats = "PNG, JPEG, TIFF, WebP, BMP, PPM, PGM" if HAVE_VIPS else "BMP, PPM, PGM"
        self.assertTimed(
            (
                1,
                "batch blur: 2 done, 3 failed, in T; results in out\n",
                "orv: in/1.ppm: is cut short\n"
                "orv: in/2.ppm: is empty\n"
                f"orv: in/4.ppm: is no picture that orv reads ({formats})\n"
                "orv: 3 of 5 pictures failed; --resume tries them again\n",
            ),
            (code, out, err),
        )
        self.assertEqual(sorted(self.tree()), [b"3.ppm", b"5.ppm"])
        listed = (self.folder / "out/.orv/failed.txt").read_text()
        self.assertEqual(listed, "in/1.ppm: is cut short\nin/2.ppm: is empty\n" f"in/4.ppm: is no picture that orv reads ({formats})\n")
        # Mended, they are done, and the list goes.
        self.pictures(5)
        self.assertTimed(
            (1, "batch blur: 3 done, 2 failed, in T; results in out\n"), self.batch(*QUICK, "in", "-o", "out", "--resume")[:2]
        )

    def test_many_failures_are_listed_again_in_part(self):
        self.pictures(30)
        for number in range(1, 26):
            damage(self.folder / f"in/{number}.ppm", "empty")
        code, _, err = self.batch(*QUICK, "in", "-o", "out")
        self.assertEqual(code, 1)
        told, listed = err.split("orv: 25 of 30 pictures failed; --resume tries them again:\n")
        # On a slow machine lines of progress stand between them.
        self.assertEqual(sum(line.endswith(": is empty") for line in told.splitlines()), 25)
        self.assertEqual(
            listed,
            "".join(f"  in/{number}.ppm: is empty\n" for number in range(1, 21)) + "  and 5 more, all in out/.orv/failed.txt\n",
        )
        self.assertEqual(len((self.folder / "out/.orv/failed.txt").read_text().splitlines()), 25)

    def test_where_nothing_was_done_nothing_is_left(self):
        self.pictures(1)
        damage(self.folder / "in/1.ppm", "empty")
        self.assertEqual(self.batch(*QUICK, "in", "-o", "out")[0], 1)
        self.assertEqual([path.name for path in (self.folder / "out/.orv").iterdir()], ["failed.txt"])

    def slow_batch(self, *more):
        """A batch whose slow picture is at work, with the worker that does it."""
        self.pictures(3)
        slow_picture(self.folder / "in/2slow.ppm")
        process = self.start(*SLOW, "in", "-o", "out", "--jobs", "2", *more)

        def found():
            return [worker for worker, words in workers_of(process.pid).items() if b"in/2slow.ppm" in words]

        return process, wait_until(found)[0]

    def test_a_worker_that_crashes_costs_its_picture_alone(self):
        for number, reason in (
            (signal.SIGSEGV, "its worker crashed (Segmentation fault)"),
            (signal.SIGKILL, "its worker was killed, perhaps for want of memory; fewer --jobs need less"),
        ):
            with self.subTest(reason):
                process, worker = self.slow_batch("--force")
                os.kill(worker, number)
                self.assertTimed(
                    (
                        1,
                        "batch denoise: 3 done, 1 failed, in T; results in out\n",
                        f"orv: in/2slow.ppm: {reason}\norv: 1 of 4 pictures failed; --resume tries it again\n",
                    ),
                    self.end(process),
                )
                self.assertEqual(sorted(self.tree()), [b"1.ppm", b"2.ppm", b"3.ppm"])
                self.assertTidy()

    def test_control_c_ends_all_at_once(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number):
                shutil.rmtree(self.folder / "out", ignore_errors=True)
                process, worker = self.slow_batch()
                wait_until(lambda: (self.folder / "out").exists() and len(self.tree()) == 3)
                before = time.monotonic()
                process.send_signal(number)
                code, out, err = self.end(process)
                self.assertLess(time.monotonic() - before, 0.5)
                self.assertEqual(
                    (code, out, err),
                    (-number, "", "orv: cancelled, 3 of 4 pictures are done; --resume does the rest\n"),
                )
                self.assertFalse(is_running(worker))
                self.assertTidy()

    @unittest.skipUnless(sys.platform == "linux", "other systems let workers live until they write")
    def test_workers_die_with_the_batch(self):
        process, worker = self.slow_batch()
        process.kill()
        process.wait()
        wait_until(lambda: not is_running(worker), seconds=1.0)
        self.end(process)
        # What it left is gone with the next run.
        self.assertEqual(self.batch(*SLOW, "in/1.ppm", "-o", "out", "--resume")[0], 0)
        self.assertTidy()


class Kills(BatchCase):
    """A batch of 200 files, some of them damaged, that is killed again and again."""

    COUNT = 200

    def make_pictures(self, chance):
        bad = []
        folders = ["in", "in/a b", "in/ä/深い"]
        for i in range(self.COUNT):
            name = f"{'-' if i % 41 == 0 else ''}{i}{' x' if i % 7 == 0 else ''}{chr(10) if i % 53 == 0 else ''}"
            path = self.folder / folders[i % 3] / (name + (".png" if HAVE_VIPS and i % 4 == 0 else ".ppm"))
            picture(path, seed=i + 1, width=chance.randrange(1, 24), height=chance.randrange(1, 24))
            if i % 16 == 5:
                damage(path, chance.choice(["truncated", "empty", "wrong"]))
                bad.append(path)
        return bad

    def test_every_good_picture_comes_out_whole(self):
        chance = random.Random(SEED)
        bad = self.make_pictures(chance)
        for folder in ("", "a b/", "ä/深い/"):
            names = [str(path) for path in (self.folder / "in" / folder).iterdir() if path.is_file()]
            run("blur", "--sigma", "1", "-o", f"single/{folder}", "--", *names, cwd=self.folder)
        expected = self.tree("single")
        words = [*QUICK, "in", "-o", "out", "--recursive", "--resume", "--jobs", "3"]
        ended, counts = 0, []
        for _ in range(8):
            process = self.start(*words)
            time.sleep(chance.uniform(0.05, 0.6))
            ended += process.poll() is not None
            victims = [process.pid]
            if chance.random() < 0.3:
                victims += list(workers_of(process.pid))
            how = chance.choice([signal.SIGKILL, signal.SIGKILL, signal.SIGTERM, signal.SIGINT])
            for victim in chance.sample(victims, len(victims)):
                try:
                    os.kill(victim, how if victim == process.pid else signal.SIGKILL)
                except ProcessLookupError:
                    pass
            self.end(process)
            # Whatever has its name is whole, and no other file has come.
            found = self.tree()
            counts.append(len(found))
            self.assertEqual({name: expected.get(name) for name in found}, found)
        self.assertLess(ended, 8, "no batch was killed at work")
        self.assertEqual(counts, sorted(counts))
        code, _, err = self.batch(*words)
        self.assertEqual(code, 1)
        self.assertIn(f"orv: {len(bad)} of {self.COUNT} pictures failed; --resume tries them again:\n", err)
        self.assertEqual(self.tree(), expected)
        self.assertEqual(len(expected), self.COUNT - len(bad))
        self.assertTidy()
        # Nothing is left to do, and nothing is done again.
        code, out, _ = self.batch(*words)
        self.assertIn(f"batch blur: 0 done, {len(expected)} skipped, {len(bad)} failed", out)


if __name__ == "__main__":
    unittest.main()
