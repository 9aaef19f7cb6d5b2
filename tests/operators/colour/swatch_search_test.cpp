#include "operators/colour/swatch_search.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "support/plain_colour.h"
#include "support/plane_support.h"

namespace orv {
namespace {

using test::Noise;
using test::PlainColour;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void expectScan(const std::vector<double>& scores, const std::vector<double>& wanted) {
    const SwatchSearch search{std::span<const double>(scores)};
    std::vector<int> found(wanted.size());
    search.nearest(wanted.data(), found.data(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        ASSERT_EQ(found[i], PlainColour::nearest(wanted[i], scores))
            << wanted[i] << " among " << scores.size() << " scores";
        ASSERT_EQ(search.nearest(wanted[i]), found[i]);
    }
}

// What lies at, between and next to the scores, and far from all of them.
std::vector<double> tellingScores(const std::vector<double>& scores) {
    std::vector<double> wanted = {0.0,   -0.0,      1e-300, -1e-300,    1e300,  -1e300,
                                  1e200, kInfinity, kNaN,   -kInfinity, 5e-324, -1.7976e308};
    for (std::size_t k = 0; k < scores.size() && k < 40; ++k) {
        for (const double other : {scores[k], scores[(k * 7 + 1) % scores.size()]}) {
            const double middle = scores[k] / 2.0 + other / 2.0;
            for (const double at : {scores[k], middle}) {
                wanted.push_back(at);
                wanted.push_back(std::nextafter(at, kInfinity));
                wanted.push_back(std::nextafter(at, -kInfinity));
            }
        }
    }
    return wanted;
}

TEST(SwatchSearch, AgreesWithTheScanOnRandomScores) {
    Noise noise(1);
    for (int turn = 0; turn < 200; ++turn) {
        std::vector<double> scores(static_cast<std::size_t>(noise.integer(1, 400)));
        for (double& score : scores) {
            score = noise.between(-3.0, 0.5);
        }
        std::vector<double> wanted = tellingScores(scores);
        for (int i = 0; i < 300; ++i) {
            wanted.push_back(noise.between(-4.0, 1.0));
        }
        expectScan(scores, wanted);
    }
}

TEST(SwatchSearch, AgreesWithTheScanOnScoresThatRepeatAndTie) {
    Noise noise(2);
    for (int turn = 0; turn < 200; ++turn) {
        std::vector<double> scores(static_cast<std::size_t>(noise.integer(1, 60)));
        for (double& score : scores) {
            score = 0.25 * noise.integer(-8, 8);
        }
        std::vector<double> wanted = tellingScores(scores);
        for (int eighth = -20; eighth <= 20; ++eighth) {
            wanted.push_back(0.125 * eighth);
        }
        expectScan(scores, wanted);
    }
}

TEST(SwatchSearch, AgreesWithTheScanWhereRoundingMakesNeighboursTie) {
    Noise noise(3);
    for (int turn = 0; turn < 200; ++turn) {
        std::vector<double> scores;
        double score = noise.between(-1.0, 1.0) * std::pow(10.0, noise.integer(-170, 0));
        const int count = noise.integer(2, 50);
        for (int k = 0; k < count; ++k) {
            scores.push_back(score);
            for (int step = noise.integer(0, 3); step > 0; --step) {
                score = std::nextafter(score, k % 2 == 0 ? 1.0 : -1.0);
            }
        }
        std::vector<double> wanted = tellingScores(scores);
        for (int i = 0; i < 100; ++i) {
            wanted.push_back(scores[0] +
                             noise.between(-1.0, 1.0) * std::pow(10.0, noise.integer(-170, 3)));
        }
        expectScan(scores, wanted);
    }
}

TEST(SwatchSearch, AgreesWithTheScanWhenScoresAreNotFinite) {
    Noise noise(4);
    for (int turn = 0; turn < 300; ++turn) {
        std::vector<double> scores(static_cast<std::size_t>(noise.integer(1, 12)));
        for (double& score : scores) {
            const double special[] = {kNaN,   kInfinity, -kInfinity, 1e200,  -1e200,
                                      1e-200, 0.0,       -0.0,       1.7e308};
            const int which = noise.integer(0, 14);
            score = which < 9 ? special[which] : noise.between(-2.0, 2.0);
        }
        expectScan(scores, tellingScores(scores));
    }
}

TEST(SwatchSearch, KeepsTheEarliestOfEqualDistances) {
    const std::vector<double> scores = {3.0, 1.0, 3.0, 1.0};
    const SwatchSearch search{std::span<const double>(scores)};

    EXPECT_EQ(search.nearest(2.0), 0);
    EXPECT_EQ(search.nearest(1.5), 1);
}

TEST(SwatchSearch, TakesTheFirstSwatchForANaN) {
    const std::vector<double> scores = {3.0, 1.0};
    const SwatchSearch search{std::span<const double>(scores)};

    EXPECT_EQ(search.nearest(kNaN), 0);
}

TEST(SwatchSearch, PassesOverSwatchesWithoutScore) {
    const std::vector<double> scores = {kNaN, kNaN, 7.0, 1.0};
    const SwatchSearch search{std::span<const double>(scores)};

    EXPECT_EQ(search.nearest(100.0), 2);
    EXPECT_EQ(search.nearest(-100.0), 3);
}

TEST(SwatchSearch, TakesTheFirstSwatchWhenNoneHasAScore) {
    const std::vector<double> scores = {kNaN, kNaN};
    const SwatchSearch search{std::span<const double>(scores)};

    EXPECT_EQ(search.nearest(1.0), 0);
}

TEST(SwatchSearch, ReadsTheScoresOfSwatches) {
    std::vector<std::unique_ptr<ColorSwatch>> swatches;
    swatches.push_back(std::make_unique<ColorSwatch>(1, 2, 5, 5, -1.0, 0.5, 0.1, 0.2));
    swatches.push_back(std::make_unique<ColorSwatch>(3, 4, 5, 5, -3.0, 0.25, 0.1, 0.2));
    const SwatchSearch search{std::span<const std::unique_ptr<ColorSwatch>>(swatches)};

    EXPECT_EQ(search.nearest(-0.25), 0);
    EXPECT_EQ(search.nearest(-1.375), 1);
}

TEST(ColorSwatch, ScoresHalfTheSumOfMeanAndDeviation) {
    const ColorSwatch swatch(1, 2, 5, 5, -1.0, 0.5, 0.1, 0.2);

    EXPECT_EQ(swatch.score(), -0.25);
    EXPECT_EQ(swatch.x(), 1);
    EXPECT_EQ(swatch.y(), 2);
    EXPECT_EQ(swatch.width(), 5);
    EXPECT_EQ(swatch.height(), 5);
    EXPECT_EQ(swatch.mean(), -1.0);
    EXPECT_EQ(swatch.deviation(), 0.5);
    EXPECT_EQ(swatch.alpha(), 0.1);
    EXPECT_EQ(swatch.beta(), 0.2);
}

}  // namespace
}  // namespace orv
