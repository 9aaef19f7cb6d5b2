#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/text_output.h"
#include "filters/float_recursive_2d_blur_operator.h"
#include "filters/real_recursive_2d_blur_operator.h"
#include "images/float_image3.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/thin/van_vliet_blur_operator.h"
#include "schemes/plane_operators/float_planes_operator.h"
#include "support/pictures.h"
#include "support/ratios.h"

#if defined(ORV_BENCH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#if defined(ORV_BENCH_CIMG)
// Its macros hold casts that no system header hides.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <CImg.h>
#pragma GCC diagnostic pop
#endif

// Recursive blur of a photo of 4 megapixels, three channels, one thread. The plain form is one
// line at a time through two buffers, as the formula is written.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];

template <class Operator, class Sample>
void plainLine(const Operator& op, const std::vector<Sample>& s, std::vector<Sample>& f,
               std::vector<Sample>& g) {
    const std::size_t n = s.size();
    const Sample gain = op.B();
    const Sample k1 = op.b1OverB0();
    const Sample k2 = op.b2OverB0();
    const Sample k3 = op.b3OverB0();
    f[0] = s[2];
    f[1] = s[1];
    f[2] = s[0];
    for (std::size_t i = 0; i < n; ++i) {
        f[i + 3] = gain * s[i] + k1 * f[i + 2] + k2 * f[i + 1] + k3 * f[i];
    }
    g[n + 2] = f[n];
    g[n + 1] = f[n + 1];
    g[n] = f[n + 2];
    for (std::size_t i = n; i-- > 0;) {
        g[i] = gain * f[i + 3] + k1 * g[i + 1] + k2 * g[i + 2] + k3 * g[i + 3];
    }
}

template <class Sample, class Operator, class Image>
void plainBlur(const Operator& op, const Image& source, Image& target) {
    const int w = source.width();
    const int h = source.height();
    std::vector<Sample> s(static_cast<std::size_t>(w));
    std::vector<Sample> f(s.size() + 3);
    std::vector<Sample> g(s.size() + 3);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            s[static_cast<std::size_t>(x)] = source.row(x)[y];
        }
        plainLine(op, s, f, g);
        for (int x = 0; x < w; ++x) {
            target.row(x)[y] = g[static_cast<std::size_t>(x)];
        }
    }
    s.resize(static_cast<std::size_t>(h));
    f.resize(s.size() + 3);
    g.resize(s.size() + 3);
    for (int x = 0; x < w; ++x) {
        s.assign(target.row(x), target.row(x) + h);
        plainLine(op, s, f, g);
        std::memcpy(target.row(x), g.data(), s.size() * sizeof(Sample));
    }
}

void plainRead(const std::vector<unsigned char>& bytes, FloatImage3& planes) {
    for (int y = 0; y < kSize.height; ++y) {
        for (int x = 0; x < kSize.width; ++x) {
            const std::size_t at =
                3 * (static_cast<std::size_t>(y) * kSize.width + static_cast<std::size_t>(x));
            for (int c = 0; c < 3; ++c) {
                planes.plane(c).row(x)[y] = bytes[at + 2 - static_cast<std::size_t>(c)];
            }
        }
    }
}

void plainWrite(const FloatImage3& planes, std::vector<unsigned char>& bytes) {
    for (int y = 0; y < kSize.height; ++y) {
        for (int x = 0; x < kSize.width; ++x) {
            const std::size_t at =
                3 * (static_cast<std::size_t>(y) * kSize.width + static_cast<std::size_t>(x));
            for (int c = 0; c < 3; ++c) {
                bytes[at + 2 - static_cast<std::size_t>(c)] =
                    static_cast<unsigned char>(static_cast<int>(planes.plane(c).row(x)[y]));
            }
        }
    }
}

