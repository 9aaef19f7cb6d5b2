#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "filters/kernels/retinex_kernels.h"
#include "images/real_image.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/thin/retinex_operator.h"
#include "support/pictures.h"
#include "support/ratios.h"

// The variational Retinex on 4 megapixels and three channels, one thread, against the same
// formulas written down plainly: a plane for each quantity, the C library's functions.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];
constexpr double kGamma = 2.0;
constexpr double kAlpha = 0.0001;
constexpr double kBeta = 0.1;
constexpr int kLevels = 9;

RealImage plainLaplacian(const RealImage& p) {
    RealImage result(p.width(), p.height());
    const int lastX = p.width() - 1;
    const int lastY = p.height() - 1;
    for (int x = 0; x <= lastX; ++x) {
        for (int y = 0; y <= lastY; ++y) {
            const bool innerX = x > 0 && x < lastX;
            const bool innerY = y > 0 && y < lastY;
            double value = 0.0;
            if (innerX && innerY) {
                value = p.row(x)[y - 1] + p.row(x)[y + 1] + p.row(x + 1)[y] + p.row(x - 1)[y] -
                        4.0 * p.row(x)[y];
            } else if (innerX) {
                value = p.row(x - 1)[y] + p.row(x + 1)[y] - 2.0 * p.row(x)[y];
            } else if (innerY) {
                value = p.row(x)[y - 1] + p.row(x)[y + 1] - 2.0 * p.row(x)[y];
            }
            result.row(x)[y] = value;
        }
    }
    return result;
}

/// One pass on a level; D, the Laplacian of s, is made once a level.
void plainPass(RealImage& l, const RealImage& s, const RealImage& d, RealImage& g) {
    const RealImage a = plainLaplacian(l);
    const std::size_t count = l.sampleCount();
    double squares = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        g.data()[i] = a.data()[i] + (l.data()[i] - s.data()[i]) * kAlpha -
                      (a.data()[i] - d.data()[i]) * kBeta;
        squares += g.data()[i] * g.data()[i];
    }
    const RealImage b = plainLaplacian(g);
    double products = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        products += g.data()[i] * b.data()[i];
    }
    const double mA = squares / static_cast<double>(count);
    const double mB = -products / static_cast<double>(count);
    const double mu = std::min(std::fabs(mA / (kAlpha * mA + (kBeta + 1.0) * mB)), 0.2);
    for (std::size_t i = 0; i < count; ++i) {
        l.data()[i] = std::max(l.data()[i] + mu * g.data()[i], s.data()[i]);
    }
}

/// The borders that taking every other sample can't reach are left out.
RealImage plainReduced(const RealImage& p) {
    RealImage result(p.width() / 2, p.height() / 2);
    for (int i = 0; i < result.width(); ++i) {
        for (int j = 0; j < result.height(); ++j) {
            const int x = 2 * i;
            const int y = 2 * j;
            double sum = 4.0 * p.row(x)[y] + 2.0 * (p.row(x)[y + 1] + p.row(x + 1)[y]) +
                         p.row(x + 1)[y + 1];
            double weight = 9.0;
            if (x > 0) {
                sum += 2.0 * p.row(x - 1)[y] + p.row(x - 1)[y + 1];
                weight += 3.0;
            }
            if (y > 0) {
                sum += 2.0 * p.row(x)[y - 1] + p.row(x + 1)[y - 1];
                weight += 3.0;
            }
            if (x > 0 && y > 0) {
                sum += p.row(x - 1)[y - 1];
                weight += 1.0;
            }
            result.row(i)[j] = sum / weight;
        }
    }
    return result;
}

RealImage plainExpanded(const RealImage& l, const RealImage& finer) {
    const int w = l.width();
    const int h = l.height();
    RealImage result(finer.width(), finer.height());
    double v = 0.0;
    for (int i = 0; i < finer.width(); ++i) {
        for (int j = 0; j < finer.height(); ++j) {
            const int a = i / 2;
            const int b = j / 2;
            if (i % 2 == 0 && j % 2 == 0 && a < w && b < h) {
                v = l.row(a)[b];
            } else if (i % 2 != 0 && j % 2 == 0 && a < w - 1 && b < h) {
                v = (l.row(a + 1)[b] + l.row(a)[b]) * 0.5;
            } else if (i % 2 == 0 && j % 2 != 0 && b < h - 1 && a < w) {
                v = (l.row(a)[b + 1] + l.row(a)[b]) * 0.5;
            } else if (i % 2 != 0 && j % 2 != 0 && a < w - 1 && b < h - 1) {
                v = (l.row(a)[b] + l.row(a)[b + 1] + l.row(a + 1)[b + 1] + l.row(a + 1)[b]) *
                    0.25;
            }
            v = std::max(v, finer.row(a)[b]);
            result.row(i)[j] = v;
        }
    }
    return result;
}

