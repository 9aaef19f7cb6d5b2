#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "base/cpu_features.h"
#include "images/real_image.h"
#include "support/kernel_targets.h"
#include "support/wavelet_support.h"
#include "wavelets/transform/wavelet_transform.h"

namespace orv {
namespace {

using test::availableTargets;
using test::sameBits;
using test::TargetLimit;
using test::WaveletBanks;

struct Case {
    int width;
    int height;
    int levels;
};

constexpr Case kCases[] = {{2, 2, 1},   {2, 6, 1},   {4, 4, 2},    {6, 10, 1},  {8, 24, 3},
                           {12, 4, 2},  {16, 16, 3}, {18, 34, 1},  {32, 8, 3},  {36, 20, 2},
                           {50, 64, 1}, {64, 48, 4}, {64, 64, 6},  {96, 32, 5}, {34, 62, 1},
                           {512, 4, 2}, {4, 512, 2}, {128, 320, 5}};

template <class Check>
void forEachCase(Check check) {
    for (const KernelTarget target : availableTargets()) {
        const TargetLimit limit(target);
        for (const Case& size : kCases) {
            for (int wavelet = 0; wavelet < kWaveletCount; ++wavelet) {
                SCOPED_TRACE(std::string(nameOf(target)) + ", wavelet " +
                             std::to_string(wavelet) + ", " + std::to_string(size.width) +
                             " x " + std::to_string(size.height));
                check(size, wavelet);
            }
        }
    }
}

TEST(FwtImage, HasTheBitsOfTheDefinitionOnEveryTarget) {
    const WaveletBanks banks;
    forEachCase([&](const Case& size, int wavelet) {
        const RealImage source = test::noisePlane(size.width, size.height, 7);
        RealImage expected(source);
        test::definition::forwardPlane(expected, size.levels, banks.analysisLow[wavelet],
                                       banks.analysisHigh[wavelet]);
        RealImage coefficients(size.width, size.height, NAN);

        FwtImage(source, coefficients, size.height, size.width, size.levels,
                 banks.analysisLow[wavelet], banks.analysisHigh[wavelet]);

        EXPECT_TRUE(sameBits(coefficients, expected));
    });
}

TEST(IwtImage, HasTheBitsOfTheDefinitionOnEveryTarget) {
    const WaveletBanks banks;
    forEachCase([&](const Case& size, int wavelet) {
        const RealImage coefficients = test::noisePlane(size.width, size.height, 8);
        RealImage expected(coefficients);
        test::definition::inversePlane(expected, size.levels, banks.synthesisLow[wavelet],
                                       banks.synthesisHigh[wavelet]);
        RealImage target(size.width, size.height, NAN);

        IwtImage(coefficients, target, size.height, size.width, size.levels,
                 banks.synthesisLow[wavelet], banks.synthesisHigh[wavelet]);

        EXPECT_TRUE(sameBits(target, expected));
    });
}

TEST(FwtImage, TakesFiltersOfAnyShape) {
    const WaveletFilter low = {4, 2, {0.5, -0.25, 0.125, 1.0}};
    const WaveletFilter high = {5, 0, {0.75, 0.5, -1.0, 0.0, 2.0}};
    const RealImage source = test::noisePlane(24, 40, 9);
    RealImage expected(source);
    test::definition::forwardPlane(expected, 3, low, high);
    RealImage coefficients(24, 40);

    FwtImage(source, coefficients, 40, 24, 3, low, high);
    RealImage target(24, 40);
    IwtImage(coefficients, target, 40, 24, 3, low, high);

    EXPECT_TRUE(sameBits(coefficients, expected));
    test::definition::inversePlane(expected, 3, low, high);
    EXPECT_TRUE(sameBits(target, expected));
}

TEST(FwtImage, OddSizesRunLineByLineThroughFwtVector) {
    const WaveletBanks banks;
    const WaveletFilter& low = banks.analysisLow[3];
    const WaveletFilter& high = banks.analysisHigh[3];
    const RealImage source = test::noisePlane(14, 21, 10);
    const auto line = [](const std::vector<double>& x, const WaveletFilter& a,
                         const WaveletFilter& b) {
        std::vector<double> result(x.size());
        FwtVector(x.data(), result.data(), static_cast<int>(x.size()), 1, a, b);
        return result;
    };
    RealImage expected(source);
    for (const auto& [width, height] : {std::pair(14, 21), std::pair(7, 10)}) {
        test::definition::alongX(expected, width, height, line, low, high);
        test::definition::alongY(expected, width, height, line, low, high);
    }
    RealImage coefficients(14, 21);

    FwtImage(source, coefficients, 21, 14, 2, low, high);

    EXPECT_TRUE(sameBits(coefficients, expected));
}

TEST(IwtImage, OddSizesRunLineByLineThroughIwtVector) {
    const WaveletBanks banks;
    const WaveletFilter& low = banks.synthesisLow[5];
    const WaveletFilter& high = banks.synthesisHigh[5];
    const RealImage coefficients = test::noisePlane(14, 21, 11);
    const auto line = [](const std::vector<double>& x, const WaveletFilter& a,
                         const WaveletFilter& b) {
        std::vector<double> result(x.size());
        IwtVector(x.data(), result.data(), static_cast<int>(x.size()), 1, a, b);
        return result;
    };
    RealImage expected(coefficients);
    for (const auto& [width, height] : {std::pair(7, 10), std::pair(14, 20)}) {
        test::definition::alongY(expected, width, height, line, low, high);
        test::definition::alongX(expected, width, height, line, low, high);
    }
    RealImage target(14, 21);

    IwtImage(coefficients, target, 21, 14, 2, low, high);

    EXPECT_TRUE(sameBits(target, expected));
}

TEST(FwtImage, NoLevelsCopyTheSource) {
    const WaveletBanks banks;
    const RealImage source = test::noisePlane(6, 5, 12);
    RealImage coefficients(6, 5);

    FwtImage(source, coefficients, 5, 6, 0, banks.analysisLow[1], banks.analysisHigh[1]);

    EXPECT_TRUE(sameBits(coefficients, source));
}

TEST(IwtImage, NoLevelsTellOfTheNegativePowerAndCopy) {
    const WaveletBanks banks;
    const RealImage coefficients = test::noisePlane(6, 5, 13);
    RealImage target(6, 5);

    testing::internal::CaptureStderr();
    IwtImage(coefficients, target, 5, 6, 0, banks.synthesisLow[1], banks.synthesisHigh[1]);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "\npower2: negative argument! Returning 0\n");
    EXPECT_TRUE(sameBits(target, coefficients));
}

TEST(IwtImage, UndoesFwtImageUpToTheRoundingOfTheTaps) {
    const WaveletBanks banks;
    // Largest error over grey levels of a few hundred and five levels; the taps of wavelets 3 to
    // 5 have six decimals.
    constexpr double kBounds[kWaveletCount] = {1e-6, 1e-5, 1e-5, 1e-2, 1e-2, 1e-2};
    const RealImage source = test::noisePlane(256, 128, 14);
    for (int wavelet = 0; wavelet < kWaveletCount; ++wavelet) {
        SCOPED_TRACE(wavelet);
        RealImage coefficients(256, 128);
        RealImage target(256, 128);

        FwtImage(source, coefficients, 128, 256, 4, banks.analysisLow[wavelet],
                 banks.analysisHigh[wavelet]);
        IwtImage(coefficients, target, 128, 256, 4, banks.synthesisLow[wavelet],
                 banks.synthesisHigh[wavelet]);

        double worst = 0.0;
        for (std::size_t i = 0; i < source.sampleCount(); ++i) {
            worst = std::max(worst, std::abs(source.data()[i] - target.data()[i]));
        }
        EXPECT_LT(worst, kBounds[wavelet]);
        EXPECT_GT(worst, 0.0);
    }
}

}  // namespace
}  // namespace orv
