#include "wavelets/transform/band_pyramid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

#include "images/real_image.h"
#include "support/wavelet_support.h"
#include "wavelets/transform/wavelet_bands.h"
#include "wavelets/transform/wavelet_transform.h"

namespace orv {
namespace {

using test::sameBits;
using test::WaveletBanks;

struct Case {
    int pictureWidth;
    int pictureHeight;
    int width;
    int height;
    int levels;
};

constexpr Case kCases[] = {{64, 64, 64, 64, 3},   {33, 17, 64, 64, 3},     {63, 5, 128, 128, 4},
                           {1, 1, 32, 32, 3},     {130, 127, 256, 256, 5}, {100, 3, 128, 64, 4},
                           {70, 66, 128, 128, 2}, {61, 64, 64, 64, 4},     {2, 90, 96, 96, 5},
                           {8, 7, 8, 8, 2}};

RealImage padded(const RealImage& picture, int width, int height) {
    RealImage plane(width, height);
    for (int x = 0; x < picture.width(); ++x) {
        std::copy_n(picture.row(x), picture.height(), plane.row(x));
    }
    return plane;
}

template <class Check>
void forEachCase(Check check) {
    for (const Case& size : kCases) {
        for (int wavelet = 0; wavelet < kWaveletCount; ++wavelet) {
            SCOPED_TRACE("wavelet " + std::to_string(wavelet) + ", " +
                         std::to_string(size.pictureWidth) + " x " +
                         std::to_string(size.pictureHeight));
            check(size, wavelet);
        }
    }
}

TEST(BandPyramid, WholeBandsHaveTheBitsOfThePaddedTransform) {
    const WaveletBanks banks;
    forEachCase([&](const Case& size, int wavelet) {
        const RealImage picture = test::noisePlane(size.pictureWidth, size.pictureHeight, 3);
        RealImage expected = padded(picture, size.width, size.height);
        test::definition::forwardPlane(expected, size.levels, banks.analysisLow[wavelet],
                                       banks.analysisHigh[wavelet]);

        const BandPyramid pyramid(picture, size.width, size.height, size.levels,
                                  banks.analysisLow[wavelet], banks.analysisHigh[wavelet]);

        for (int level = 1; level <= size.levels; ++level) {
            for (int detail = 0; detail < 3; ++detail) {
                const auto band = ExtractBand(expected, size.height, size.width, level, detail);
                EXPECT_TRUE(sameBits(*pyramid.wholeBand(level, detail), *band))
                    << "level " << level << ", detail " << detail;
            }
        }
    });
}

/// Changes coefficients so that 0 stays 0.
double changed(double value) {
    return std::abs(value) > 20.0 ? value * 0.75 : 0.0;
}

TEST(BandPyramid, InverseHasTheBitsOfThePaddedInverse) {
    const WaveletBanks banks;
    forEachCase([&](const Case& size, int wavelet) {
        const RealImage picture = test::noisePlane(size.pictureWidth, size.pictureHeight, 4);
        RealImage plane = padded(picture, size.width, size.height);
        test::definition::forwardPlane(plane, size.levels, banks.analysisLow[wavelet],
                                       banks.analysisHigh[wavelet]);
        for (std::size_t i = 0; i < plane.sampleCount(); ++i) {
            plane.data()[i] = changed(plane.data()[i]);
        }
        test::definition::inversePlane(plane, size.levels, banks.synthesisLow[wavelet],
                                       banks.synthesisHigh[wavelet]);
        BandPyramid pyramid(picture, size.width, size.height, size.levels,
                            banks.analysisLow[wavelet], banks.analysisHigh[wavelet]);
        const auto change = [](RealImage& band) {
            for (std::size_t i = 0; i < band.sampleCount(); ++i) {
                band.data()[i] = changed(band.data()[i]);
            }
        };
        for (int level = 1; level <= size.levels; ++level) {
            for (int detail = 0; detail < 3; ++detail) {
                change(pyramid.band(level, detail));
            }
        }
        change(pyramid.approximation());
        RealImage target(size.pictureWidth, size.pictureHeight, NAN);

        pyramid.inverse(target, banks.synthesisLow[wavelet], banks.synthesisHigh[wavelet]);

        for (int x = 0; x < size.pictureWidth; ++x) {
            ASSERT_TRUE(sameBits(target.row(x), plane.row(x),
                                 static_cast<std::size_t>(size.pictureHeight)))
                << "column " << x;
        }
    });
}

TEST(BandPyramid, APictureOfTheWholeSizeKeepsWholeBands) {
    const WaveletBanks banks;
    const RealImage picture = test::noisePlane(32, 16, 5);

    const BandPyramid pyramid(picture, 32, 16, 2, banks.analysisLow[3], banks.analysisHigh[3]);

    EXPECT_EQ(pyramid.levels(), 2);
    EXPECT_EQ(pyramid.xRange(1).begin, 0);
    EXPECT_EQ(pyramid.xRange(1).end, 16);
    EXPECT_EQ(pyramid.yRange(2).begin, 0);
    EXPECT_EQ(pyramid.yRange(2).end, 4);
    EXPECT_EQ(pyramid.band(2, 1).width(), 8);
    EXPECT_EQ(pyramid.band(2, 1).height(), 4);
}

TEST(BandPyramid, KeepsLittleMoreThanThePictureOfAPaddedPlane) {
    const WaveletBanks banks;
    const RealImage picture = test::noisePlane(260, 130, 6);

    const BandPyramid pyramid(picture, 512, 512, 4, banks.analysisLow[4],
                              banks.analysisHigh[4]);

    // Half the picture's sides, the reach of 13 taps and the rounding to even positions.
    EXPECT_LE(pyramid.band(1, 0).width(), 130 + 10);
    EXPECT_LE(pyramid.band(1, 0).height(), 65 + 10);
}

TEST(BandPyramid, FitsOnlySizesThatHalveInEveryPass) {
    EXPECT_TRUE(BandPyramid::fits(64, 24, 3));
    EXPECT_FALSE(BandPyramid::fits(64, 24, 4));
    EXPECT_FALSE(BandPyramid::fits(63, 24, 1));
    EXPECT_FALSE(BandPyramid::fits(64, 64, 0));
    EXPECT_FALSE(BandPyramid::fits(64, 64, -1));
    EXPECT_FALSE(BandPyramid::fits(64, 64, 31));
    EXPECT_FALSE(BandPyramid::fits(0, 64, 1));
}

}  // namespace
}  // namespace orv
