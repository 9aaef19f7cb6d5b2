#include "schemes/gradient_norms/gradient_norm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "schemes/gradient_norms/central_gradient_norm.h"
#include "schemes/gradient_norms/gradient_norm_list.h"
#include "schemes/gradient_norms/max_biased_slope_gradient_norm.h"
#include "schemes/gradient_norms/max_slope_gradient_norm.h"
#include "schemes/gradient_norms/min_biased_slope_gradient_norm.h"
#include "schemes/gradient_norms/min_slope_gradient_norm.h"
#include "schemes/gradient_norms/minmod_gradient_norm.h"
#include "support/plane_support.h"
#include "support/scheme_support.h"

namespace orv::test {
namespace {

/// u(x, y) = values of the rows from the top.
FloatImage planeOfRows(const std::vector<std::vector<float>>& rows) {
    FloatImage plane(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()));
    for (int y = 0; y < plane.height(); ++y) {
        for (int x = 0; x < plane.width(); ++x) {
            plane.row(x)[y] = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
        }
    }
    return plane;
}

const FloatImage& hand() {
    static const FloatImage plane = planeOfRows({{1, 2, 4, 8}, {3, 9, 5, 7}, {6, 0, 2, 1}});
    return plane;
}

/// The slopes of the neighbours that exist, diagonal ones weighted, in rising order.
std::vector<double> sortedSlopes(const FloatImage& u, int x, int y) {
    std::vector<double> slopes;
    for (int i = std::max(x - 1, 0); i <= std::min(x + 1, u.width() - 1); ++i) {
        for (int j = std::max(y - 1, 0); j <= std::min(y + 1, u.height() - 1); ++j) {
            if (i == x && j == y) {
                continue;
            }
            const double slope = std::fabs(static_cast<double>(u.row(i)[j]) - u.row(x)[y]);
            slopes.push_back(i != x && j != y ? slope * std::sqrt(0.5) : slope);
        }
    }
    std::sort(slopes.begin(), slopes.end());
    return slopes;
}

/// A corner whose slopes come as first, second, third in the order of the visit. The third
/// neighbour is diagonal, which costs it half a square root of two.
FloatImage cornerOfSlopes(double first, double second, double third) {
    FloatImage plane(2, 2);
    plane.row(0)[1] = static_cast<float>(first);
    plane.row(1)[0] = static_cast<float>(second);
    plane.row(1)[1] = static_cast<float>(third * std::sqrt(2.0));
    return plane;
}

template <class Norm>
double cornerNorm(const FloatImage& plane) {
    Norm norm;
    norm.setImage(plane);
    return norm.cornerX0Y0Norm();
}

// The diagonal slope is rounded to float and weighted by a float.
constexpr double kWeightRounding = 1e-5;

TEST(CentralGradientNorm, UsesHalvedDifferencesInsideAndOneSidedOnesAcrossTheBorder) {
    CentralGradientNorm norm;
    norm.setImage(hand());

    EXPECT_EQ(norm.interiorNorm(1, 1), 1.0 * 1.0 + 1.0 * 1.0);
    EXPECT_EQ(norm.interiorNorm(2, 1), 1.0 * 1.0 + 1.0 * 1.0);
    EXPECT_EQ(norm.edgeY0Norm(1), 1.5 * 1.5 + 7.0 * 7.0);
    EXPECT_EQ(norm.edgeXLastNorm(1), 2.0 * 2.0 + 3.5 * 3.5);
    EXPECT_EQ(norm.edgeYLastNorm(2), 0.5 * 0.5 + 3.0 * 3.0);
    EXPECT_EQ(norm.edgeX0Norm(1), 6.0 * 6.0 + 2.5 * 2.5);
    EXPECT_EQ(norm.cornerX0Y0Norm(), 1.0 + 4.0);
    EXPECT_EQ(norm.cornerXLastY0Norm(), 16.0 + 1.0);
    EXPECT_EQ(norm.cornerXLastYLastNorm(), 1.0 + 36.0);
    EXPECT_EQ(norm.cornerX0YLastNorm(), 36.0 + 9.0);
}

TEST(MinmodGradientNorm, LimitsAlongTheEdgeAndTakesTheOneSidedDifferenceAcross) {
    MinmodGradientNorm norm;
    norm.setImage(hand());

    // (2, 1): along x 7 - 5 = 2 and 5 - 9 = -4 disagree; along y 2 - 5 and 5 - 4 disagree.
    EXPECT_EQ(norm.interiorNorm(2, 1), 0.0);
    EXPECT_EQ(norm.edgeY0Norm(2), 2.0 * 2.0 + 1.0);
    EXPECT_EQ(norm.edgeXLastNorm(1), 2.0 * 2.0 + 1.0);
    EXPECT_EQ(norm.edgeYLastNorm(1), 0.0 + 81.0);
    EXPECT_EQ(norm.edgeX0Norm(1), 36.0 + 2.0 * 2.0);
    EXPECT_EQ(norm.cornerX0Y0Norm(), 1.0 + 4.0);
    EXPECT_EQ(norm.cornerXLastY0Norm(), 16.0 + 1.0);
    EXPECT_EQ(norm.cornerXLastYLastNorm(), 1.0 + 36.0);
    EXPECT_EQ(norm.cornerX0YLastNorm(), 36.0 + 9.0);
}

TEST(MinmodGradientNorm, HalvesTheSmallerDifferenceWhenTheOtherOneIsZero) {
    const FloatImage plane = planeOfRows({{0, 0, 0}, {2, 2, 6}, {0, 9, 0}});
    MinmodGradientNorm norm;
    norm.setImage(plane);

    // Along x min(4, 0) is 0; along y min(7, 2) is 2 with equal signs.
    EXPECT_EQ(norm.interiorNorm(1, 1), 4.0);
}

TEST(SlopeGradientNorm, MinimumAndMaximumRunOverTheNeighboursThatExist) {
    for (const int width : {2, 3, 7}) {
        for (const int height : {2, 3, 5}) {
            SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height));
            const FloatImage plane = noisePlane(width, height, 5);
            MinSlopeGradientNorm smallest;
            MaxSlopeGradientNorm largest;
            smallest.setImage(plane);
            largest.setImage(plane);

            const auto lows = smallest.apply(plane, nullptr);
            const auto highs = largest.apply(plane, nullptr);

            for (int x = 0; x < width; ++x) {
                for (int y = 0; y < height; ++y) {
                    const std::vector<double> slopes = sortedSlopes(plane, x, y);
                    const double low = slopes.front() * slopes.front();
                    const double high = slopes.back() * slopes.back();
                    // The weight of diagonal slopes and the stored result are floats.
                    EXPECT_NEAR(lows->row(x)[y], low, 1e-6 * low + 1e-9);
                    EXPECT_NEAR(highs->row(x)[y], high, 1e-6 * high);
                }
            }
        }
    }
}

