#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "images/real_image.h"
#include "support/pictures.h"
#include "support/ratios.h"
#include "wavelets/transform/band_pyramid.h"
#include "wavelets/transform/wavelet_filter_banks.h"
#include "wavelets/transform/wavelet_transform.h"

#if defined(ORV_BENCH_GSL)
#include <gsl/gsl_wavelet.h>
#include <gsl/gsl_wavelet2d.h>
#endif

// One plane of 4 megapixels there and back, all levels, one thread. The plain form gathers a line
// at a time; both are compared before the clock starts.

namespace orv::bench {
namespace {

constexpr int kSide = 2048;
constexpr int kLevels = 7;
constexpr const char* kNames[kWaveletCount] = {"daubechies6", "haar",  "5/3",
                                               "9/7",         "13/11", "9/3"};

struct Banks {
    Banks() { InitWaveletFilters(analysisLow, analysisHigh, synthesisLow, synthesisHigh); }

    WaveletFilter analysisLow[kWaveletCount];
    WaveletFilter analysisHigh[kWaveletCount];
    WaveletFilter synthesisLow[kWaveletCount];
    WaveletFilter synthesisHigh[kWaveletCount];
};

RealImage photoPlane(int width, int height) {
    const std::vector<unsigned char> bytes = photoBytes(width, height);
    RealImage plane(width, height);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            plane.row(x)[y] =
                bytes[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(x)) *
                      3];
        }
    }
    return plane;
}

using Line = void (*)(const double*, double*, int, int, const WaveletFilter&,
                      const WaveletFilter&);

void linesAlongX(RealImage& plane, int side, Line line, const WaveletFilter& low,
                 const WaveletFilter& high) {
    std::vector<double> samples(static_cast<std::size_t>(side));
    std::vector<double> results(static_cast<std::size_t>(side));
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            samples[static_cast<std::size_t>(x)] = plane.row(x)[y];
        }
        line(samples.data(), results.data(), side, 1, low, high);
        for (int x = 0; x < side; ++x) {
            plane.row(x)[y] = results[static_cast<std::size_t>(x)];
        }
    }
}

void linesAlongY(RealImage& plane, int side, Line line, const WaveletFilter& low,
                 const WaveletFilter& high) {
    std::vector<double> results(static_cast<std::size_t>(side));
    for (int x = 0; x < side; ++x) {
        line(plane.row(x), results.data(), side, 1, low, high);
        std::memcpy(plane.row(x), results.data(), results.size() * sizeof(double));
    }
}

void plainForward(const RealImage& source, RealImage& coefficients, const Banks& banks,
                  int wavelet) {
    coefficients.assign(source);
    for (int side = kSide; side > kSide >> kLevels; side /= 2) {
        linesAlongX(coefficients, side, FwtVector, banks.analysisLow[wavelet],
                    banks.analysisHigh[wavelet]);
        linesAlongY(coefficients, side, FwtVector, banks.analysisLow[wavelet],
                    banks.analysisHigh[wavelet]);
    }
}

void plainInverse(const RealImage& coefficients, RealImage& target, const Banks& banks,
                  int wavelet) {
    target.assign(coefficients);
    for (int side = kSide >> (kLevels - 1); side <= kSide; side *= 2) {
        linesAlongY(target, side, IwtVector, banks.synthesisLow[wavelet],
                    banks.synthesisHigh[wavelet]);
        linesAlongX(target, side, IwtVector, banks.synthesisLow[wavelet],
                    banks.synthesisHigh[wavelet]);
    }
}

void finish(benchmark::State& state, const std::string& name, const BestTime& best,
            int wavelet) {
    keepBest(name, best);
    tellRatio(state, "times_plain", std::string("plain/") + kNames[wavelet], name);
    tellRatio(state, "times_gsl", std::string("gsl/") + kNames[wavelet], name);
    state.SetItemsProcessed(state.iterations() * kSide * kSide);
}

void plain(benchmark::State& state) {
    const auto wavelet = static_cast<int>(state.range(0));
    const Banks banks;
    const RealImage source = photoPlane(kSide, kSide);
    RealImage coefficients(kSide, kSide);
    RealImage target(kSide, kSide);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            plainForward(source, coefficients, banks, wavelet);
            plainInverse(coefficients, target, banks, wavelet);
        });
    }
    state.SetLabel(kNames[wavelet]);
    finish(state, std::string("plain/") + kNames[wavelet], best, wavelet);
}
BENCHMARK(plain)->Arg(0)->Arg(1)->Arg(2)->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);

