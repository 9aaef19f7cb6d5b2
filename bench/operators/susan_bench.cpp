#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "images/float_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/susan/susan_restoration_operator.h"
#include "support/pictures.h"
#include "support/ratios.h"

#if defined(ORV_BENCH_OPENCV)
#include <opencv2/imgproc.hpp>
#endif
#if defined(ORV_BENCH_CIMG)
// Its macros hold casts that no system header hides.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <CImg.h>
#pragma GCC diagnostic pop
#endif

// One SUSAN pass over a photo of 4 megapixels, 8 bits in and out, one thread. The plain form
// and CImg take many seconds and run on a quarter of a megapixel; ratios are per pixel.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];
constexpr PictureSize kSmall = kPictureSizes[0];
constexpr double kThreshold = 20.0;
constexpr double kSigma = 1.5;

RgbDiscreteImage photo(const PictureSize& size) {
    return {size.width, size.height, photoBytes(size.width, size.height).data()};
}

double pixelsOf(const PictureSize& size) {
    return static_cast<double>(size.width) * size.height;
}

// Keeps the time as if the picture had kSize, so that ratios are per pixel.
void finish(benchmark::State& state, const std::string& name, const BestTime& best,
            const PictureSize& size) {
    const double perPhoto = best.seconds() * pixelsOf(kSize) / pixelsOf(size);
    auto& times = bestTimes();
    if (times.find(name) == times.end() || perPhoto < times[name]) {
        times[name] = perPhoto;
    }
    tellRatio(state, "times_plain", "susan/plain", name);
    tellRatio(state, "times_opencv", "susan/opencv", name);
    tellRatio(state, "times_cimg", "susan/cimg", name);
}

// The formula written straight down.
std::unique_ptr<DiscreteImage> plainPass(const DiscreteImage& from) {
    const double inverse = 1.0 / kThreshold;
    const int width = from.width();
    const int height = from.height();
    const SusanRestorationOperator mask(1, kThreshold, kSigma);
    auto to = from.clone();
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            double sum[3] = {0.0, 0.0, 0.0};
            double acc[3] = {0.0, 0.0, 0.0};
            const int c[3] = {from.red(x, y), from.green(x, y), from.blue(x, y)};
            for (int k = 0; k < mask.maskSize(); ++k) {
                const int nx = x + mask.maskX(k);
                const int ny = y + mask.maskY(k);
                if (nx < 0 || nx >= width || ny < 0 || ny >= height) {
                    continue;
                }
                const int n[3] = {from.red(nx, ny), from.green(nx, ny), from.blue(nx, ny)};
                for (int i = 0; i < 3; ++i) {
                    const double d = (n[i] - c[i]) * inverse;
                    const double w = std::exp(-d * d) * mask.maskWeight(k);
                    sum[i] += w;
                    acc[i] += w * (n[i] - c[i]);
                }
            }
            const auto mean = [&](int i) {
                return sum[i] == 0.0 ? 0 : static_cast<int>(c[i] + acc[i] / sum[i]);
            };
            to->setRgb(x, y, mean(0), mean(1), mean(2));
        }
    }
    return to;
}

void plain(benchmark::State& state) {
    const RgbDiscreteImage image = photo(kSmall);
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(plainPass(image)); });
    }
    finish(state, "susan/plain", best, kSmall);
}
BENCHMARK(plain)->Name("susan/plain")->Unit(benchmark::kMillisecond)->MinTime(1.0);

#if defined(ORV_BENCH_OPENCV)
void opencv(benchmark::State& state) {
    cv::setNumThreads(1);
    std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const cv::Mat source(kSize.height, kSize.width, CV_8UC3, bytes.data());
    cv::Mat target;
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            cv::bilateralFilter(source, target, 7, kThreshold / std::sqrt(2.0), kSigma);
        });
    }
    finish(state, "susan/opencv", best, kSize);
}
BENCHMARK(opencv)->Name("susan/opencv")->Unit(benchmark::kMillisecond)->MinTime(2.0);
#endif

#if defined(ORV_BENCH_CIMG)
void cimg(benchmark::State& state) {
    const std::vector<unsigned char> bytes = photoBytes(kSmall.width, kSmall.height);
    cimg_library::CImg<unsigned char> image(kSmall.width, kSmall.height, 1, 3);
    const unsigned char* next = bytes.data();
    for (unsigned y = 0; y < unsigned{kSmall.height}; ++y) {
        for (unsigned x = 0; x < unsigned{kSmall.width}; ++x) {
            for (unsigned c = 0; c < 3; ++c) {
                image(x, y, 0, c) = *next++;
            }
        }
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            benchmark::DoNotOptimize(image.get_blur_bilateral(image, static_cast<float>(kSigma),
                                                              static_cast<float>(kThreshold)));
        });
    }
    finish(state, "susan/cimg", best, kSmall);
}
BENCHMARK(cimg)->Name("susan/cimg")->Unit(benchmark::kMillisecond)->MinTime(1.0);
#endif

bool samePixels(const DiscreteImage& a, const DiscreteImage& b) {
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.red(x, y) != b.red(x, y) || a.green(x, y) != b.green(x, y) ||
                a.blue(x, y) != b.blue(x, y)) {
                return false;
            }
        }
    }
    return true;
}

void pass(benchmark::State& state, KernelTarget target) {
    limitKernelTarget(target);
    SusanRestorationOperator op(1, kThreshold, kSigma);
    const RgbDiscreteImage small = photo(kSmall);
    if (!samePixels(*op.apply(small, nullptr), *plainPass(small))) {
        state.SkipWithError("differs from the plain form");
    }
    const RgbDiscreteImage image = photo(kSize);
    std::unique_ptr<DiscreteImage> result = image.clone();
    BestTime best;
    for (auto turn : state) {
        best.time([&] { result = op.apply(image, std::move(result)); });
    }
    limitKernelTarget(KernelTarget::Avx512);
    finish(state, std::string("susan/bytes/") + nameOf(target), best, kSize);
}
BENCHMARK_CAPTURE(pass, generic, KernelTarget::Generic)
    ->Name("susan/bytes/generic")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(pass, avx2, KernelTarget::Avx2)
    ->Name("susan/bytes/avx2")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(pass, avx512, KernelTarget::Avx512)
    ->Name("susan/bytes/avx512")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

void planes(benchmark::State& state) {
    const RgbDiscreteImage image = photo(kSize);
    const FloatImage3 source(image);
    const SusanRestorationOperator op(1, kThreshold, kSigma);
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(op.runPlanes(source, nullptr)); });
    }
    finish(state, "susan/planes", best, kSize);
}
BENCHMARK(planes)->Name("susan/planes")->Unit(benchmark::kMillisecond)->MinTime(1.0);

}  // namespace
}  // namespace orv::bench
