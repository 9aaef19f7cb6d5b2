#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/runtime_random.h"
#include "images/real_image3.h"
#include "images/rgb_discrete_image.h"
#include "operators/colour/color_to_grey_transfer_operator.h"
#include "operators/colour/plane_samples.h"
#include "operators/colour/simple_color_transfer_operator.h"
#include "operators/colour/swatch_search.h"
#include "support/pictures.h"
#include "support/ratios.h"

// Both colour transfers on a whole photo of 4 megapixels, bytes in and out, one thread, against
// the plain form: one loop a step and plane, the C library's log10 and pow on each sample, and
// for swatches the scan of all of them.

namespace orv::bench {
namespace {

constexpr PictureSize kSize = kPictureSizes[1];

constexpr double kLms[3][3] = {
    {0.3811, 0.5783, 0.0402}, {0.1967, 0.7244, 0.0782}, {0.0241, 0.1288, 0.8444}};
constexpr double kRgb[3][3] = {
    {4.4679, -3.5873, 0.1193}, {-1.2186, 2.3809, -0.1624}, {0.0497, -0.2439, 1.2045}};
constexpr double kLab[3][3] = {{1, 1, 1}, {1, 1, -2}, {1, -1, 0}};
constexpr double kLogs[3][3] = {{1, 1, 1}, {1, 1, -1}, {1, -2, 0}};
constexpr double kScale[3] = {0.5773502691896258, 0.4082482904638631, 0.7071067811865475};

const RgbDiscreteImage& photo() {
    static const RgbDiscreteImage image(kSize.width, kSize.height,
                                        photoBytes(kSize.width, kSize.height).data());
    return image;
}

const RgbDiscreteImage& style() {
    static const RgbDiscreteImage image(kPictureSizes[0].width, kPictureSizes[0].height,
                                        photoBytes(kSize.width, kSize.height).data());
    return image;
}

template <class Change>
void eachSample(RealImage& plane, Change change) {
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        plane.data()[i] = change(plane.data()[i]);
    }
}

std::unique_ptr<RealImage3> plainProduct(const double (&m)[3][3], const RealImage3& planes) {
    auto out = std::make_unique<RealImage3>(planes.width(), planes.height());
    const auto in = samplesOf(planes);
    for (int k = 0; k < 3; ++k) {
        double* const to = out->plane(k).data();
        for (std::size_t i = 0; i < out->plane(k).sampleCount(); ++i) {
            to[i] = m[k][0] * in[0][i] + m[k][1] * in[1][i] + m[k][2] * in[2][i];
        }
    }
    return out;
}

std::unique_ptr<RealImage3> plainForward(RealImage3& planes, double offset) {
    for (int k = 0; k < 3; ++k) {
        eachSample(planes.plane(k), [&](double v) { return (v + offset) / 256.0; });
    }
    const auto lms = plainProduct(kLms, planes);
    for (int k = 0; k < 3; ++k) {
        eachSample(lms->plane(k), [](double v) { return std::log10(v); });
    }
    auto lab = plainProduct(kLab, *lms);
    for (int k = 0; k < 3; ++k) {
        eachSample(lab->plane(k), [&](double v) { return v * kScale[k]; });
    }
    return lab;
}

std::unique_ptr<RealImage3> plainInverse(RealImage3& lab) {
    for (int k = 0; k < 3; ++k) {
        eachSample(lab.plane(k), [&](double v) { return v * kScale[k]; });
    }
    const auto lms = plainProduct(kLogs, lab);
    for (int k = 0; k < 3; ++k) {
        eachSample(lms->plane(k), [](double v) { return std::pow(10.0, v); });
    }
    auto rgb = plainProduct(kRgb, *lms);
    for (int k = 0; k < 3; ++k) {
        eachSample(rgb->plane(k),
                   [](double v) { return std::fmin(255.0, std::fmax(0.0, v * 256.0)); });
    }
    return rgb;
}

std::array<double, 2> plainStatistics(const RealImage& plane) {
    double sum = 0.0;
    double squares = 0.0;
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        sum += plane.data()[i];
        squares += plane.data()[i] * plane.data()[i];
    }
    const double n = static_cast<double>(plane.sampleCount());
    const double mean = sum / n;
    return {mean, std::sqrt(squares / n - mean * mean)};
}

