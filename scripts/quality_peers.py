"""The peers of scripts/measure_quality.py, and the figures that take their libraries.

Every peer has its own automatic settings, or the setting that is best on the mean over the middle
parts of the photos: peers without automation are told the noise, ours have to measure it.
"""

import time

import cv2
import numpy
from skimage.metrics import structural_similarity
from skimage.restoration import (cycle_spin, denoise_bilateral, denoise_tv_chambolle,
                                 denoise_wavelet)


def read_netpbm(path):
    with open(path, "rb") as file:
        kind, sizes, _, samples = file.read().split(b"\n", 3)
    width, height = (int(word) for word in sizes.split())
    shape = (height, width, 3) if kind == b"P6" else (height, width)
    return numpy.frombuffer(samples, numpy.uint8).reshape(shape)


def channels(pixels):
    return {"channel_axis": -1} if pixels.ndim == 3 else {}


def wavelet_options(pixels):
    return {"convert2ycbcr": pixels.ndim == 3, "rescale_sigma": True, **channels(pixels)}


def wavelet(pixels, _):
    return 255.0 * denoise_wavelet(pixels / 255.0, **wavelet_options(pixels))


def spun_wavelet(pixels, _):
    return 255.0 * cycle_spin(pixels / 255.0, func=denoise_wavelet, max_shifts=3, num_workers=1,
                              func_kw=wavelet_options(pixels), **channels(pixels))


def total_variation(pixels, weight):
    return 255.0 * denoise_tv_chambolle(pixels / 255.0, weight=weight, **channels(pixels))


def bilateral(pixels, sigma_color):
    return 255.0 * denoise_bilateral(pixels / 255.0, sigma_color=sigma_color, sigma_spatial=1.5,
                                     **channels(pixels))


def non_local_means(pixels, h):
    if pixels.ndim == 3:
        return cv2.fastNlMeansDenoisingColored(pixels, None, h, h, 7, 21)
    return cv2.fastNlMeansDenoising(pixels, None, h, 7, 21)


# Name, function, settings to choose from for a noise.
PEERS = (
    ("scikit-image `denoise_wavelet`, BayesShrink", wavelet, lambda noise: (None,)),
    ("the same in `cycle_spin`, 16 shifts", spun_wavelet, lambda noise: (None,)),
    ("scikit-image `denoise_tv_chambolle`, best weight", total_variation,
     lambda noise: tuple(noise / 255.0 * f for f in (0.7, 0.9, 1.1, 1.4, 1.8))),
    ("scikit-image `denoise_bilateral`, best range", bilateral,
     lambda noise: tuple(noise / 255.0 * f for f in (1.0, 2.0, 3.0))),
    ("OpenCV `fastNlMeansDenoisingColored`, best h", non_local_means,
     lambda noise: tuple(noise * f for f in (0.5, 0.7, 0.85, 1.0, 1.2))),
)


def psnr(clean, result):
    kept = numpy.clip(numpy.floor(numpy.asarray(result, float) + 0.5), 0.0, 255.0)
    return 10.0 * numpy.log10(255.0**2 / numpy.mean((clean - kept) ** 2))


def similarity(clean, result):
    kept = numpy.clip(numpy.floor(numpy.asarray(result, float) + 0.5), 0.0, 255.0)
    return structural_similarity(clean.astype(float), kept, data_range=255.0, **channels(clean))


def run_peer(bench, function, setting, noise, part):
    figures = {"psnr": [], "ssim": [], "seconds": 0.0}
    for name in bench.photos:
        clean = read_netpbm(bench.path(name, 0, part))
        noisy = read_netpbm(bench.path(name, noise, part))
        start = time.process_time()
        result = function(noisy, setting)
        figures["seconds"] += time.process_time() - start
        figures["psnr"].append(psnr(clean, result))
        figures["ssim"].append(similarity(clean, result) if part == "whole" else 0.0)
    return figures


def best_setting(bench, function, settings, noise):
    if len(settings) == 1:
        return settings[0]
    return max(settings, key=lambda setting: sum(
        run_peer(bench, function, setting, noise, "middle")["psnr"]))


def measure(bench):
    """PSNR, SSIM and seconds of the peers, of the noisy photos and of our results."""
    cv2.setNumThreads(1)
    results = {"noisy": {}}
    for noise in (5, 10, 20, 40):
        results["noisy"][noise] = run_peer(bench, lambda pixels, _: pixels, None, noise, "whole")
        for method in ("restore", "denoise", "wavelet"):
            kept = {"ssim": [similarity(read_netpbm(bench.path(name, 0, "whole")),
                                        read_netpbm(bench.path(name, noise, method)))
                             for name in bench.photos]}
            results.setdefault(method, {})[noise] = kept
    for name, function, settings in PEERS:
        results[name] = {}
        for noise in (5, 10, 20, 40):
            setting = best_setting(bench, function, settings(noise), noise)
            results[name][noise] = run_peer(bench, function, setting, noise, "whole")
    return results
