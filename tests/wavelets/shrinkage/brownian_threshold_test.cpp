#include "wavelets/shrinkage/brownian_threshold.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "images/real_image.h"
#include "support/plain_shrinkage.h"

namespace orv {
namespace {

using Fill = double (*)(std::mt19937&);

double gaussian(std::mt19937& random) {
    return std::normal_distribution<double>(0.0, 1.0)(random);
}

double heavyTailed(std::mt19937& random) {
    const double v = gaussian(random);
    return v * v * v * v * v;
}

// Mostly noise with some strong coefficients, as a detail band of a photo is.
double sparse(std::mt19937& random) {
    return random() % 16 == 0 ? 20.0 * gaussian(random) : gaussian(random);
}

double tied(std::mt19937& random) {
    return static_cast<double>(static_cast<int>(random() % 7) - 3);
}

double mostlyZero(std::mt19937& random) {
    return random() % 5 == 0 ? gaussian(random) : 0.0;
}

double constant(std::mt19937& /*random*/) {
    return -2.5;
}

double zero(std::mt19937& /*random*/) {
    return 0.0;
}

double tiny(std::mt19937& random) {
    return 1e-200 * gaussian(random);
}

double huge(std::mt19937& random) {
    return 1e160 * gaussian(random);
}

constexpr Fill kFills[] = {gaussian, heavyTailed, sparse, tied, mostlyZero,
                           constant, zero,        tiny,   huge};

RealImage bandOf(int width, int height, Fill fill, unsigned seed) {
    std::mt19937 random(seed);
    RealImage band(width, height);
    for (std::size_t i = 0; i < band.sampleCount(); ++i) {
        band.data()[i] = fill(random);
    }
    return band;
}

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void expectPlainResult(const RealImage& band, double critical) {
    RealImage fast(band);
    RealImage plain(band);

    const double threshold = brownianThreshold(fast, band.height(), band.width(), critical);
    const double expected =
        test::plainBrownianThreshold(plain, band.height(), band.width(), critical);

    EXPECT_TRUE(sameBits(threshold, expected)) << threshold << " for " << expected;
}

TEST(BrownianThreshold, IsThatOfASheetForEveryRemoval) {
    constexpr int kSizes[][2] = {{1, 1}, {1, 2}, {2, 1},  {2, 2},  {3, 3},   {4, 4},  {5, 3},
                                 {8, 8}, {7, 9}, {4, 16}, {16, 4}, {16, 16}, {13, 21}};
    unsigned seed = 1;
    for (const auto& size : kSizes) {
        for (const Fill fill : kFills) {
            for (const double critical : {0.1733, 0.9333, 1.3582, 3.6501}) {
                SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << ", seed "
                                                << seed << ", critical " << critical);
                expectPlainResult(bandOf(size[0], size[1], fill, seed++), critical);
            }
        }
    }
}

TEST(BrownianThreshold, IsThatOfASheetForEveryRemovalOnLargerBands) {
    unsigned seed = 1000;
    for (const Fill fill : kFills) {
        for (const double scale : {0.3, 1.0, 4.0}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", scale " << scale);
            RealImage band = bandOf(64, 48, fill, seed++);
            band.scale(scale);
            expectPlainResult(band, 1.5291);
        }
    }
}

TEST(BrownianThreshold, IsThatOfASheetForEveryRemovalInThePresenceOfNonNumbers) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double odd : {inf, -inf, nan}) {
        for (const std::size_t position : {std::size_t{0}, std::size_t{7}, std::size_t{30}}) {
            for (const double critical : {-1.0, 0.0, 0.9333}) {
                SCOPED_TRACE(testing::Message() << odd << " at " << position);
                RealImage band = bandOf(8, 8, gaussian, 5);
                band.data()[position] = odd;
                band.data()[position + 3] = odd;
                expectPlainResult(band, critical);
            }
        }
    }
}