/// The estimate of level 0 over the logarithm of a picture.
std::unique_ptr<RealImage> plainIllumination(const RealImage& logarithm) {
    std::vector<std::unique_ptr<RealImage>> s;
    s.push_back(logarithm.clone());
    for (int k = 1; k < kLevels; ++k) {
        s.push_back(std::make_unique<RealImage>(plainReduced(*s.back())));
    }
    const RealImage& last = *s.back();
    auto l = std::make_unique<RealImage>(
        last.width(), last.height(),
        *std::max_element(last.data(), last.data() + last.sampleCount()));
    for (int k = kLevels - 1; k > 0; --k) {
        const RealImage& level = *s[static_cast<std::size_t>(k)];
        const RealImage d = plainLaplacian(level);
        RealImage g(level.width(), level.height());
        for (int pass = 0; pass < 4 * k; ++pass) {
            plainPass(*l, level, d, g);
        }
        l = std::make_unique<RealImage>(plainExpanded(*l, *s[static_cast<std::size_t>(k) - 1]));
    }
    return l;
}

std::unique_ptr<RealImage> plainPlane(const RealImage& plane) {
    auto result = plane.clone();
    RealImage logarithm(plane.width(), plane.height());
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        result->data()[i] = (plane.data()[i] + 1.0) / 256.0;
        logarithm.data()[i] = std::log(result->data()[i]);
    }
    const auto l = plainIllumination(logarithm);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const double light = std::pow(std::exp(l->data()[i]), 1.0 - 1.0 / kGamma);
        result->data()[i] = std::min(result->data()[i] / light, 1.0) * 255.0;
    }
    return result;
}

RealImage3 photo() {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    return RealImage3(RgbDiscreteImage(kSize.width, kSize.height, bytes.data()));
}

/// The C library rounds its functions otherwise; nothing else may differ.
bool nearlyEqual(const RealImage& a, const RealImage& b) {
    for (std::size_t i = 0; i < a.sampleCount(); ++i) {
        if (!(std::fabs(a.data()[i] - b.data()[i]) <= 1e-9)) {
            return false;
        }
    }
    return true;
}

void finish(benchmark::State& state, const std::string& name, const std::string& plain,
            const BestTime& best) {
    keepBest(name, best);
    tellRatio(state, "times_plain", plain, name);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}

void retinexPlain(benchmark::State& state) {
    const RealImage3 planes = photo();
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int c = 0; c < 3; ++c) {
                benchmark::DoNotOptimize(plainPlane(planes.plane(c)));
            }
        });
    }
    finish(state, "retinex/plain", "retinex/plain", best);
}
BENCHMARK(retinexPlain)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

void retinex(benchmark::State& state) {
    const RealImage3 planes = photo();
    RetinexOperator op(kGamma, kAlpha, kBeta, kLevels);
    auto target = op.runPlanes(planes, nullptr);
    if (!nearlyEqual(target->plane(1), *plainPlane(planes.plane(1)))) {
        state.SkipWithError("the plain form gives other samples");
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] { target = op.runPlanes(planes, std::move(target)); });
    }
    finish(state, "retinex", "retinex/plain", best);
}
BENCHMARK(retinex)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

// From bytes to bytes, as a host's call does.
void retinexOfBytes(benchmark::State& state) {
    const std::vector<unsigned char> bytes = photoBytes(kSize.width, kSize.height);
    const RgbDiscreteImage image(kSize.width, kSize.height, bytes.data());
    RetinexOperator op(kGamma, kAlpha, kBeta, kLevels);
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(op.apply(image, nullptr)); });
    }
    finish(state, "retinex/bytes", "retinex/plain", best);
}
BENCHMARK(retinexOfBytes)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

RealImage darkPlane(int width, int height) {
    RealImage plane(photo().plane(0));
    plane.add(1.0);
    plane.divide(256.0);
    plane.logOf(0.0);
    RealImage part(width, height);
    part.assign(plane);
    return part;
}

// Four passes on level 1 of the photo, where most of the stencil work is.
void passesPlain(benchmark::State& state) {
    const RealImage s = darkPlane(kSize.width / 2, kSize.height / 2);
    const RealImage d = plainLaplacian(s);
    RealImage l(s.width(), s.height(), 0.0);
    RealImage g(s.width(), s.height());
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int pass = 0; pass < 4; ++pass) {
                plainPass(l, s, d, g);
            }
        });
    }
    finish(state, "passes/plain", "passes/plain", best);
}
BENCHMARK(passesPlain)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

void passes(benchmark::State& state) {
    const RealImage s = darkPlane(kSize.width / 2, kSize.height / 2);
    RealImage l(s.width(), s.height(), 0.0);
    RealImage g(s.width(), s.height());
    const RetinexKernels& kernels = retinexKernels();
    const RetinexLevel level = {s.width(), s.height(), s.data(), l.data(),
                                g.data(),  kAlpha,     kBeta};
    const auto run = [&] {
        double mu = 0.0;
        for (int pass = 0; pass < 4; ++pass) {
            const RetinexSums sums = kernels.sweep(level, mu, pass > 0);
            mu = std::min(std::fabs(sums.gg / (kAlpha * sums.gg + (kBeta + 1.0) * -sums.gb)),
                          0.2);
        }
        kernels.step(l.data(), g.data(), s.data(), mu, l.sampleCount());
    };
    RealImage expected(l);
    RealImage direction(g);
    const RealImage d = plainLaplacian(s);
    run();
    for (int pass = 0; pass < 4; ++pass) {
        plainPass(expected, s, d, direction);
    }
    if (!nearlyEqual(l, expected)) {
        state.SkipWithError("the plain passes give another estimate");
    }
    BestTime best;
    for (auto turn : state) {
        best.time(run);
    }
    finish(state, "passes", "passes/plain", best);
}
BENCHMARK(passes)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

}  // namespace
}  // namespace orv::bench
