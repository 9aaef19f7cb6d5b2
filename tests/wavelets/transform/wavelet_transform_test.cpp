#include "wavelets/transform/wavelet_transform.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#if defined(__linux__)
#include <sys/resource.h>
#endif

#include "support/wavelet_support.h"

namespace orv {
namespace {

using test::sameBits;
using test::WaveletBanks;

std::vector<double> fwt(const std::vector<double>& x, int levels, const WaveletFilter& low,
                        const WaveletFilter& high) {
    std::vector<double> result(x.size());
    FwtVector(x.data(), result.data(), static_cast<int>(x.size()), levels, low, high);
    return result;
}

std::vector<double> iwt(const std::vector<double>& c, int levels, const WaveletFilter& low,
                        const WaveletFilter& high) {
    std::vector<double> result(c.size());
    IwtVector(c.data(), result.data(), static_cast<int>(c.size()), levels, low, high);
    return result;
}

TEST(Power2, GivesPowersOfTwo) {
    EXPECT_EQ(power2(0), 1);
    EXPECT_EQ(power2(1), 2);
    EXPECT_EQ(power2(10), 1024);
    EXPECT_EQ(power2(30), 1 << 30);
    EXPECT_EQ(power2(31), INT_MAX);
}

TEST(Power2, ANegativeArgumentTellsAndGivesZero) {
    testing::internal::CaptureStderr();

    const int result = power2(-1);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "\npower2: negative argument! Returning 0\n");
    EXPECT_EQ(result, 0);
}

TEST(FloorLog2, GivesTheLargestPowerBelow) {
    EXPECT_EQ(floorLog2(1), 0);
    EXPECT_EQ(floorLog2(2), 1);
    EXPECT_EQ(floorLog2(3), 1);
    EXPECT_EQ(floorLog2(4), 2);
    EXPECT_EQ(floorLog2(1023), 9);
    EXPECT_EQ(floorLog2(1024), 10);
    EXPECT_EQ(floorLog2(INT_MAX), 30);
    EXPECT_EQ(floorLog2(0), -1);
    EXPECT_EQ(floorLog2(-5), -1);
}

TEST(FwtVector, HasTheBitsOfTheDefinition) {
    const WaveletBanks banks;
    for (const int n : {2, 4, 6, 10, 16, 34, 64, 512}) {
        const std::vector<double> x = test::noiseLine(n, 1);
        for (int i = 0; i < kWaveletCount; ++i) {
            SCOPED_TRACE(testing::Message() << n << " samples, wavelet " << i);
            const auto expected =
                test::definition::forward(x, banks.analysisLow[i], banks.analysisHigh[i]);

            const auto result = fwt(x, 1, banks.analysisLow[i], banks.analysisHigh[i]);

            EXPECT_TRUE(sameBits(result.data(), expected.data(), expected.size()));
        }
    }
}

TEST(IwtVector, HasTheBitsOfTheDefinition) {
    const WaveletBanks banks;
    for (const int n : {2, 4, 6, 10, 16, 34, 64, 512}) {
        const std::vector<double> c = test::noiseLine(n, 2);
        for (int i = 0; i < kWaveletCount; ++i) {
            SCOPED_TRACE(testing::Message() << n << " samples, wavelet " << i);
            const auto expected =
                test::definition::inverse(c, banks.synthesisLow[i], banks.synthesisHigh[i]);

            const auto result = iwt(c, 1, banks.synthesisLow[i], banks.synthesisHigh[i]);

            EXPECT_TRUE(sameBits(result.data(), expected.data(), expected.size()));
        }
    }
}

TEST(FwtVector, FurtherLevelsWorkOnTheLowHalfAlone) {
    const WaveletBanks banks;
    const WaveletFilter& low = banks.analysisLow[2];
    const WaveletFilter& high = banks.analysisHigh[2];
    const std::vector<double> x = test::noiseLine(32, 3);
    const auto once = fwt(x, 1, low, high);
    const auto lowHalf =
        fwt(std::vector<double>(once.begin(), once.begin() + 16), 1, low, high);

    const auto twice = fwt(x, 2, low, high);

    EXPECT_TRUE(sameBits(twice.data(), lowHalf.data(), 16));
    EXPECT_TRUE(sameBits(twice.data() + 16, once.data() + 16, 16));
}

TEST(IwtVector, UndoesSeveralLevels) {
    const WaveletBanks banks;
    const std::vector<double> x = test::noiseLine(64, 4);
    for (int i = 0; i < kWaveletCount; ++i) {
        SCOPED_TRACE(i);
        const auto c = fwt(x, 3, banks.analysisLow[i], banks.analysisHigh[i]);

        const auto result = iwt(c, 3, banks.synthesisLow[i], banks.synthesisHigh[i]);

        for (std::size_t k = 0; k < x.size(); ++k) {
            // Nine to six decimals in the taps, times grey levels and three passes.
            EXPECT_NEAR(result[k], x[k], i < 3 ? 1e-5 : 1e-2);
        }
    }
}

TEST(FwtVector, HaarOfTwoSamplesWrapsWithinThem) {
    const WaveletBanks banks;

    const auto result = fwt({3.0, 5.0}, 1, banks.analysisLow[1], banks.analysisHigh[1]);

    // The taps stand at -1 and 0, so that the pair is (x[1], x[0]).
    EXPECT_EQ(result[0], 5.0 * 0.707106781 + 3.0 * 0.707106781);
    EXPECT_EQ(result[1], 5.0 * 0.707106781 + 3.0 * -0.707106781);
    const auto back = iwt(result, 1, banks.synthesisLow[1], banks.synthesisHigh[1]);
    EXPECT_NEAR(back[0], 3.0, 1e-8);
    EXPECT_NEAR(back[1], 5.0, 1e-8);
}

TEST(FwtVector, ALineShorterThanTheFiltersWrapsSeveralTimes) {
    const WaveletBanks banks;
    const std::vector<double> x = test::noiseLine(2, 5);
    const auto expected =
        test::definition::forward(x, banks.analysisLow[4], banks.analysisHigh[4]);

    const auto result = fwt(x, 1, banks.analysisLow[4], banks.analysisHigh[4]);

    EXPECT_TRUE(sameBits(result.data(), expected.data(), 2));
}

TEST(FwtVector, NoLevelsCopy) {
    const WaveletBanks banks;
    const std::vector<double> x = test::noiseLine(9, 6);

    const auto result = fwt(x, 0, banks.analysisLow[3], banks.analysisHigh[3]);

    EXPECT_TRUE(sameBits(result.data(), x.data(), x.size()));
}

TEST(IwtVector, NoLevelsTellOfTheNegativePowerAndCopy) {
    const WaveletBanks banks;
    const std::vector<double> c = test::noiseLine(9, 7);
    testing::internal::CaptureStderr();

    const auto result = iwt(c, 0, banks.synthesisLow[3], banks.synthesisHigh[3]);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "\npower2: negative argument! Returning 0\n");
    EXPECT_TRUE(sameBits(result.data(), c.data(), c.size()));
}