// From bytes to bytes by the plain form.
void plainPicture(const FloatRecursive2dBlurOperator& op,
                  const std::vector<unsigned char>& bytes, std::vector<unsigned char>& result) {
    FloatImage3 planes(kSize.width, kSize.height);
    FloatImage3 target(kSize.width, kSize.height);
    result.resize(bytes.size());
    plainRead(bytes, planes);
    for (int c = 0; c < 3; ++c) {
        plainBlur<float>(op, planes.plane(c), target.plane(c));
    }
    plainWrite(target, result);
}

std::string named(const char* what, double sigma) {
    return std::string(what) + "/" + std::to_string(static_cast<int>(sigma));
}

void finish(benchmark::State& state, const char* what, double sigma, const BestTime& best) {
    const std::string name = named(what, sigma);
    keepBest(name, best);
    tellRatio(state, "times_plain", named("plain", sigma), name);
    tellRatio(state, "times_plain_bytes", named("plain_bytes", sigma), name);
    tellRatio(state, "times_cv8", named("opencv8", sigma), name);
    tellRatio(state, "times_cvfloat", named("opencv_float", sigma), name);
    tellRatio(state, "times_cimg", named("cimg", sigma), name);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}

RgbDiscreteImage photo() {
    return RgbDiscreteImage(kSize.width, kSize.height,
                            photoBytes(kSize.width, kSize.height).data());
}

void plainPlanes(benchmark::State& state, double sigma) {
    const SilencedOutput silence;
    const FloatImage3 planes(photo());
    FloatImage3 target(kSize.width, kSize.height);
    FloatRecursive2dBlurOperator op(sigma);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int c = 0; c < 3; ++c) {
                plainBlur<float>(op, planes.plane(c), target.plane(c));
            }
        });
    }
    finish(state, "plain", sigma, best);
}

void plainDoubles(benchmark::State& state, double sigma) {
    const RealImage3 planes(photo());
    RealImage3 target(kSize.width, kSize.height);
    RealRecursive2dBlurOperator op(sigma);
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int c = 0; c < 3; ++c) {
                plainBlur<double>(op, planes.plane(c), target.plane(c));
            }
        });
    }
    finish(state, "plain_doubles", sigma, best);
}

void plainBytes(benchmark::State& state, double sigma) {
    const SilencedOutput silence;
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    std::vector<unsigned char> result(bytes.size());
    FloatRecursive2dBlurOperator op(sigma);
    BestTime best;
    for (auto turn : state) {
        best.time([&] { plainPicture(op, bytes, result); });
    }
    finish(state, "plain_bytes", sigma, best);
}

#if defined(ORV_BENCH_OPENCV)
constexpr int kBytes3 = cv::traits::Type<cv::Vec3b>::value;
constexpr int kFloats3 = cv::traits::Type<cv::Vec3f>::value;

void opencv(benchmark::State& state, double sigma, int type) {
    cv::setNumThreads(1);
    std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    cv::Mat source;
    cv::Mat(kSize.height, kSize.width, kBytes3, bytes.data()).convertTo(source, type);
    cv::Mat target;
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            cv::GaussianBlur(source, target, cv::Size(0, 0), sigma, sigma, cv::BORDER_REFLECT);
        });
    }
    finish(state, type == kBytes3 ? "opencv8" : "opencv_float", sigma, best);
}
#endif

#if defined(ORV_BENCH_CIMG)
void cimg(benchmark::State& state, double sigma) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    cimg_library::CImg<float> source(kSize.width, kSize.height, 1, 3);
    for (int c = 0; c < 3; ++c) {
        for (std::size_t i = 0; i < bytes.size() / 3; ++i) {
            source.data(0, 0, 0, static_cast<unsigned>(c))[i] =
                bytes[3 * i + static_cast<std::size_t>(c)];
        }
    }
    cimg_library::CImg<float> target(source);
    BestTime best;
    for (auto turn : state) {
        std::memcpy(target.data(), source.data(), source.size() * sizeof(float));
        best.time([&] {
            const auto width = static_cast<float>(sigma);
            target.vanvliet(width, 0, 'x').vanvliet(width, 0, 'y');
        });
    }
    finish(state, "cimg", sigma, best);
}
#endif

