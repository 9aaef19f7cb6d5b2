#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "base/text_output.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/thin/wavelet_denoising_operator.h"
#include "support/pictures.h"
#include "support/ratios.h"
#include "wavelets/plain_denoising.h"
#include "wavelets/shrinkage/brownian_shrink.h"
#include "wavelets/shrinkage/sure_shrink.h"
#include "wavelets/wavelet_shrinkage_operator.h"

#if defined(ORV_BENCH_GSL)
#include <gsl/gsl_wavelet2d.h>
#endif

// Wavelet denoising of 4 megapixels in double precision, one thread.

namespace orv::bench {
namespace {

constexpr PictureSize kPhoto = kPictureSizes[1];
constexpr int kSide = 2048;
constexpr int kPaddedSide = 4096;

const RealImage3& photo() {
    static const RealImage3 planes = [] {
        const std::vector<unsigned char> bytes = photoBytes(kPhoto.width, kPhoto.height);
        return RealImage3(RgbDiscreteImage(kPhoto.width, kPhoto.height, bytes.data()));
    }();
    return planes;
}

/// Shading, blocks and Gaussian noise, 2048 by 2048.
const RealImage& noisySquare() {
    static const RealImage plane = [] {
        RealImage made(kSide, kSide);
        std::mt19937 random(1);
        std::normal_distribution<double> noise(0.0, 12.0);
        for (int x = 0; x < kSide; ++x) {
            for (int y = 0; y < kSide; ++y) {
                made.row(x)[y] = 60.0 + 0.03 * x + (((x / 97 + y / 61) & 1) != 0 ? 60.0 : 0.0) +
                                 noise(random);
            }
        }
        return made;
    }();
    return plane;
}

bool same(const RealImage& a, const RealImage& b) {
    return a.sampleCount() == b.sampleCount() &&
           std::memcmp(a.data(), b.data(), a.sampleCount() * sizeof(double)) == 0;
}

const char* nameOf(int wavelet) {
    constexpr const char* kNames[] = {"daubechies6", "haar", "5/3", "9/7", "13/11", "9/3"};
    return kNames[wavelet];
}

void finish(benchmark::State& state, const std::string& name, const BestTime& best,
            const char* label, const std::string& reference) {
    keepBest(name, best);
    tellRatio(state, label, reference, name);
}

// A third of the photo's planes by the plain form; times three in the ratio.
void plainPhoto(benchmark::State& state, int wavelet) {
    WaveletShrinkageOperator op(kSureShrink, -1, wavelet);
    const int levels = op.levelLimit(kPaddedSide);
    const std::unique_ptr<RealImage> expected = op.apply(photo().plane(0), nullptr);
    std::unique_ptr<RealImage> result;
    BestTime best;
    for (auto turn : state) {
        best.time(
            [&] { result = plainDenoised(photo().plane(0), kPaddedSide, levels, wavelet); });
    }
    if (!same(*result, *expected)) {
        state.SkipWithError("the operator's result is not that of the plain form");
    }
    finish(state, std::string("plain/") + nameOf(wavelet), best, "", "");
}
BENCHMARK_CAPTURE(plainPhoto, haar, 1)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK_CAPTURE(plainPhoto, nine_seven, 3)->Unit(benchmark::kMillisecond)->Iterations(2);

void photoPlanes(benchmark::State& state, int wavelet) {
    WaveletDenoisingOperator op(kSureShrink, -1, wavelet);
    std::unique_ptr<RealImage3> result;
    BestTime best;
    for (auto turn : state) {
        best.time([&] { result = op.runPlanes(photo(), std::move(result)); });
    }
    const std::string name = std::string("photo/") + nameOf(wavelet);
    keepBest(name, best);
    const auto plain = bestTimes().find(std::string("plain/") + nameOf(wavelet));
    if (plain != bestTimes().end()) {
        state.counters["times_plain"] = 3.0 * plain->second / bestTimes()[name];
    }
}
BENCHMARK_CAPTURE(photoPlanes, haar, 1)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK_CAPTURE(photoPlanes, nine_seven, 3)->Unit(benchmark::kMillisecond)->MinTime(2.0);

/// The coefficients of the noisy square, all levels of 9/7.
const RealImage& coefficients() {
    static const RealImage plane = [] {
        const Banks banks;
        RealImage made(kSide, kSide);
        FwtImage(noisySquare(), made, kSide, kSide, 8, banks.analysisLow[3],
                 banks.analysisHigh[3]);
        return made;
    }();
    return plane;
}

template <class Rule>
void rule(benchmark::State& state, const std::string& name, Rule run) {
    const SilencedOutput silence;
    BestTime best;
    for (auto turn : state) {
        RealImage plane(coefficients());
        best.time([&] { run(plane); });
        benchmark::DoNotOptimize(plane.data());
    }
    keepBest(name, best);
    const auto sure = bestTimes().find("rule/sure");
    if (sure != bestTimes().end()) {
        state.counters["sure_times"] = bestTimes()[name] / sure->second;
    }
}

void sureRule(benchmark::State& state) {
    RealImage plain(coefficients());
    RealImage fast(coefficients());
    plainSure(plain, 8);
    SureShrink2D(fast, kSide, kSide, 8, false);
    if (!same(plain, fast)) {
        state.SkipWithError("the rule's result is not that of the plain form");
    }
    rule(state, "rule/sure",
         [](RealImage& plane) { SureShrink2D(plane, kSide, kSide, 8, false); });
}
BENCHMARK(sureRule)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void brownianRule(benchmark::State& state) {
    rule(state, "rule/brownian",
         [](RealImage& plane) { BrownianShrink2D(plane, kSide, kSide, 8, 0.5f, false); });
}
BENCHMARK(brownianRule)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// The universal rule on a square, which is what the peer can transform.
void square(benchmark::State& state) {
    WaveletShrinkageOperator op(kVisuShrink, -1, 0);
    std::unique_ptr<RealImage> result;
    BestTime best;
    for (auto turn : state) {
        best.time([&] { result = op.apply(noisySquare(), std::move(result)); });
    }
    finish(state, "square/visu", best, "", "");
}
BENCHMARK(square)->Unit(benchmark::kMillisecond)->MinTime(2.0);

#if defined(ORV_BENCH_GSL)
double peerNoise(const std::vector<double>& plane) {
    std::vector<double> details;
    details.reserve(plane.size());
    for (std::size_t i = 0; i < kSide; ++i) {
        const std::size_t from = i < kSide / 2 ? kSide / 2 : 0;
        for (std::size_t k = from; k < kSide; ++k) {
            details.push_back(std::fabs(plane[i * kSide + k]));
        }
    }
    const auto median = details.begin() + static_cast<std::ptrdiff_t>(details.size() / 2);
    std::nth_element(details.begin(), median, details.end());
    return *median / 0.6745;
}

// The same recipe around the peer's transform with 6 taps.
void gslSquare(benchmark::State& state) {
    gsl_wavelet* const wavelet = gsl_wavelet_alloc(gsl_wavelet_daubechies, 6);
    gsl_wavelet_workspace* const space = gsl_wavelet_workspace_alloc(kSide);
    std::vector<double> plane;
    BestTime best;
    for (auto turn : state) {
        plane.assign(noisySquare().data(), noisySquare().data() + noisySquare().sampleCount());
        best.time([&] {
            gsl_wavelet2d_nstransform_forward(wavelet, plane.data(), kSide, kSide, kSide,
                                              space);
            const double threshold =
                std::sqrt(2.0 * std::log(static_cast<double>(plane.size()))) * peerNoise(plane);
            for (std::size_t i = 4; i < plane.size(); ++i) {
                plainSoften(plane[i], threshold);
            }
            gsl_wavelet2d_nstransform_inverse(wavelet, plane.data(), kSide, kSide, kSide,
                                              space);
        });
    }
    gsl_wavelet_workspace_free(space);
    gsl_wavelet_free(wavelet);
    keepBest("gsl", best);
    tellRatio(state, "ours_times_faster", "gsl", "square/visu");
}
BENCHMARK(gslSquare)->Unit(benchmark::kMillisecond)->MinTime(2.0);
#endif

}  // namespace
}  // namespace orv::bench
