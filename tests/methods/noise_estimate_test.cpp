#include "methods/noise_estimate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>

#include "support/gaussian_noise.h"

namespace orv {
namespace {

using test::addNoise;

FloatImage planeOf(int width, int height, const std::function<double(int, int)>& sample) {
    FloatImage plane(width, height);
    for (int x = 0; x < width; ++x) {
        for (int y = 0; y < height; ++y) {
            plane.row(x)[y] = static_cast<float>(sample(x, y));
        }
    }
    return plane;
}

FloatImage ramp(int width, int height) {
    return planeOf(width, height, [](int x, int y) { return 90.0 + 0.2 * x + 0.1 * y; });
}

FloatImage noisyRamp(int width, int height, double deviation, unsigned seed) {
    FloatImage plane = ramp(width, height);
    addNoise(plane, deviation, seed);
    return plane;
}

// The median of 60000 correlated magnitudes scatters by 0.8 percent.
TEST(NoiseEstimate, FindsGaussianNoiseWithinFivePercent) {
    for (const double deviation : {0.01, 0.3, 1.0, 5.0, 10.0, 20.0}) {
        for (const unsigned seed : {1U, 2U, 3U}) {
            EXPECT_NEAR(noiseDeviation(noisyRamp(251, 243, deviation, seed)), deviation,
                        0.05 * deviation)
                << deviation << ", seed " << seed;
        }
    }
}

TEST(NoiseEstimate, FindsItAfterRoundingToBytesAndClipping) {
    for (const double deviation : {2.0, 5.0, 20.0}) {
        Planes planes;
        planes.push_back(noisyRamp(251, 243, deviation, 4).clone());
        test::roundToBytes(planes);

        EXPECT_NEAR(noiseDeviation(*planes[0]), deviation, 0.05 * deviation);
    }
}

TEST(NoiseEstimate, FlatPlanesRampsAndParabolasHaveNone) {
    const FloatImage flat(60, 40, 77.0f);
    const FloatImage parabola = planeOf(
        60, 40, [](int x, int y) { return 0.04 * x * x + 0.01 * y * y + 0.02 * x * y; });

    EXPECT_EQ(noiseDeviation(flat), 0.0);
    EXPECT_LT(noiseDeviation(ramp(60, 40)), 1e-4);
    EXPECT_LT(noiseDeviation(parabola), 1e-4);
}

TEST(NoiseEstimate, EdgesHardlyMoveIt) {
    FloatImage steps = planeOf(
        200, 200, [](int x, int y) { return (x / 40 + y / 40) % 2 == 0 ? 60.0 : 190.0; });
    addNoise(steps, 5.0, 5);

    EXPECT_NEAR(noiseDeviation(steps), 5.0, 0.5);
}

TEST(NoiseEstimate, TransposingAndAddingAConstantChangeNothing) {
    const FloatImage plane = noisyRamp(90, 61, 6.0, 6);
    const FloatImage transposed =
        planeOf(61, 90, [&](int x, int y) { return plane.row(y)[x]; });
    const FloatImage brighter =
        planeOf(90, 61, [&](int x, int y) { return plane.row(x)[y] + 32.0; });

    const double deviation = noiseDeviation(plane);

    // Sums of floats in another order.
    EXPECT_NEAR(noiseDeviation(transposed), deviation, 1e-4);
    EXPECT_NEAR(noiseDeviation(brighter), deviation, 1e-4);
}

TEST(NoiseEstimate, ClippedAreasAreLeftOut) {
    for (const float clipped : {0.0f, 255.0f}) {
        FloatImage plane = noisyRamp(240, 200, 8.0, 7);
        for (int x = 0; x < 150; ++x) {
            for (int y = 0; y < 200; ++y) {
                plane.row(x)[y] = clipped;
            }
        }

        EXPECT_NEAR(noiseDeviation(plane), 8.0, 0.4);
    }
}

TEST(NoiseEstimate, PaperWithLettersHasNone) {
    const FloatImage page = planeOf(200, 200, [](int x, int y) {
        return x % 20 < 3 && y % 25 < 12 ? 255.0 * ((7 * x + 3 * y) % 5) / 5.0 : 255.0;
    });

    EXPECT_EQ(noiseDeviation(page), 0.0);
}

TEST(NoiseEstimate, TakesPlanesOfAnySize) {
    EXPECT_EQ(noiseDeviation(FloatImage(1, 1, 9.0f)), 0.0);
    for (int width = 1; width <= 8; ++width) {
        for (int height = 1; height <= 8; ++height) {
            const double deviation = noiseDeviation(noisyRamp(width, height, 5.0, 8));

            EXPECT_TRUE(std::isfinite(deviation) && deviation >= 0.0 && deviation < 60.0)
                << width << " x " << height;
            EXPECT_EQ(noiseDeviation(FloatImage(width, height, 50.0f)), 0.0);
        }
    }
    EXPECT_NEAR(noiseDeviation(noisyRamp(4000, 1, 5.0, 9)), 5.0, 0.5);
    EXPECT_NEAR(noiseDeviation(noisyRamp(1, 4000, 5.0, 9)), 5.0, 0.5);
}

TEST(NoiseEstimate, TakesAPartOfLargePlanes) {
    EXPECT_NEAR(noiseDeviation(noisyRamp(3000, 1500, 4.0, 10)), 4.0, 0.05);
}

TEST(NoiseEstimate, FindsTheNoiseOfPhotosNearlyAsItIs) {
    for (const char* const name : test::kPhotoCrops) {
        const Planes clean = test::photoCropPlanes(name);
        for (const double deviation : {10.0, 20.0}) {
            const NoiseEstimate estimate =
                estimateNoise(test::noisyPhoto(clean, deviation, 11));

            // Clipping takes some off, texture adds some.
            EXPECT_NEAR(estimate.overall(), deviation, 0.12 * deviation) << name;
        }
    }
}

TEST(NoiseEstimate, TellsChannelsApart) {
    Planes planes;
    for (int c = 0; c < 3; ++c) {
        planes.push_back(
            noisyRamp(240, 240, 3.0 * (c + 1), 12U + static_cast<unsigned>(c)).clone());
    }

    const NoiseEstimate estimate = estimateNoise(planes);

    ASSERT_EQ(estimate.channels.size(), 3U);
    EXPECT_NEAR(estimate.channels[0], 3.0, 0.15);
    EXPECT_NEAR(estimate.channels[1], 6.0, 0.3);
    EXPECT_NEAR(estimate.channels[2], 9.0, 0.45);
    EXPECT_NEAR(estimate.overall(), std::sqrt((9.0 + 36.0 + 81.0) / 3.0), 0.33);
}

TEST(NoiseEstimate, OpponentPlanesCarryIndependentNoiseAlike) {
    Planes planes;
    for (unsigned c = 0; c < 3; ++c) {
        planes.push_back(noisyRamp(240, 240, 6.0, 20 + c).clone());
    }

    const NoiseEstimate estimate = estimateNoise(planes);

    EXPECT_NEAR(estimate.brightness, 6.0 / std::sqrt(3.0), 0.18);
    EXPECT_NEAR(estimate.chroma, 6.0 / std::sqrt(3.0), 0.18);
}

TEST(NoiseEstimate, GreyInThreeChannelsHasNoiseInBrightnessAlone) {
    const FloatImage plane = noisyRamp(240, 240, 6.0, 30);
    Planes planes;
    for (int c = 0; c < 3; ++c) {
        planes.push_back(plane.clone());
    }

    const NoiseEstimate estimate = estimateNoise(planes);

    EXPECT_NEAR(estimate.brightness, 6.0, 0.3);
    EXPECT_LT(estimate.chroma, 1e-4);
}

}  // namespace
}  // namespace orv