TEST(BrownianThreshold, IsThatOfASheetForEveryRemovalAtOddCriticalValues) {
    for (const double critical :
         {-1.0, 0.0, 1e-12, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
        for (const Fill fill : kFills) {
            SCOPED_TRACE(critical);
            expectPlainResult(bandOf(12, 12, fill, 77), critical);
        }
    }
}

// Squares and sheets of the smallest numbers, where rounding isn't relative.
TEST(BrownianThreshold, IsThatOfASheetForEveryRemovalAmongSubnormalSheets) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        RealImage band = bandOf(14, 13, gaussian, seed);
        band.scale(1e-160);
        for (const double critical : {0.0, 5e-324, 1e-322, 1e-321}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", critical " << critical);
            expectPlainResult(band, critical);
        }
    }
}

// The critical value is a value that the sheet takes, or its neighbour: the comparison has to be
// made by the sheet itself.
TEST(BrownianThreshold, DecidesByTheSheetWhereRoundingMatters) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        RealImage band = bandOf(16, 16, sparse, seed);
        RealImage reduced(band);
        test::plainBrownianThreshold(reduced, 16, 16, 1.3582);
        test::plainSheet(reduced, 16, 16);
        double largest = 0.0;
        for (std::size_t i = 0; i < reduced.sampleCount(); ++i) {
            largest = std::max(largest, std::fabs(reduced.data()[i]));
        }
        for (const double critical :
             {std::nextafter(largest, 0.0), largest, std::nextafter(largest, 10.0)}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            expectPlainResult(band, critical);
        }
    }
}

TEST(BrownianThreshold, IsTheLargestMagnitudeOfABandThatPassesAtOnce) {
    RealImage band = bandOf(8, 8, gaussian, 3);
    band.scale(0.1);
    band.row(5)[2] = -0.75;

    EXPECT_EQ(brownianThreshold(band, 8, 8, 1.1962), 0.75);
}

TEST(BrownianThreshold, IsZeroWhenOneCoefficientIsLeft) {
    RealImage band(1, 2);
    band.row(0)[0] = 50.0;
    band.row(0)[1] = -40.0;

    EXPECT_EQ(brownianThreshold(band, 2, 1, 0.1), 0.0);
    EXPECT_EQ(brownianThreshold(band, 1, 1, -1.0), 0.0);
}

TEST(BrownianThreshold, RemovesTheFirstOfEqualMagnitudes) {
    RealImage band(1, 4);
    band.row(0)[0] = -9.0;
    band.row(0)[1] = 9.0;
    band.row(0)[2] = 1.0;
    band.row(0)[3] = 1.0;

    // The sheet's largest value is 20, then 9.875; without the second one it would be 15.06.
    EXPECT_EQ(brownianThreshold(band, 4, 1, 12.0), 9.0);
    EXPECT_EQ(band.row(0)[0], 0.0);
    EXPECT_EQ(band.row(0)[1], 9.0);
}

TEST(BrownianSheet, HasTheRunningSumsOfCentredSquares) {
    RealImage plane(2, 2);
    plane.row(0)[0] = 1.0;
    plane.row(0)[1] = 2.0;
    plane.row(1)[0] = 3.0;
    plane.row(1)[1] = -4.0;

    brownianSheet(plane, 2, 2);

    // Squares 1, 4, 9, 16 with the mean 7.5; divided by the height 2.
    EXPECT_EQ(plane.row(0)[0], -3.25);
    EXPECT_EQ(plane.row(0)[1], -5.0);
    EXPECT_EQ(plane.row(1)[0], -2.5);
    EXPECT_EQ(plane.row(1)[1], 0.0);
}

TEST(BrownianSheet, HasTheBitsOfThePlainSumsOnEverySize) {
    for (int width = 1; width <= 11; ++width) {
        for (int height = 1; height <= 11; ++height) {
            RealImage plane =
                bandOf(width, height, gaussian, static_cast<unsigned>(width * 16 + height));
            RealImage plain(plane);

            brownianSheet(plane, height, width);
            test::plainSheet(plain, height, width);

            for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
                ASSERT_TRUE(sameBits(plane.data()[i], plain.data()[i]))
                    << width << " x " << height << " at " << i;
            }
        }
    }
}

}  // namespace
}  // namespace orv