TEST(MaxBiasedSlopeGradientNorm, OrdersWithALateMaximumKeepTheFormerMaximum) {
    using Norm = MaxBiasedSlopeGradientNorm;
    EXPECT_NEAR(cornerNorm<Norm>(cornerOfSlopes(1, 3, 2)), 10.0, kWeightRounding);
    EXPECT_NEAR(cornerNorm<Norm>(cornerOfSlopes(3, 1, 2)), 10.0, kWeightRounding);
    EXPECT_NEAR(cornerNorm<Norm>(cornerOfSlopes(1, 2, 3)), 13.0, kWeightRounding);
}

TEST(Quirk, BiasedSlope) {
    // True extremes would give 10 for every order of 1, 2 and 3.
    EXPECT_NEAR(cornerNorm<MaxBiasedSlopeGradientNorm>(cornerOfSlopes(1, 2, 3)), 13.0,
                kWeightRounding);
    EXPECT_NEAR(cornerNorm<MinBiasedSlopeGradientNorm>(cornerOfSlopes(3, 2, 1)), 5.0,
                kWeightRounding);
    EXPECT_NEAR(cornerNorm<MinBiasedSlopeGradientNorm>(cornerOfSlopes(3, 1, 2)), 10.0,
                kWeightRounding);
}

TEST(SlopeGradientNorm, NeighboursAreVisitedColumnByColumnInTheirFixedOrder) {
    // With every slope above the one before, the second largest of the visit is the former
    // maximum: only the right order of the visit gives the last two slopes.
    const double order[8][2] = {{-1, 0}, {-1, -1}, {-1, 1}, {0, -1},
                                {0, 1},  {1, -1},  {1, 0},  {1, 1}};
    FloatImage plane(3, 3);
    for (int k = 0; k < 8; ++k) {
        const bool diagonal = order[k][0] != 0.0 && order[k][1] != 0.0;
        plane.row(1 + static_cast<int>(order[k][0]))[1 + static_cast<int>(order[k][1])] =
            static_cast<float>((k + 1) * (diagonal ? std::sqrt(2.0) : 1.0));
    }
    MaxBiasedSlopeGradientNorm largest;
    largest.setImage(plane);
    EXPECT_NEAR(largest.interiorNorm(1, 1), 64.0 + 49.0, 1e-4);

    for (int x = 0; x < 3; ++x) {
        for (int y = 0; y < 3; ++y) {
            plane.row(x)[y] =
                x == 1 && y == 1
                    ? 0.0f
                    : 9.0f * (x != 1 && y != 1 ? 1.41421354f : 1.0f) - plane.row(x)[y];
        }
    }
    MinBiasedSlopeGradientNorm smallest;
    smallest.setImage(plane);
    EXPECT_NEAR(smallest.interiorNorm(1, 1), 1.0 + 4.0, 1e-4);
}

