#!/usr/bin/env python3
"""Measures how close automatic restoration comes to clean photos, and to the best there is.

    cmake --preset bench && cmake --build --preset bench --target quality_runner
    scripts/measure_quality.py              all stages, then the tables of docs/quality.md
    scripts/measure_quality.py --stage grid one stage: automatic, grid, candidates, peers, tables
    scripts/measure_quality.py --check      automatic results against the table; no peers

The photos are those of examples/photos, the noise is that of add_noise.py with seed 1: Gaussian,
independent in every sample, rounded and clipped to 8 bits. Grids run on the middle 256 x 256
pixels, all other figures come from whole photos. What a stage finds is kept in build/quality.

rocket.jpg and the figures of SSIM and peers take python3-skimage, the peers python3-opencv too.
Without them --check leaves rocket out.
"""

import argparse
import json
import os
import re
import subprocess
import sys

from add_noise import add_noise
from png_io import Picture, read_png

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
PAGE = os.path.join(ROOT, "docs", "quality.md")
PHOTOS = ("astronaut", "chelsea", "coffee", "retina", "rocket", "ascent", "brick", "camera",
          "clock", "gravel")
COLOUR = PHOTOS[:5]
NOISES = (5, 10, 20, 40)
METHODS = ("restore", "denoise", "wavelet")
# What the check allows: other compilers and mathematics libraries move the last bits.
TOLERANCE = 0.05
LARGEST_GAP = 0.7
LEAST_CLEAN = 38.0


def read_photo(name):
    path = os.path.join(ROOT, "examples", "photos", name)
    if os.path.exists(path + ".png"):
        return read_png(path + ".png")
    import skimage.io

    pixels = skimage.io.imread(path + ".jpg")
    return Picture(pixels.shape[1], pixels.shape[0], 3, pixels.tobytes())


def middle(picture, side=256):
    left = (picture.width - side) // 2
    top = (picture.height - side) // 2
    step = picture.channels
    rows = []
    for y in range(top, top + side):
        start = (y * picture.width + left) * step
        rows.append(bytes(picture.samples[start : start + side * step]))
    return Picture(side, side, step, b"".join(rows))


def write_netpbm(path, picture):
    kind = b"P6" if picture.channels == 3 else b"P5"
    with open(path, "wb") as file:
        file.write(b"%s\n%d %d\n255\n" % (kind, picture.width, picture.height))
        file.write(bytes(picture.samples))


class Bench:
    """The pictures in the working folder and the program that runs methods on them."""

    def __init__(self, work, runner, photos=PHOTOS):
        self.work = work
        self.runner = runner
        self.photos = photos
        os.makedirs(work, exist_ok=True)

    def path(self, name, noise, part):
        return os.path.join(self.work, f"{name}-{noise}-{part}.ppm")

    def prepare(self):
        for name in self.photos:
            if all(os.path.exists(self.path(name, n, "middle")) for n in (0, *NOISES)):
                continue
            clean = read_photo(name)
            for noise in (0, *NOISES):
                picture = add_noise(clean, float(noise), seed=1) if noise else clean
                write_netpbm(self.path(name, noise, "whole"), picture)
                write_netpbm(self.path(name, noise, "middle"), middle(picture))

    def run(self, settings, noise, part, photos=None, keep=None):
        """Returns (psnr of each photo, seconds) for each setting."""
        pairs = os.path.join(self.work, f"pairs-{os.getpid()}")
        with open(pairs, "w", encoding="ascii") as file:
            for name in photos or self.photos:
                result = f" {self.path(name, noise, keep)}" if keep else ""
                file.write(f"{self.path(name, 0, part)} {self.path(name, noise, part)}{result}\n")
        done = subprocess.run([self.runner, pairs], input="\n".join(settings) + "\n", text=True,
                              capture_output=True, check=True)
        os.remove(pairs)
        results = []
        for line in done.stdout.splitlines():
            figures = [float(word) for word in line.split(";")[0].split()]
            results.append((figures[2:], figures[1]))
        return results

    def run_scaled(self, make_settings, noise):
        """Runs settings made from the noise of the brightness plane and of a channel."""
        colour = self.run(make_settings(noise / 3**0.5, noise), noise, "middle", COLOUR)
        grey = self.run(make_settings(noise, noise), noise, "middle", PHOTOS[len(COLOUR) :])
        return [a[0] + b[0] for a, b in zip(colour, grey)]

    def load(self, stage):
        with open(os.path.join(self.work, stage + ".json"), encoding="ascii") as file:
            return json.load(file)

    def save(self, stage, results):
        with open(os.path.join(self.work, stage + ".json"), "w", encoding="ascii") as file:
            json.dump(results, file, indent=1)


