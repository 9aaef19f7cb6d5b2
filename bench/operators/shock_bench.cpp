#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/shock/diffusive_arctan_shock_term.h"
#include "operators/shock/diffusive_sign_shock_term.h"
#include "operators/shock/shock_operator.h"
#include "operators/shock/sign_shock_term.h"
#include "support/pictures.h"
#include "support/ratios.h"

#if defined(ORV_BENCH_CIMG)
// Its macros hold casts that no system header hides.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <CImg.h>
#pragma GCC diagnostic pop
#endif

// Four steps of the shock filter on three planes of 4 megapixels, one thread. The plain form
// asks the term for each sample.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];
constexpr int kSteps = 4;
constexpr double kTimeStep = 0.2;

RgbDiscreteImage photo() {
    return {kSize.width, kSize.height, photoBytes(kSize.width, kSize.height).data()};
}

void finish(benchmark::State& state, const std::string& name, const std::string& plain,
            const BestTime& best) {
    keepBest(name, best);
    tellRatio(state, "times_plain", plain, name);
    tellRatio(state, "times_cimg", "shock/cimg", name);
}

std::unique_ptr<ShockTerm> termOf(int method) {
    switch (method) {
        case 1:
            return std::make_unique<DiffusiveSignShockTerm>(kShockDiffusionWeight);
        case 3:
            return std::make_unique<DiffusiveArctanShockTerm>(kShockDiffusionWeight,
                                                              kShockArctanScale);
        default:
            return std::make_unique<SignShockTerm>();
    }
}

std::unique_ptr<RealImage3> plainSteps(int method, const RealImage3& source) {
    auto result = source.clone();
    const auto term = termOf(method);
    for (int c = 0; c < 3; ++c) {
        RealImage& target = result->plane(c);
        RealImage work(target);
        for (int i = 1; i <= kSteps; ++i) {
            term->setIteration(i);
            for (int x = 1; x < work.width() - 1; ++x) {
                for (int y = 1; y < work.height() - 1; ++y) {
                    const double v = target.row(x)[y] + kTimeStep * term->value(work, x, y);
                    target.row(x)[y] = v < 0.0 ? 0.0 : (v > 255.0 ? 255.0 : v);
                }
            }
            work.assign(target);
        }
    }
    return result;
}

void plain(benchmark::State& state, int method) {
    const RealImage3 source(photo());
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(plainSteps(method, source)); });
    }
    const std::string name = "shock/plain/" + std::to_string(method);
    finish(state, name, name, best);
}
BENCHMARK_CAPTURE(plain, sign, 0)
    ->Name("shock/plain/sign")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(plain, diffusive_sign, 1)
    ->Name("shock/plain/diffusive_sign")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(plain, diffusive_arctan, 3)
    ->Name("shock/plain/diffusive_arctan")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

#if defined(ORV_BENCH_CIMG)
// Its inverse diffusion and its shock filters, without the smoothing of the tensor; one call
// each step.
void cimg(benchmark::State& state) {
    const RealImage3 planes(photo());
    cimg_library::CImg<float> source(unsigned{kSize.width}, unsigned{kSize.height}, 1, 3);
    for (int c = 0; c < 3; ++c) {
        for (int y = 0; y < kSize.height; ++y) {
            for (int x = 0; x < kSize.width; ++x) {
                source(static_cast<unsigned>(x), static_cast<unsigned>(y), 0,
                       static_cast<unsigned>(c)) =
                    static_cast<float>(planes.plane(c).row(x)[y]);
            }
        }
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            cimg_library::CImg<float> work(source);
            for (int i = 0; i < kSteps; ++i) {
                work.sharpen(50.0f, true, 1.0f, 0.0f, 0.0f);
            }
            benchmark::DoNotOptimize(work.data());
        });
    }
    finish(state, "shock/cimg", "shock/cimg", best);
}
BENCHMARK(cimg)->Name("shock/cimg")->Unit(benchmark::kMillisecond)->MinTime(1.0);
#endif

bool sameBits(const RealImage3& a, const RealImage3& b) {
    for (int c = 0; c < 3; ++c) {
        if (std::memcmp(a.plane(c).data(), b.plane(c).data(),
                        a.plane(c).sampleCount() * sizeof(double)) != 0) {
            return false;
        }
    }
    return true;
}

void steps(benchmark::State& state, int method, KernelTarget target) {
    limitKernelTarget(target);
    ShockOperator op(kSteps, method, kTimeStep, kShockDiffusionWeight, kShockArctanScale);
    const RealImage3 source(photo());
    std::unique_ptr<RealImage3> result = op.runPlanes(source, nullptr);
    if (!sameBits(*result, *plainSteps(method, source))) {
        state.SkipWithError("differs from the plain form");
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { result = op.runPlanes(source, std::move(result)); });
    }
    limitKernelTarget(KernelTarget::Avx512);
    finish(state, "shock/steps/" + std::to_string(method) + nameOf(target),
           "shock/plain/" + std::to_string(method), best);
}
BENCHMARK_CAPTURE(steps, sign_avx2, 0, KernelTarget::Avx2)
    ->Name("shock/sign/avx2")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(steps, sign, 0, KernelTarget::Avx512)
    ->Name("shock/sign")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(steps, diffusive_sign, 1, KernelTarget::Avx512)
    ->Name("shock/diffusive_sign")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(steps, diffusive_arctan_avx2, 3, KernelTarget::Avx2)
    ->Name("shock/diffusive_arctan/avx2")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);
BENCHMARK_CAPTURE(steps, diffusive_arctan, 3, KernelTarget::Avx512)
    ->Name("shock/diffusive_arctan")
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);

}  // namespace
}  // namespace orv::bench
