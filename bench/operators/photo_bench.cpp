#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "images/float_image3.h"
#include "images/kernels/pixel_kernels.h"
#include "images/rgb_discrete_image.h"
#include "orv/orv.h"
#include "schemes/flows/diffusion_flow.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "schemes/split/aos_2d_restoration.h"
#include "support/pictures.h"
#include "support/ratios.h"

#if defined(ORV_BENCH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/ximgproc.hpp>
#endif

// A whole photo of 4 megapixels, 8 bits in and out, one thread.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];
constexpr double kContrast = 10.0;
constexpr const char* kPeer = "opencv";

void finish(benchmark::State& state, const std::string& name, const BestTime& best) {
    keepBest(name, best);
    tellRatio(state, "times_opencv", kPeer, name);
    tellRatio(state, "times_call", "call/AOS", name);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}

#if defined(ORV_BENCH_OPENCV)
// One explicit step of the peer, its result buffer kept.
void opencvStep(benchmark::State& state) {
    cv::setNumThreads(1);
    std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const cv::Mat source(kSize.height, kSize.width, CV_8UC3, bytes.data());
    cv::Mat target;
    BestTime best;
    for (auto turn : state) {
        best.time([&] { cv::ximgproc::anisotropicDiffusion(source, target, 0.25f, 10.0f, 1); });
    }
    finish(state, kPeer, best);
}
BENCHMARK(opencvStep)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);
#endif

// What a host does: one call on a handle, the result handle freed.
void call(benchmark::State& state, const char* scheme, double sigma) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    BITMAPINFOHEADER header = {};
    header.biWidth = kSize.width;
    header.biHeight = kSize.height;
    header.biBitCount = 24;
    void* image = ConvertORVImage(&header, bytes.data());
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            DestroyORVImage(
                ORVFastRestoration(image, scheme, 0, 1, 2.0, 5, sigma, kContrast, "PM", 0, 0));
        });
    }
    DestroyORVImage(image);
    finish(state, std::string("call/") + scheme + (sigma > 0.0 ? "/smoothed" : ""), best);
}
BENCHMARK_CAPTURE(call, AOS, "AOS", 0.0)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(1.0);
BENCHMARK_CAPTURE(call, AOS_sigma1, "AOS", 1.0)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(1.0);
BENCHMARK_CAPTURE(call, LOD, "LOD", 0.0)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(1.0);

// The step alone: three planes of floats in memory that is in use already.
void step(benchmark::State& state, double sigma) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const RgbDiscreteImage image(kSize.width, kSize.height, bytes.data());
    const FloatImage3 planes(image);
    std::unique_ptr<FloatImage3> target;
    DiffusionFlow flow(sigma, kContrast, /*kind=*/0, /*gradientNormId=*/0);
    Aos2DRestoration scheme(0, 1, 5, 2.0, &flow, true, true);
    BestTime best;
    for (auto turn : state) {
        best.time(
            [&] { target = FloatPlanesOperator(&scheme).apply(planes, std::move(target)); });
    }
    finish(state, sigma > 0.0 ? "step/smoothed" : "step", best);
}
BENCHMARK_CAPTURE(step, AOS, 0.0)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);
BENCHMARK_CAPTURE(step, AOS_sigma1, 1.0)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(1.0);

// Bytes to planes and back; its share of the call is 1 / times_call.
void conversions(benchmark::State& state) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const RgbDiscreteImage source(kSize.width, kSize.height, bytes.data());
    RgbDiscreteImage target(kSize.width, kSize.height);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            const FloatImage3 planes(source);
            target.setFromFloat3(planes);
        });
    }
    finish(state, "conversions", best);
}
BENCHMARK(conversions)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

// The same by the loops alone, between memory that is in use already.
void conversionLoops(benchmark::State& state) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    std::vector<unsigned char> target(bytes.size());
    const std::size_t rowBytes = bytes.size() / static_cast<std::size_t>(kSize.height);
    const std::size_t stride = static_cast<std::size_t>(kSize.height);
    FloatImage3 planes(kSize.width, kSize.height);
    float* const data[] = {planes.plane(0).data(), planes.plane(1).data(),
                           planes.plane(2).data()};
    const std::size_t strides[] = {stride, stride, stride};
    const RgbKernels<float>& kernels = pixelKernels().rgbFloat;
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            kernels.readRgb(bytes.data(), rowBytes, kSize.width, kSize.height, data, stride);
            kernels.writeRgb(data, strides, target.data(), rowBytes, kSize.width, kSize.height);
        });
    }
    if (target != bytes) {
        state.SkipWithError("bytes changed on the way to planes and back");
    }
    finish(state, "conversions/loops", best);
}
BENCHMARK(conversionLoops)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

}  // namespace
}  // namespace orv::bench