def mean(values):
    return sum(values) / len(values)


def measure_automatic(bench):
    """PSNR of each photo, SSIM and seconds of the automatic methods on whole photos."""
    results = {}
    for method in METHODS:
        results[method] = {}
        for noise in (0, *NOISES):
            ((psnrs, seconds),) = bench.run([method + " --auto"], noise, "whole", keep=method)
            results[method][noise] = {"psnr": psnrs, "seconds": seconds}
    return results


def diffusion_grid(method, deviation):
    return [
        f"{method} --auto --contrast {factor * deviation:.5g} --tau {time / 6:.5g} --steps 6 "
        f"--sigma {sigma}"
        for factor in (0.05, 0.08, 0.12, 0.18, 0.27, 0.4)
        for time in (2, 4, 8, 16, 32)
        for sigma in (0.5, 0.8, 1.2)
    ]


def wavelet_grid(_, deviation):
    return [f"wavelet --auto --noise {factor * deviation:.5g}"
            for factor in (0.5, 0.6, 0.7, 0.8, 0.9, 1.0, 1.1, 1.2, 1.3, 1.5)]


def measure_grid(bench):
    """The automatic choice and the best of a grid, for each method and noise."""
    results = {}
    for method in METHODS:
        grid = wavelet_grid if method == "wavelet" else diffusion_grid
        results[method] = {}
        for noise in NOISES:
            table = bench.run_scaled(lambda brightness, _: grid(method, brightness), noise)
            ((automatic, _),) = bench.run([method + " --auto"], noise, "middle")
            left_out = []
            for i in range(len(PHOTOS)):
                others = [row[:i] + row[i + 1 :] for row in table]
                left_out.append(table[others.index(max(others, key=mean))][i])
            results[method][noise] = {
                "automatic": mean(automatic),
                "one setting": max(mean(row) for row in table),
                "best each": mean([max(column) for column in zip(*table)]),
                "left out": mean(left_out),
            }
    return results


def diffusion_candidate(options, steps, command="restore --shrinkage 0 --border mirror"):
    """A maker of settings over a coarse grid; contrast goes with the noise of the planes."""

    def make(brightness, channel):
        deviation = channel if "--colours rgb" in options else brightness
        return [
            f"{command} {options} --steps {steps} --contrast {factor * deviation:.5g} "
            f"--tau {time / steps:.5g} --sigma {sigma}"
            for factor in (0.12, 0.2, 0.35)
            for time in (3, 8, 16)
            for sigma in (0.5, 0.8)
        ]

    return make