std::unique_ptr<DiscreteImage> plainRecolor(const DiscreteImage& source,
                                            const DiscreteImage& styleImage) {
    RealImage3 stylePlanes(styleImage);
    const auto styleLab = plainForward(stylePlanes, 1.0);
    RealImage3 planes(source);
    const auto lab = plainForward(planes, 1.0);
    for (int k = 0; k < 3; ++k) {
        const auto [styleMean, styleDeviation] = plainStatistics(styleLab->plane(k));
        const auto [mean, deviation] = plainStatistics(lab->plane(k));
        const double ratio = styleDeviation / deviation;
        eachSample(lab->plane(k),
                   [&, m = mean, s = styleMean](double v) { return ratio * (v - m) + s; });
    }
    auto target = source.clone();
    target->setFromReal3(*plainInverse(*lab));
    return target;
}

std::unique_ptr<DiscreteImage> recolor(const DiscreteImage& source,
                                       const DiscreteImage& styleImage) {
    SimpleColorTransferOperator op(std::make_unique<ColorSpaceChain>());
    op.setStyle(styleImage);
    return op.apply(source, nullptr);
}

int plainNearest(double score, std::span<const std::unique_ptr<ColorSwatch>> swatches) {
    int best = 0;
    bool found = false;
    double least = 0.0;
    for (std::size_t k = 0; k < swatches.size(); ++k) {
        const double difference = score - swatches[k]->score();
        const double square = difference * difference;
        if (!std::isnan(square) && (!found || square < least)) {
            found = true;
            least = square;
            best = static_cast<int>(k);
        }
    }
    return best;
}

// What both photos must agree on: all bytes but a few that a last bit moves over an integer.
void expectClose(const DiscreteImage& a, const DiscreteImage& b) {
    const std::size_t bytes = std::size_t{3} * static_cast<std::size_t>(a.width()) *
                              static_cast<std::size_t>(a.height());
    std::size_t differ = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        const int apart = a.packedRgb()[i] - b.packedRgb()[i];
        differ += apart != 0 ? 1U : 0U;
        if (apart < -1 || apart > 1 || differ > bytes / 10000) {
            std::fputs("colour_bench: the engine and the plain form disagree\n", stderr);
            std::exit(1);
        }
    }
}

void finish(benchmark::State& state, const std::string& name, const std::string& plain,
            const BestTime& best) {
    keepBest(name, best);
    tellRatio(state, "times_plain", plain, name);
    state.SetItemsProcessed(state.iterations() * kSize.width * kSize.height);
}

void recolorPlain(benchmark::State& state) {
    expectClose(*recolor(photo(), style()), *plainRecolor(photo(), style()));
    BestTime best;
    for (auto turn : state) {
        best.time([] { benchmark::DoNotOptimize(plainRecolor(photo(), style())); });
    }
    finish(state, "recolor/plain", "recolor/plain", best);
}
BENCHMARK(recolorPlain)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

void recolorEngine(benchmark::State& state) {
    recolor(photo(), style());
    BestTime best;
    for (auto turn : state) {
        best.time([] { benchmark::DoNotOptimize(recolor(photo(), style())); });
    }
    finish(state, "recolor", "recolor/plain", best);
}
BENCHMARK(recolorEngine)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

// As many swatches as a photo of this size has, at random scores.
std::vector<std::unique_ptr<ColorSwatch>> someSwatches() {
    std::vector<std::unique_ptr<ColorSwatch>> swatches;
    seedRuntimeRandom(1);
    for (int k = 0; k < (kSize.width + kSize.height) / 2; ++k) {
        swatches.push_back(
            std::make_unique<ColorSwatch>(0, 0, 5, 5, -2.0 * runtimeRandom() / 32767.0,
                                          0.1 * runtimeRandom() / 32767.0, 0.0, 0.0));
    }
    return swatches;
}

