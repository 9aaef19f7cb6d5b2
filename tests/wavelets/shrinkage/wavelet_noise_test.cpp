#include "wavelets/shrinkage/wavelet_noise.h"

#include <gtest/gtest.h>

#if defined(__linux__)
#include <sys/resource.h>
#endif

#include <array>
#include <cmath>
#include <limits>

#include "images/real_image.h"
#include "support/plain_shrinkage.h"
#include "support/plane_support.h"

namespace orv {
namespace {

RealImage coefficientsOf(int width, int height, unsigned seed, double zeroShare = 0.0) {
    test::Noise noise(seed);
    RealImage plane(width, height);
    for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
        const double v = noise.between(-9.0, 9.0);
        plane.data()[i] = noise.between(0.0, 1.0) < zeroShare ? 0.0 : v * v * v;
    }
    return plane;
}

TEST(WaveletNoise, IsTheMedianByAFullSortOnEverySize) {
    for (int width = 1; width <= 20; ++width) {
        for (int height = 1; height <= 20; ++height) {
            const RealImage plane =
                coefficientsOf(width, height, static_cast<unsigned>(32 * width + height));

            EXPECT_EQ(estimateNoise2D(plane, height, width),
                      test::plainNoise(plane, height, width))
                << width << " x " << height;
        }
    }
    for (const auto& size : {std::array{301, 3}, std::array{3, 301}, std::array{101, 257}}) {
        const RealImage plane = coefficientsOf(size[0], size[1], 7);

        EXPECT_EQ(estimateNoise2D(plane, size[1], size[0]),
                  test::plainNoise(plane, size[1], size[0]))
            << size[0] << " x " << size[1];
    }
}

TEST(WaveletNoise, IsTheMedianByAFullSortAmongZerosAndTinyValues) {
    for (const double share : {0.2, 0.49, 0.5, 0.51, 0.9, 1.0}) {
        RealImage plane = coefficientsOf(64, 48, 3, share);
        EXPECT_EQ(estimateNoise2D(plane, 48, 64), test::plainNoise(plane, 48, 64)) << share;
        plane.scale(1e-310);
        EXPECT_EQ(estimateNoise2D(plane, 48, 64), test::plainNoise(plane, 48, 64)) << share;
    }
}

// Large planes are searched between two bounds from a sample.
TEST(WaveletNoise, IsTheMedianByAFullSortOnLargePlanes) {
    for (const auto& size : {std::array{512, 256}, std::array{301, 403}}) {
        for (const double share : {0.0, 0.3, 0.45, 0.55}) {
            SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << ", " << share);
            RealImage plane = coefficientsOf(size[0], size[1], 17, share);
            EXPECT_EQ(estimateNoise2D(plane, size[1], size[0]),
                      test::plainNoise(plane, size[1], size[0]));
            // Few magnitudes, each many times.
            for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
                plane.data()[i] = std::floor(plane.data()[i] / 40.0);
            }
            EXPECT_EQ(estimateNoise2D(plane, size[1], size[0]),
                      test::plainNoise(plane, size[1], size[0]));
            // Magnitudes that grow with x and y, and a last column that is out of line.
            for (int x = 0; x < size[0]; ++x) {
                for (int y = 0; y < size[1]; ++y) {
                    plane.row(x)[y] = x + 1000.0 * y + (x == size[0] - 1 ? -1e9 : 0.0);
                }
            }
            EXPECT_EQ(estimateNoise2D(plane, size[1], size[0]),
                      test::plainNoise(plane, size[1], size[0]));
        }
    }
}

TEST(WaveletNoise, LeavesTheApproximationOut) {
    RealImage plane = coefficientsOf(16, 16, 4);
    const double before = estimateNoise2D(plane, 16, 16);

    for (int x = 0; x < 8; ++x) {
        for (int y = 0; y < 8; ++y) {
            plane.row(x)[y] = 1e6;
        }
    }

    EXPECT_EQ(estimateNoise2D(plane, 16, 16), before);
    for (int y = 0; y < 16; ++y) {
        plane.row(8)[y] = plane.row(9)[y] = 1e6;
    }
    EXPECT_NE(estimateNoise2D(plane, 16, 16), before);
}

TEST(WaveletNoise, IsZeroWithFewerThanTwoDetails) {
    const RealImage plane(2, 2, 5.0);

    EXPECT_EQ(estimateNoise2D(plane, 0, 0), 0.0);
    EXPECT_EQ(estimateNoise2D(plane, 1, 1), 0.0);
    EXPECT_EQ(estimateNoise2D(plane, 1, 2), 0.0);
    EXPECT_NE(estimateNoise2D(plane, 2, 2), 0.0);
}

TEST(WaveletNoise, OfBandsAloneCountsTheRestAsZeros) {
    const RealImage plane = coefficientsOf(32, 32, 5);
    RealImage whole(64, 64);
    for (int x = 0; x < 32; ++x) {
        for (int y = 0; y < 32; ++y) {
            whole.row(32 + x)[32 + y] = plane.row(x)[y];
        }
    }
    const std::array<Coefficients, 1> few{{{plane.data(), plane.sampleCount()}}};
    const std::array<Coefficients, 3> many{{{plane.data(), plane.sampleCount()},
                                            {plane.data(), plane.sampleCount()},
                                            {plane.data(), plane.sampleCount()}}};

    EXPECT_EQ(noiseOfDetails(few, 64, 64), 0.0);
    EXPECT_EQ(noiseOfDetails(few, 64, 64), test::plainNoise(whole, 64, 64));
    EXPECT_GT(noiseOfDetails(many, 64, 64), 0.0);
}

TEST(WaveletNoise, CountsWhatIsNoNumberAsLargest) {
    RealImage plane = coefficientsOf(16, 16, 6);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    plane.row(15)[3] = nan;
    RealImage infinite(plane);
    infinite.row(15)[3] = std::numeric_limits<double>::infinity();

    EXPECT_EQ(estimateNoise2D(plane, 16, 16), test::plainNoise(infinite, 16, 16));
}

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)

void limitMemory(rlim_t bytes) {
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
}

TEST(WaveletNoiseDeathTest, AnArrayThatCannotBeHadEndsTheProcess) {
    // Equal magnitudes share a bucket, whose array is as large as three quarters of the plane.
    const RealImage plane(4096, 4096, 1.0);

    EXPECT_EXIT(
        {
            limitMemory(rlim_t{190} << 20);
            estimateNoise2D(plane, 4096, 4096);
        },
        testing::ExitedWithCode(1), "^estimateNoise2D: Unable to malloc working array!\n$");
}

#endif

TEST(CompareMagnitudes, TellsTheOrder) {
    const double one = 1.0;
    const double two = 2.0;

    EXPECT_EQ(compareMagnitudes(&one, &two), -1);
    EXPECT_EQ(compareMagnitudes(&two, &two), 0);
    EXPECT_EQ(compareMagnitudes(&two, &one), 1);
}

TEST(Quirk, NoiseFactor) {
    RealImage plane(8, 8, 1.0);

    EXPECT_EQ(estimateNoise2D(plane, 8, 8), 1.4718111371948752);
    EXPECT_LT(estimateNoise2D(plane, 8, 8), 1.0 / 0.6745);
}

}  // namespace
}  // namespace orv
