#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "filters/homomorphic_filter.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/thin/homomorphic_operator.h"
#include "schemes/plane_operators/real_planes_operator.h"
#include "support/pictures.h"
#include "support/ratios.h"

#if defined(ORV_BENCH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

// Mode 8 of the homomorphic filter on a photo of 4 megapixels, three channels, one thread. The
// plain form goes sample by sample through the library's log, exp and pow, and line by line
// through the blur.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];
constexpr double kSigma = 8.0;
constexpr double kGamma = 1.8;

void plainLine(const RealRecursive2dBlurOperator& op, double* line, std::size_t n,
               std::size_t step, std::vector<double>& f, std::vector<double>& g) {
    f[0] = line[2 * step];
    f[1] = line[step];
    f[2] = line[0];
    for (std::size_t i = 0; i < n; ++i) {
        f[i + 3] = op.B() * line[i * step] + op.b1OverB0() * f[i + 2] +
                   op.b2OverB0() * f[i + 1] + op.b3OverB0() * f[i];
    }
    g[n + 2] = f[n];
    g[n + 1] = f[n + 1];
    g[n] = f[n + 2];
    for (std::size_t i = n; i-- > 0;) {
        g[i] = op.B() * f[i + 3] + op.b1OverB0() * g[i + 1] + op.b2OverB0() * g[i + 2] +
               op.b3OverB0() * g[i + 3];
        line[i * step] = g[i];
    }
}

void plainBlur(RealImage& plane) {
    const RealRecursive2dBlurOperator op(kSigma);
    const auto w = static_cast<std::size_t>(plane.width());
    const auto h = static_cast<std::size_t>(plane.height());
    std::vector<double> f((w > h ? w : h) + 3);
    std::vector<double> g(f.size());
    for (std::size_t y = 0; y < h; ++y) {
        plainLine(op, plane.data() + y, w, h, f, g);
    }
    for (std::size_t x = 0; x < w; ++x) {
        plainLine(op, plane.data() + x * h, h, 1, f, g);
    }
}

void plainFilter(const RealImage& source, RealImage& target) {
    const std::size_t count = source.sampleCount();
    for (std::size_t i = 0; i < count; ++i) {
        target.data()[i] = std::log(source.data()[i] + 0.0);
    }
    plainBlur(target);
    for (std::size_t i = 0; i < count; ++i) {
        const double s = source.data()[i];
        double m = std::exp(target.data()[i]);
        m = m < 0.0 ? 0.0 : m;
        m = m < s ? s : m;
        double r = s / m;
        r = r < 0.0 ? 0.0 : r;
        r = r > 1.0 ? 1.0 : r;
        target.data()[i] = std::pow(m * 0.00392156862745098, 1.0 / kGamma) * 255.0 * r;
    }
}

void finish(benchmark::State& state, const std::string& name, const BestTime& best) {
    keepBest("homomorphic/" + name, best);
    tellRatio(state, "times_plain", "homomorphic/plain", "homomorphic/" + name);
    tellRatio(state, "times_opencv", "homomorphic/opencv", "homomorphic/" + name);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}

/// A photo without black samples.
RgbDiscreteImage photo() {
    std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    for (unsigned char& byte : bytes) {
        byte = byte == 0 ? 1 : byte;
    }
    return RgbDiscreteImage(kSize.width, kSize.height, bytes.data());
}

void plain(benchmark::State& state) {
    const RealImage3 planes(photo());
    RealImage3 target(kSize.width, kSize.height);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int c = 0; c < 3; ++c) {
                plainFilter(planes.plane(c), target.plane(c));
            }
        });
    }
    finish(state, "plain", best);
}

#if defined(ORV_BENCH_OPENCV)
// The same formula by OpenCV's own functions on floats, from bytes to bytes.
cv::Mat opencvFilter(const cv::Mat& bytes) {
    cv::Mat source;
    cv::Mat light;
    bytes.convertTo(source, CV_32FC3);
    cv::log(source, light);
    cv::GaussianBlur(light, light, cv::Size(0, 0), kSigma, kSigma, cv::BORDER_REFLECT);
    cv::exp(light, light);
    cv::max(light, source, light);
    cv::Mat share;
    cv::divide(source, light, share, 255.0);
    light.convertTo(light, CV_32FC3, 1.0 / 255.0);
    cv::pow(light, 1.0 / kGamma, light);
    cv::multiply(light, share, light);
    cv::Mat result;
    light.convertTo(result, CV_8UC3);
    return result;
}

void opencv(benchmark::State& state) {
    cv::setNumThreads(1);
    std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const cv::Mat source(kSize.height, kSize.width, CV_8UC3, bytes.data());
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(opencvFilter(source)); });
    }
    finish(state, "opencv", best);
}
#endif

bool close(const RealImage& a, const RealImage& b) {
    for (std::size_t i = 0; i < a.sampleCount(); ++i) {
        if (!(std::fabs(a.data()[i] - b.data()[i]) < 1e-9)) {
            return false;
        }
    }
    return true;
}

void planes(benchmark::State& state) {
    const RealImage3 source(photo());
    RealImage expected(kSize.width, kSize.height);
    plainFilter(source.plane(0), expected);
    HomomorphicFilter filter(8, kSigma, kGamma);
    RealPlanesOperator op(&filter);
    auto target = std::make_unique<RealImage3>(kSize.width, kSize.height);
    target = op.apply(source, std::move(target));
    if (!close(target->plane(0), expected)) {
        state.SkipWithError("not the samples of the plain form");
        return;
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { target = op.apply(source, std::move(target)); });
    }
    finish(state, "planes", best);
}

// 8 bits in and out, the result picture made anew: what a host's call does.
void bytes(benchmark::State& state) {
    const RgbDiscreteImage source = photo();
    HomomorphicOperator op(8, kGamma);
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(op.apply(source, nullptr)); });
    }
    finish(state, "bytes", best);
}

#define ORV_BENCH(name) \
    BENCHMARK(name)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0)

ORV_BENCH(plain)->Name("homomorphic/plain");
#if defined(ORV_BENCH_OPENCV)
ORV_BENCH(opencv)->Name("homomorphic/opencv");
#endif
ORV_BENCH(planes)->Name("homomorphic/planes");
ORV_BENCH(bytes)->Name("homomorphic/bytes");

}  // namespace
}  // namespace orv::bench
