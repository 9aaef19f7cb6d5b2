#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "images/float_image3.h"
#include "images/rgb_discrete_image.h"
#include "schemes/aos_deblurring/aos_deblurring_operator.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "support/pictures.h"
#include "support/ratios.h"

#if defined(ORV_BENCH_CIMG)
// Its macros hold casts that no system header hides.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <CImg.h>
#pragma GCC diagnostic pop
#endif

// AOS deblurring of a photo of 4 megapixels, three channels of floats: one factorisation for all
// lines against the systems line by line.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];
constexpr const char* kPeer = "cimg";

#if defined(ORV_BENCH_CIMG)
// A step of the peer's sharpening by inverse diffusion.
void cimgSharpen(benchmark::State& state) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const cimg_library::CImg<unsigned char> interleaved(bytes.data(), 3,
                                                        static_cast<unsigned>(kSize.width),
                                                        static_cast<unsigned>(kSize.height), 1);
    const cimg_library::CImg<float> source = interleaved.get_permute_axes("yzcx");
    cimg_library::CImg<float> target;
    BestTime best;
    for (auto turn : state) {
        target = source;
        best.time([&] { target.sharpen(50.0f); });
    }
    keepBest(kPeer, best);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}
BENCHMARK(cimgSharpen)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);
#endif

bool sameBits(const FloatImage3& a, const FloatImage3& b) {
    for (int k = 0; k < 3; ++k) {
        if (std::memcmp(a.plane(k).data(), b.plane(k).data(),
                        a.plane(k).sampleCount() * sizeof(float)) != 0) {
            return false;
        }
    }
    return true;
}

struct Job {
    const char* name;
    int iterations;
    int kernel;
};

constexpr Job kJobs[] = {
    {"deblur/121", 1, 3}, {"deblur/1356531", 1, 7}, {"deblur/121/3 iterations", 3, 3}};

std::unique_ptr<FloatImage3> run(const Job& job, bool plain, const FloatImage3& planes,
                                 std::unique_ptr<FloatImage3> target) {
    AosDeblurringOperator deblurring(job.iterations, job.kernel, /*tau=*/0.01, /*lambda=*/100.0,
                                     /*sigma=*/1.0, /*edgeContrast=*/5.0, /*keepObserved=*/1,
                                     /*updateEachStep=*/1);
    deblurring.setPlainPath(plain);
    return FloatPlanesOperator(&deblurring).apply(planes, std::move(target));
}

void deblur(benchmark::State& state, const Job& job, bool plain, KernelTarget target) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const RgbDiscreteImage image(kSize.width, kSize.height, bytes.data());
    const FloatImage3 planes(image);
    limitKernelTarget(target);
    std::unique_ptr<FloatImage3> result;
    if (!plain) {
        const auto expected = run(job, /*plain=*/true, planes, nullptr);
        result = run(job, plain, planes, nullptr);
        if (!sameBits(*result, *expected)) {
            state.SkipWithError("the bits differ from those of the plain path");
            return;
        }
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { result = run(job, plain, planes, std::move(result)); });
    }
    const std::string base = std::string(job.name) + "/";
    const std::string name = base + (plain ? "plain" : nameOf(target));
    keepBest(name, best);
    tellRatio(state, "times_plain", base + "plain", name);
    tellRatio(state, "times_cimg", kPeer, name);
    limitKernelTarget(KernelTarget::Avx512);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}

const bool kRegistered = [] {
    const auto add = [](const Job& job, bool plain, KernelTarget target) {
        const std::string name =
            std::string(job.name) + "/" + (plain ? "plain" : nameOf(target));
        auto* entry = benchmark::RegisterBenchmark(
            name.c_str(), [=](benchmark::State& state) { deblur(state, job, plain, target); });
        entry->Unit(benchmark::kMillisecond)->UseRealTime();
        if (plain) {
            entry->Iterations(2);
        }
    };
    for (const Job& job : kJobs) {
        add(job, /*plain=*/true, KernelTarget::Generic);
        for (const KernelTarget target :
             {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
            if (isAvailable(target)) {
                add(job, /*plain=*/false, target);
            }
        }
    }
    return true;
}();

}  // namespace
}  // namespace orv::bench