template <class Image>
bool sameSamples(const Image& result, const Image& expected) {
    return std::memcmp(result.data(), expected.data(),
                       expected.sampleCount() * sizeof(*expected.data())) == 0;
}

// The three planes through the wrapper, in memory that is in use already.
void planes(benchmark::State& state, double sigma) {
    const SilencedOutput silence;
    const FloatImage3 source(photo());
    auto target = std::make_unique<FloatImage3>(kSize.width, kSize.height);
    FloatRecursive2dBlurOperator op(sigma);
    FloatImage expected(kSize.width, kSize.height);
    target = FloatPlanesOperator(&op).apply(source, std::move(target));
    for (int c = 0; c < 3; ++c) {
        plainBlur<float>(op, source.plane(c), expected);
        if (!sameSamples(target->plane(c), expected)) {
            return state.SkipWithError("not the samples of the plain form");
        }
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { target = FloatPlanesOperator(&op).apply(source, std::move(target)); });
    }
    finish(state, "planes", sigma, best);
}

void doubles(benchmark::State& state, double sigma) {
    const RealImage3 source(photo());
    RealRecursive2dBlurOperator op(sigma);
    RealImage expected(kSize.width, kSize.height);
    plainBlur<double>(op, source.plane(0), expected);
    std::unique_ptr<RealImage> target = op.apply(source.plane(0), source.plane(0).clone());
    if (!sameSamples(*target, expected)) {
        return state.SkipWithError("not the samples of the plain form");
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int c = 0; c < 3; ++c) {
                target = op.apply(source.plane(c), std::move(target));
            }
        });
    }
    finish(state, "doubles", sigma, best);
    tellRatio(state, "times_plain", named("plain_doubles", sigma), named("doubles", sigma));
}

// 8 bits in and out, the result picture made anew: what a host's call does.
void bytes(benchmark::State& state, double sigma) {
    const SilencedOutput silence;
    const RgbDiscreteImage source = photo();
    VanVlietBlurOperator op(sigma);
    std::vector<unsigned char> expected;
    plainPicture(FloatRecursive2dBlurOperator(sigma), photoBytes(kSize.width, kSize.height),
                 expected);
    if (std::memcmp(op.apply(source, nullptr)->data(), expected.data(), expected.size()) != 0) {
        return state.SkipWithError("not the bytes of the plain form");
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(op.apply(source, nullptr)); });
    }
    finish(state, "bytes", sigma, best);
}

#define ORV_BENCH(name, ...)             \
    BENCHMARK_CAPTURE(name, __VA_ARGS__) \
        ->Unit(benchmark::kMillisecond)  \
        ->UseRealTime()                  \
        ->MinTime(1.0)

ORV_BENCH(plainPlanes, sigma8, 8.0);
ORV_BENCH(plainDoubles, sigma8, 8.0);
ORV_BENCH(plainBytes, sigma8, 8.0);
#if defined(ORV_BENCH_OPENCV)
ORV_BENCH(opencv, bytes8, 8.0, kBytes3);
ORV_BENCH(opencv, floats8, 8.0, kFloats3);
ORV_BENCH(opencv, bytes32, 32.0, kBytes3);
ORV_BENCH(opencv, floats32, 32.0, kFloats3);
#endif
#if defined(ORV_BENCH_CIMG)
ORV_BENCH(cimg, sigma8, 8.0);
#endif
ORV_BENCH(planes, sigma8, 8.0);
ORV_BENCH(doubles, sigma8, 8.0);
ORV_BENCH(bytes, sigma8, 8.0);
ORV_BENCH(planes, sigma32, 32.0);
ORV_BENCH(bytes, sigma32, 32.0);

}  // namespace
}  // namespace orv::bench