std::vector<double> someScores(std::size_t count) {
    std::vector<double> scores(count);
    for (double& score : scores) {
        score = -1.0 * runtimeRandom() / 32767.0 - runtimeRandom() / 1e9;
    }
    return scores;
}

constexpr std::size_t kScores = 65536;

void searchPlain(benchmark::State& state) {
    const auto swatches = someSwatches();
    const std::vector<double> scores = someScores(kScores);
    const SwatchSearch search{std::span<const std::unique_ptr<ColorSwatch>>(swatches)};
    for (const double score : scores) {
        if (search.nearest(score) != plainNearest(score, swatches)) {
            state.SkipWithError("the search and the scan disagree");
            return;
        }
    }
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (const double score : scores) {
                benchmark::DoNotOptimize(plainNearest(score, swatches));
            }
        });
    }
    finish(state, "search/plain", "search/plain", best);
}
BENCHMARK(searchPlain)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

void searchOrdered(benchmark::State& state) {
    const auto swatches = someSwatches();
    const std::vector<double> scores = someScores(kScores);
    std::vector<int> matches(scores.size());
    // One turn is too short for the clock of processor time.
    constexpr int kTurns = 16;
    BestTime best;
    for (auto turn : state) {
        best.time([&] {
            for (int i = 0; i < kTurns; ++i) {
                const SwatchSearch search{
                    std::span<const std::unique_ptr<ColorSwatch>>(swatches)};
                search.nearest(scores.data(), matches.data(), scores.size());
                benchmark::DoNotOptimize(matches.data());
            }
        });
    }
    finish(state, "search", "search/plain", best);
    state.counters["times_plain"] = static_cast<double>(state.counters["times_plain"]) * kTurns;
}
BENCHMARK(searchOrdered)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(1.0);

// The windows of the plain form, one after the other; its swatches are found by the order.
std::unique_ptr<DiscreteImage> plainColorize(const DiscreteImage& grey,
                                             const ColorToGreyTransferOperator& op) {
    RealImage3 planes(grey);
    const auto lab = plainForward(planes, 0.0);
    const RealImage light(lab->plane(0));
    std::vector<double> scores;
    for (int k = 0; k < op.swatchCount(); ++k) {
        scores.push_back(op.swatch(k).score());
    }
    const SwatchSearch search{std::span<const double>(scores)};
    for (int x = 0; x < grey.width(); ++x) {
        for (int y = 0; y < grey.height(); ++y) {
            double sum = 0.0;
            double squares = 0.0;
            int n = 0;
            for (int i = std::max(x - 3, 0); i < std::min(x + 3, grey.width()); ++i) {
                for (int j = std::max(y - 3, 0); j < std::min(y + 3, grey.height()); ++j) {
                    const double v = light.row(i)[j];
                    sum += v;
                    squares += v * v;
                    ++n;
                }
            }
            const double mean = sum / n;
            const double variance = squares / n - mean * mean;
            const double deviation = std::sqrt(variance < 0.0 ? 0.0 : variance);
            const ColorSwatch& match = op.swatch(search.nearest((deviation + mean) * 0.5));
            lab->plane(1).row(x)[y] = match.alpha();
            lab->plane(2).row(x)[y] = match.beta();
        }
    }
    auto target = grey.clone();
    target->setFromReal3(*plainInverse(*lab));
    return target;
}

void colorizePlain(benchmark::State& state) {
    ColorToGreyTransferOperator op(std::make_unique<ColorSpaceChain>());
    op.learnSwatches(style());
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(plainColorize(photo(), op)); });
    }
    finish(state, "colorize/plain", "colorize/plain", best);
}
BENCHMARK(colorizePlain)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

void colorizeEngine(benchmark::State& state) {
    ColorToGreyTransferOperator op(std::make_unique<ColorSpaceChain>());
    op.learnSwatches(style());
    expectClose(*op.apply(photo(), nullptr), *plainColorize(photo(), op));
    BestTime best;
    for (auto turn : state) {
        best.time([&] { benchmark::DoNotOptimize(op.apply(photo(), nullptr)); });
    }
    finish(state, "colorize", "colorize/plain", best);
}
BENCHMARK(colorizeEngine)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

}  // namespace
}  // namespace orv::bench