TEST(SlopeGradientNorm, BiasedNormsFollowTheirRuleInTheOrderOfTheVisit) {
    const int order[8][2] = {{-1, 0}, {-1, -1}, {-1, 1}, {0, -1},
                             {0, 1},  {1, -1},  {1, 0},  {1, 1}};
    for (unsigned seed = 0; seed < 200; ++seed) {
        const FloatImage plane = noisePlane(3, 3, seed);
        double high[2] = {-1.0, -1.0};
        double low[2] = {-1.0, -1.0};
        for (const auto& [dx, dy] : order) {
            double v =
                std::fabs(static_cast<double>(plane.row(1 + dx)[1 + dy]) - plane.row(1)[1]);
            v *= dx != 0 && dy != 0 ? std::sqrt(0.5) : 1.0;
            if (high[0] < 0.0) {
                high[0] = high[1] = low[0] = low[1] = v;
                continue;
            }
            if (v > high[0]) {
                high[1] = std::exchange(high[0], v);
            } else {
                high[1] = std::min(high[1], v);
            }
            if (v < low[0]) {
                low[1] = std::exchange(low[0], v);
            } else {
                low[1] = std::max(low[1], v);
            }
        }
        MaxBiasedSlopeGradientNorm largest;
        MinBiasedSlopeGradientNorm smallest;
        largest.setImage(plane);
        smallest.setImage(plane);

        // The weight of the diagonal slopes is a float.
        const double expected = high[0] * high[0] + high[1] * high[1];
        EXPECT_NEAR(largest.interiorNorm(1, 1), expected, 1e-6 * expected);
        const double expectedLow = low[0] * low[0] + low[1] * low[1];
        EXPECT_NEAR(smallest.interiorNorm(1, 1), expectedLow, 1e-6 * expectedLow);
    }
}

