#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "base/cpu_features.h"
#include "images/float_image.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/split/afi_2d_restoration.h"
#include "schemes/split/amos_2d_restoration.h"
#include "schemes/split/aos_2d_restoration.h"
#include "schemes/split/cfl_adi_2d_restoration.h"
#include "schemes/split/lod_2d_restoration.h"
#include "support/pictures.h"
#include "support/ratios.h"

// One step of each line scheme on one plane, Perona/Malik, diffusivity included, and AOS with
// Weickert's exponentials: the kernels of every target against the line by line path.

namespace orv::bench {
namespace {

constexpr double kTau = 2.0;
constexpr double kContrast = 10.0;
constexpr const char* kSchemes[] = {"LOD", "AFI", "ADI", "AOS", "AMOS", "AOS-WE2", "AOS-WE4"};

FloatImage photoPlane(const PictureSize& size) {
    const std::vector<unsigned char> bytes = photoBytes(size.width, size.height);
    FloatImage plane(size.width, size.height);
    for (int x = 0; x < size.width; ++x) {
        for (int y = 0; y < size.height; ++y) {
            const std::size_t at =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) +
                static_cast<std::size_t>(x);
            plane.row(x)[y] = bytes[3 * at];
        }
    }
    return plane;
}

std::unique_ptr<Splitted2DRestoration> makeScheme(const std::string& name, Flow* flow) {
    if (name == "LOD") {
        return std::make_unique<Lod2DRestoration>(0, 1, 1, kTau, flow, true, true);
    }
    if (name == "AFI") {
        return std::make_unique<Afi2DRestoration>(0, 1, 1, kTau, flow, true, true);
    }
    if (name == "ADI") {
        return std::make_unique<CflAdi2DRestoration>(0, 1, 1, kTau, flow, true, true, true);
    }
    if (name.starts_with("AOS")) {
        return std::make_unique<Aos2DRestoration>(0, 1, 1, kTau, flow, true, true);
    }
    return std::make_unique<Amos2DRestoration>(0, 1, 1, kTau, flow, true, true, true);
}

int flowKindOf(const std::string& scheme) {
    if (scheme == "AOS-WE2") {
        return 11;
    }
    return scheme == "AOS-WE4" ? 10 : 0;
}

// A scheme with its flow, kept over the turns as a restoration keeps it over the channels.
class Runner {
  public:
    Runner(const std::string& scheme, double sigma, bool plain)
        : flow_(sigma, kContrast, flowKindOf(scheme), /*gradientNormId=*/0),
          scheme_(makeScheme(scheme, &flow_)) {
        flow_.setPlainPath(plain);
        scheme_->setPlainPath(plain);
    }
    void run(const FloatImage& plane) { target_ = scheme_->apply(plane, std::move(target_)); }
    const FloatImage& result() const { return *target_; }

  private:
    DiffusionFlow flow_;
    std::unique_ptr<Splitted2DRestoration> scheme_;
    std::unique_ptr<FloatImage> target_;
};

bool sameBits(const FloatImage& a, const FloatImage& b) {
    return __builtin_memcmp(a.data(), b.data(), a.sampleCount() * sizeof(float)) == 0;
}

// The plane and the plain result of one size and scheme, kept until another is asked for.
struct Reference {
    std::string key;
    std::unique_ptr<FloatImage> plane;
    std::unique_ptr<FloatImage> expected;
};

Reference& referenceOf(const std::string& scheme, const PictureSize& size) {
    static Reference reference;
    const std::string key = scheme + size.name;
    if (reference.key != key) {
        reference = {key, std::make_unique<FloatImage>(photoPlane(size)), nullptr};
        Runner plain(scheme, /*sigma=*/0.0, /*plain=*/true);
        plain.run(*reference.plane);
        reference.expected = plain.result().clone();
    }
    return reference;
}

void lineScheme(benchmark::State& state, const std::string& scheme, const PictureSize& size,
                bool plain, KernelTarget target) {
    const Reference& reference = referenceOf(scheme, size);
    limitKernelTarget(target);
    Runner runner(scheme, /*sigma=*/0.0, plain);
    runner.run(*reference.plane);
    if (!sameBits(runner.result(), *reference.expected)) {
        state.SkipWithError("the bits differ from those of the plain path");
        return;
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { runner.run(*reference.plane); });
    }
    const std::string base = scheme + "/" + size.name + "/";
    const std::string name = base + (plain ? "plain" : nameOf(target));
    keepBest(name, best);
    tellRatio(state, "times_plain", base + "plain", name);
    limitKernelTarget(KernelTarget::Avx512);
    state.SetItemsProcessed(state.iterations() *
                            static_cast<int64_t>(reference.plane->sampleCount()));
}

void add(const std::string& scheme, const PictureSize& size, bool plain, KernelTarget target) {
    const std::string name =
        scheme + "/" + size.name + "/" + (plain ? "plain" : nameOf(target));
    auto* entry = benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        lineScheme(state, scheme, size, plain, target);
    });
    entry->Unit(benchmark::kMillisecond)->UseRealTime();
    if (plain) {
        entry->Iterations(size.width > 4000 ? 1 : 3);
    }
}

const bool kRegistered = [] {
    for (const char* scheme : kSchemes) {
        for (const PictureSize& size : kPictureSizes) {
            add(scheme, size, /*plain=*/true, KernelTarget::Generic);
            for (const KernelTarget target :
                 {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
                if (isAvailable(target)) {
                    add(scheme, size, /*plain=*/false, target);
                }
            }
        }
    }
    return true;
}();

}  // namespace
}  // namespace orv::bench