def candidates():
    """Names of what restore could do by default, and the makers of their settings."""
    found = {}
    lod = "--colours opponent --scheme LOD --flow"
    for scheme in ("LOD", "ADI --substeps", "AOS"):
        for steps in (1, 4, 8):
            name = f"{scheme.split()[0]}, {steps} step{'s' if steps > 1 else ''}"
            found[name] = diffusion_candidate(
                f"--colours opponent --scheme {scheme} --flow PM", steps)
    for flow in ("VAR", "TV", "WE2"):
        found[f"LOD, 4 steps, `{flow}`"] = diffusion_candidate(f"{lod} {flow}", 4)
    found["LOD, 4 steps, in red, green, blue"] = diffusion_candidate(
        "--colours rgb --scheme LOD --flow PM", 4)
    for rule in ("sure", "visu", "brownian"):
        found[f"wavelet `{rule}`, in red, green, blue"] = (
            lambda *_, rule=rule: [f"wavelet --rule {rule}"])
    for shifts in (1, 4, 8):
        found[f"wavelet `sure`, {shifts} shift{'s' if shifts > 1 else ''}"] = (
            lambda *_, shifts=shifts: [f"wavelet --auto --shifts {shifts}"])
    found["wavelet, 4 shifts, then LOD, 1 step"] = diffusion_candidate(
        f"{lod} PM", 1, "wavelet --auto --shifts 4 , restore --shrinkage 0 --border mirror")
    for share in (0.4, 0.6):
        found[f"LOD, 6 steps, mixed with {share} of wavelet, 4 shifts"] = diffusion_candidate(
            f"{lod} PM", 6, f"restore --auto --shrinkage {share}")
    return found


def measure_candidates(bench):
    """The best mean PSNR that a coarse grid finds for each candidate."""
    return {
        name: {n: max(mean(row) for row in bench.run_scaled(make, n)) for n in NOISES}
        for name, make in candidates().items()
    }


def gap_problems(bench, table):
    """What keeps the automatic results from being what the page says."""
    automatic = measure_automatic(bench)["restore"]
    for i, name in enumerate(bench.photos):
        clean = automatic[0]["psnr"][i]
        if clean < LEAST_CLEAN:
            yield f"{name}: clean photo at {clean:.2f} dB to itself"
        for noise, stated in zip((0, *NOISES), table[name]):
            found = automatic[noise]["psnr"][i]
            if abs(found - stated) > TOLERANCE:
                yield f"{name}, noise {noise}: {found:.2f} dB, docs/quality.md says {stated:.2f}"


def check(work, runner):
    with open(PAGE, encoding="utf-8") as file:
        page = file.read()
    table = {}
    for name in PHOTOS:
        row = re.search(rf"^\| `{name}` \|(.*)\|$", page, re.MULTILINE)
        table[name] = [float(cell) for cell in re.findall(r"\d+\.\d+", row.group(1))]
    photos = PHOTOS
    try:
        import skimage.io  # noqa: F401
    except ImportError:
        photos = tuple(name for name in PHOTOS if name != "rocket")
    bench = Bench(work, runner, photos)
    bench.prepare()
    problems = list(gap_problems(bench, table))
    for gap in re.findall(r"^\| `\w+` \|.*\| gap ([\d. -]+) \|$", page, re.MULTILINE):
        problems += [f"gap of {g} dB" for g in gap.split() if float(g) > LARGEST_GAP]
    for problem in problems:
        print(f"measure_quality: {problem}")
    print(f"measure_quality: {len(photos)} photos, {len(problems)} problems")
    return 1 if problems else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--stage", choices=("automatic", "grid", "candidates", "peers", "tables"))
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--work", default=os.path.join(ROOT, "build", "quality"))
    parser.add_argument("--runner",
                        default=os.path.join(ROOT, "build", "bench", "bench", "quality_runner"))
    arguments = parser.parse_args()
    if not os.path.exists(arguments.runner):
        sys.exit(f"measure_quality.py: {arguments.runner} is missing; build quality_runner")
    if arguments.check:
        sys.exit(check(arguments.work, arguments.runner))
    import quality_peers
    import quality_tables

    bench = Bench(arguments.work, arguments.runner)
    bench.prepare()
    stages = {"automatic": measure_automatic, "grid": measure_grid,
              "candidates": measure_candidates, "peers": quality_peers.measure}
    for stage, measure in stages.items():
        if arguments.stage in (None, stage):
            bench.save(stage, measure(bench))
    if arguments.stage in (None, "tables"):
        quality_tables.write(bench, PAGE)


if __name__ == "__main__":
    main()