TEST(GradientNorm, ApplyFillsEverySampleFromItsOwnOperation) {
    const FloatImage plane = noisePlane(5, 4, 1);
    for (int flavour = 0; flavour < 6; ++flavour) {
        SCOPED_TRACE(flavour);
        const auto norm = GradientNormList(8).create(flavour);
        norm->setImage(plane);

        const auto result = norm->apply(plane, std::make_unique<FloatImage>(5, 4, -1.0f));

        const auto at = [&](int x, int y) { return static_cast<double>(result->row(x)[y]); };
        const auto rounded = [](double v) {
            return static_cast<double>(static_cast<float>(v));
        };
        EXPECT_EQ(at(2, 1), rounded(norm->interiorNorm(2, 1)));
        EXPECT_EQ(at(3, 2), rounded(norm->interiorNorm(3, 2)));
        EXPECT_EQ(at(3, 0), rounded(norm->edgeY0Norm(3)));
        EXPECT_EQ(at(4, 2), rounded(norm->edgeXLastNorm(2)));
        EXPECT_EQ(at(1, 3), rounded(norm->edgeYLastNorm(1)));
        EXPECT_EQ(at(0, 1), rounded(norm->edgeX0Norm(1)));
        EXPECT_EQ(at(0, 0), rounded(norm->cornerX0Y0Norm()));
        EXPECT_EQ(at(4, 0), rounded(norm->cornerXLastY0Norm()));
        EXPECT_EQ(at(4, 3), rounded(norm->cornerXLastYLastNorm()));
        EXPECT_EQ(at(0, 3), rounded(norm->cornerX0YLastNorm()));
        for (int x = 0; x < 5; ++x) {
            for (int y = 0; y < 4; ++y) {
                EXPECT_GE(at(x, y), 0.0);
            }
        }
    }
}

TEST(GradientNorm, ApplyReadsThePlaneOfSetImageAndNotTheSource) {
    const FloatImage plane = noisePlane(4, 4, 2);
    const FloatImage flat(4, 4, 100.0f);
    CentralGradientNorm norm;
    norm.setImage(plane);

    const auto fromFlat = norm.apply(flat, nullptr);
    const auto fromPlane = norm.apply(plane, nullptr);

    EXPECT_TRUE(sameBits(*fromFlat, *fromPlane));
}

TEST(GradientNorm, PlanesOfOneRowOrColumnStayInsideTheirMemory) {
    for (const auto& [w, h] : {std::pair{1, 1}, std::pair{1, 4}, std::pair{4, 1}}) {
        const FloatImage plane = noisePlane(w, h, 3);
        for (int flavour = 0; flavour < 6; ++flavour) {
            const auto norm = GradientNormList(8).create(flavour);
            norm->setImage(plane);
            const auto result = norm->apply(plane, nullptr);
            EXPECT_EQ(result->row(0)[0] == 0.0f, w == 1 && h == 1);
        }
    }
}

TEST(GradientNormList, NamesTheSixFlavoursInOrder) {
    const GradientNormList list(8);

    ASSERT_EQ(list.count(), 6);
    EXPECT_EQ(list.capacity(), 8);
    EXPECT_STREQ(list.name(0), "Central Gradient(s2) Norm (may diffuse)");
    EXPECT_STREQ(list.name(1), "Minmod Gradient(s2) Norm");
    EXPECT_STREQ(list.name(2), "Min Slope(s2)");
    EXPECT_STREQ(list.name(3), "Max Slope(s2)");
    EXPECT_STREQ(list.name(4), "Min Biased Slope(s2)");
    EXPECT_STREQ(list.name(5), "Max Biased Slope(s2)");
}

TEST(GradientNormList, KeepsAsManyNamesAsItHasRoomForAndStillMakesAllNorms) {
    const GradientNormList list(2);

    EXPECT_EQ(list.count(), 2);
    EXPECT_NE(list.create(5), nullptr);
}

TEST(GradientNormList, GivesNullForAnUnknownFlavour) {
    const GradientNormList list(8);

    EXPECT_EQ(list.create(-1), nullptr);
    EXPECT_EQ(list.create(6), nullptr);
}

TEST(GradientNorm, PrintsItsClassTextAndTheLargestSlopeThatOfTheSmallest) {
    const char* const texts[] = {"Central Gradient Norm\n",
                                 "Minmod Gradient Norm\n",
                                 "MinSlope Gradient Norm Approximation\n",
                                 "MinSlope Gradient Norm Approximation\n",
                                 "MinBiasedSlope Gradient Norm Approximation\n",
                                 "MaxBiasedSlope Gradient Norm Approximation\n"};
    for (int flavour = 0; flavour < 6; ++flavour) {
        EXPECT_EQ(printedName(*GradientNormList(8).create(flavour)), texts[flavour]);
    }
}

}  // namespace
}  // namespace orv::test
