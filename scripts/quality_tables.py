"""Writes the tables of docs/quality.md from what scripts/measure_quality.py found."""

import re

NOISES = ("5", "10", "20", "40")
OURS = {"restore": "`orv restore`", "wavelet": "`orv wavelet --auto`",
        "denoise": "`orv denoise --auto`"}


def mean(values):
    return sum(values) / len(values)


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def comparison(automatic, peers):
    """PSNR and SSIM by noise, and the time at noise 20 as a multiple of that of restore."""
    unit = automatic["restore"]["20"]["seconds"]
    rows = []

    def add(name, psnrs, ssims, seconds):
        share = f"{seconds / unit:.1f}" if seconds else ""
        rows.append([name] + [f"{mean(psnrs[n]):.2f}" for n in NOISES]
                    + [f"{mean(ssims[n]):.3f}" for n in NOISES] + [share])

    noisy = peers["noisy"]
    add("noisy", {n: noisy[n]["psnr"] for n in NOISES}, {n: noisy[n]["ssim"] for n in NOISES}, 0)
    for method, name in OURS.items():
        add(name, {n: automatic[method][n]["psnr"] for n in NOISES},
            {n: peers[method][n]["ssim"] for n in NOISES},
            automatic[method]["20"]["seconds"])
    for name, found in peers.items():
        if name != "noisy" and name not in OURS:
            add(name, {n: found[n]["psnr"] for n in NOISES},
                {n: found[n]["ssim"] for n in NOISES}, found["20"]["seconds"])
    head = ["Method", "dB at 5", "10", "20", "40", "SSIM at 5", "10", "20", "40", "time"]
    return table(head, rows)


def gaps(grid):
    rows = []
    for method, found in grid.items():
        cells = [f"{found[n]['automatic']:.2f}, {found[n]['one setting']:.2f}, "
                 f"{found[n]['left out']:.2f}, {found[n]['best each']:.2f}" for n in NOISES]
        gap = " ".join(f"{found[n]['best each'] - found[n]['automatic']:.2f}" for n in NOISES)
        rows.append([f"`{method}`", *cells, f"gap {gap}"])
    return table(["Method", *(f"noise {n}" for n in NOISES), "to the best for each"], rows)


def candidates(found):
    rows = sorted(found.items(), key=lambda item: -sum(item[1][n] for n in NOISES))
    return table(["Candidate", *NOISES],
                 [[name, *(f"{values[n]:.2f}" for n in NOISES)] for name, values in rows])


def photos(names, automatic):
    found = automatic["restore"]
    return table(["Photo", "clean", *NOISES],
                 [[f"`{name}`", *(f"{found[n]['psnr'][i]:.2f}" for n in ("0", *NOISES))]
                  for i, name in enumerate(names)])


def write(bench, path):
    automatic = bench.load("automatic")
    parts = {
        "peers": comparison(automatic, bench.load("peers")),
        "grid": gaps(bench.load("grid")),
        "candidates": candidates(bench.load("candidates")),
        "photos": photos(bench.photos, automatic),
    }
    with open(path, encoding="utf-8") as file:
        page = file.read()
    for name, text in parts.items():
        page = re.sub(rf"(<!-- {name} -->\n).*?(<!-- end -->)",
                      lambda found, text=text: found.group(1) + text + "\n" + found.group(2),
                      page, flags=re.DOTALL)
    with open(path, "w", encoding="utf-8") as file:
        file.write(page)