TEST(Quirk, OddLineHigh) {
    const WaveletBanks banks;
    const WaveletFilter& low = banks.analysisLow[2];
    const WaveletFilter& high = banks.analysisHigh[2];
    const std::vector<double> x = test::noiseLine(7, 8);

    const auto result = fwt(x, 1, low, high);

    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(result[static_cast<std::size_t>(i)], test::definition::sumAt(x, 2 * i, low));
    }
    // Place 3 would be the first high result.
    EXPECT_NE(result[3], test::definition::sumAt(x, 0, high));
    for (int i = 1; i < 4; ++i) {
        EXPECT_EQ(result[static_cast<std::size_t>(3 + i)],
                  test::definition::sumAt(x, 2 * i, high));
    }
}

TEST(FwtVector, ASingleSampleBecomesTheHighResult) {
    const WaveletBanks banks;

    const auto result = fwt({4.0}, 1, banks.analysisLow[1], banks.analysisHigh[1]);

    EXPECT_EQ(result[0], 0.0);
}

TEST(IwtVector, AnOddLineRebuildsOnlyItsPairs) {
    const WaveletBanks banks;
    const std::vector<double> c = test::noiseLine(7, 9);
    std::vector<double> a(7, 0.0);
    std::vector<double> b(7, 0.0);
    for (std::size_t t = 0; t < 3; ++t) {
        a[2 * t] = c[t];
        b[2 * t] = c[3 + t];
    }

    const auto result = iwt(c, 1, banks.synthesisLow[3], banks.synthesisHigh[3]);

    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(result[static_cast<std::size_t>(i)],
                  test::definition::sumAt(a, i, banks.synthesisLow[3]) +
                      test::definition::sumAt(b, i, banks.synthesisHigh[3]));
    }
}

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)

/// Leaves the process too little memory for a line of INT_MAX samples.
void limitMemory() {
    const rlimit limit = {rlim_t{4} << 30, rlim_t{4} << 30};
    setrlimit(RLIMIT_AS, &limit);
}

TEST(FwtVectorDeathTest, ABufferThatCannotBeHadEndsTheProcess) {
    const WaveletBanks banks;
    double sample = 0.0;

    EXPECT_EXIT(
        {
            limitMemory();
            FwtVector(&sample, &sample, INT_MAX, 1, banks.analysisLow[1],
                      banks.analysisHigh[1]);
        },
        testing::ExitedWithCode(1), "^FwtVector: unable to malloc working vector$");
}

TEST(IwtVectorDeathTest, BuffersThatCannotBeHadEndTheProcess) {
    const WaveletBanks banks;
    double sample = 0.0;

    EXPECT_EXIT(
        {
            limitMemory();
            IwtVector(&sample, &sample, INT_MAX, 1, banks.synthesisLow[1],
                      banks.synthesisHigh[1]);
        },
        testing::ExitedWithCode(1), "^IwtVector: unable to malloc working vector$");
}

#endif

}  // namespace
}  // namespace orv