#if defined(ORV_BENCH_GSL)
// The peer has no 9/7 filters; its Daubechies filters of 8 taps have the same count of products.
void gsl(benchmark::State& state) {
    const auto wavelet = static_cast<int>(state.range(0));
    const gsl_wavelet_type* types[] = {gsl_wavelet_daubechies, gsl_wavelet_haar,
                                       gsl_wavelet_bspline, gsl_wavelet_daubechies};
    const std::size_t members[] = {6, 2, 202, 8};
    gsl_wavelet* filters = gsl_wavelet_alloc(types[wavelet], members[wavelet]);
    gsl_wavelet_workspace* work = gsl_wavelet_workspace_alloc(kSide);
    RealImage plane = photoPlane(kSide, kSide);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            gsl_wavelet2d_nstransform_forward(filters, plane.data(), kSide, kSide, kSide, work);
            gsl_wavelet2d_nstransform_inverse(filters, plane.data(), kSide, kSide, kSide, work);
        });
    }
    gsl_wavelet_workspace_free(work);
    gsl_wavelet_free(filters);
    state.SetLabel(kNames[wavelet]);
    finish(state, std::string("gsl/") + kNames[wavelet], best, wavelet);
}
BENCHMARK(gsl)->Arg(0)->Arg(1)->Arg(2)->Arg(3)->Unit(benchmark::kMillisecond)->MinTime(1.0);
#endif

/// Whether the transforms have the bits of the plain form.
bool sameAsPlain(const RealImage& source, const Banks& banks, int wavelet) {
    const std::size_t bytes = source.sampleCount() * sizeof(double);
    RealImage coefficients(kSide, kSide);
    RealImage expected(kSide, kSide);
    RealImage target(kSide, kSide);
    plainForward(source, expected, banks, wavelet);
    FwtImage(source, coefficients, kSide, kSide, kLevels, banks.analysisLow[wavelet],
             banks.analysisHigh[wavelet]);
    if (std::memcmp(coefficients.data(), expected.data(), bytes) != 0) {
        return false;
    }
    plainInverse(coefficients, expected, banks, wavelet);
    IwtImage(coefficients, target, kSide, kSide, kLevels, banks.synthesisLow[wavelet],
             banks.synthesisHigh[wavelet]);
    return std::memcmp(target.data(), expected.data(), bytes) == 0;
}

void image(benchmark::State& state) {
    const auto wavelet = static_cast<int>(state.range(0));
    const Banks banks;
    const RealImage source = photoPlane(kSide, kSide);
    if (!sameAsPlain(source, banks, wavelet)) {
        state.SkipWithError("other bits than the plain form");
        return;
    }
    RealImage coefficients(kSide, kSide);
    RealImage target(kSide, kSide);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            FwtImage(source, coefficients, kSide, kSide, kLevels, banks.analysisLow[wavelet],
                     banks.analysisHigh[wavelet]);
            IwtImage(coefficients, target, kSide, kSide, kLevels, banks.synthesisLow[wavelet],
                     banks.synthesisHigh[wavelet]);
        });
    }
    state.SetLabel(kNames[wavelet]);
    finish(state, std::string("image/") + kNames[wavelet], best, wavelet);
}
BENCHMARK(image)->DenseRange(0, 4)->Unit(benchmark::kMillisecond)->MinTime(1.0);

// Bands of a plane of its own each. The padded form runs on a photo of the same count of samples
// in the corner of a plane four times as large.
void pyramid(benchmark::State& state, int width, int height, int side) {
    const auto wavelet = static_cast<int>(state.range(0));
    const Banks banks;
    const RealImage source = photoPlane(width, height);
    RealImage target(width, height);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            const BandPyramid bands(source, side, side, kLevels, banks.analysisLow[wavelet],
                                    banks.analysisHigh[wavelet]);
            bands.inverse(target, banks.synthesisLow[wavelet], banks.synthesisHigh[wavelet]);
        });
    }
    state.SetLabel(kNames[wavelet]);
    finish(state, "pyramid/" + std::to_string(side) + "/" + kNames[wavelet], best, wavelet);
}
BENCHMARK_CAPTURE(pyramid, whole, kSide, kSide, kSide)
    ->DenseRange(0, 4)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(pyramid, padded, kPictureSizes[1].width, kPictureSizes[1].height, 2 * kSide)
    ->DenseRange(0, 4)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

}  // namespace
}  // namespace orv::bench
