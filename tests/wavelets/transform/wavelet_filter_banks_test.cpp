#include "wavelets/transform/wavelet_filter_banks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "support/wavelet_support.h"

namespace orv {
namespace {

using test::WaveletBanks;

struct Shape {
    int length;
    int offset;
};

void expectShapes(const WaveletFilter* bank, const Shape (&shapes)[kWaveletCount]) {
    for (int i = 0; i < kWaveletCount; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(bank[i].length, shapes[i].length);
        EXPECT_EQ(bank[i].offset, shapes[i].offset);
    }
}

double sumOfTaps(const WaveletFilter& filter, bool alternating) {
    double sum = 0.0;
    for (int k = 0; k < filter.length; ++k) {
        sum += alternating && (k - filter.offset) % 2 != 0 ? -filter.taps[k] : filter.taps[k];
    }
    return sum;
}

TEST(WaveletFilterBanks, LengthsAndOffsetsAreThoseOfTheSixWavelets) {
    const WaveletBanks banks;

    expectShapes(banks.analysisLow, {{6, 0}, {2, 1}, {5, 1}, {9, 3}, {13, 5}, {9, 3}});
    expectShapes(banks.analysisHigh, {{6, 4}, {2, 1}, {3, 1}, {7, 3}, {11, 5}, {3, 1}});
    expectShapes(banks.synthesisLow, {{6, 5}, {2, 0}, {3, 2}, {7, 4}, {11, 6}, {3, 2}});
    expectShapes(banks.synthesisHigh, {{6, 1}, {2, 0}, {5, 2}, {9, 4}, {13, 6}, {9, 4}});
}

/// The first taps of each filter of a bank.
void expectTaps(const WaveletFilter* bank, const std::vector<std::vector<double>>& published) {
    for (std::size_t i = 0; i < published.size(); ++i) {
        for (std::size_t k = 0; k < published[i].size(); ++k) {
            EXPECT_EQ(bank[i].taps[k], published[i][k]) << "wavelet " << i << ", tap " << k;
        }
    }
}

TEST(WaveletFilterBanks, TapsKeepThePublishedDigits) {
    const WaveletBanks banks;

    // Symmetric filters up to their middle; the rest follows from their symmetry.
    expectTaps(banks.analysisLow,
               {{0.33267055295, 0.806891509311, 0.459877502118, -0.13501102001, -0.085441273882,
                 0.035226291882},
                {0.707106781, 0.707106781},
                {-0.176776695, 0.35355339, 1.060660172},
                {0.037828, -0.023849, -0.110624, 0.377402, 0.852699},
                {-0.008473, 0.003759, 0.047282, -0.033475, -0.068878, 0.383269, 0.767245},
                {0.033145, -0.066291, -0.176777, 0.419845, 0.994369}});
    expectTaps(banks.analysisHigh,
               {{0.035226291882, 0.085441273882, -0.13501102001, -0.459877502118,
                 0.806891509311, -0.33267055295},
                {0.707106781, -0.707106781},
                {-0.35355339, 0.70710678},
                {0.064539, -0.040689, -0.418092, 0.788486},
                {-0.014182, 0.006292, 0.108737, -0.069163, -0.448109, 0.832848},
                {-0.353553, 0.707107}});
    expectTaps(banks.synthesisLow,
               {{0.035226291882, -0.085441273882, -0.13501102001, 0.459877502118,
                 0.806891509311, 0.33267055295},
                {0.707106781, 0.707106781},
                {0.35355339, 0.70710678},
                {-0.064539, -0.040689, 0.418092, 0.788486},
                {0.014182, 0.006292, -0.108737, -0.069163, 0.448109, 0.832848},
                {0.353553, 0.707107}});
    expectTaps(banks.synthesisHigh,
               {{-0.33267055295, 0.806891509311, -0.459877502118, -0.13501102001,
                 0.085441273882, 0.035226291882},
                {-0.707106781, 0.707106781},
                {-0.176776695, -0.35355339, 1.060660172},
                {0.037828, 0.023849, -0.110624, -0.377402, 0.852699},
                {-0.008473, -0.003759, 0.047282, 0.033475, -0.068878, -0.383269, 0.767245},
                {0.033145, 0.066291, -0.176777, -0.419845, 0.994369}});
}

TEST(WaveletFilterBanks, LowFiltersPassAConstantAndHighFiltersStopIt) {
    const WaveletBanks banks;
    for (int i = 0; i < kWaveletCount; ++i) {
        SCOPED_TRACE(i);
        // Within the rounding of the published taps.
        EXPECT_NEAR(sumOfTaps(banks.analysisLow[i], false), std::sqrt(2.0), 1e-5);
        EXPECT_NEAR(sumOfTaps(banks.synthesisLow[i], false), std::sqrt(2.0), 1e-5);
        EXPECT_NEAR(sumOfTaps(banks.analysisHigh[i], false), 0.0, 1e-5);
        EXPECT_NEAR(sumOfTaps(banks.synthesisHigh[i], false), 0.0, 1e-5);
    }
}

TEST(WaveletFilterBanks, SynthesisTapsAreTheAnalysisTapsOfTheOtherBandWithTurnedSigns) {
    const WaveletBanks banks;
    for (int i = 2; i < kWaveletCount; ++i) {
        const WaveletFilter& analysis = banks.analysisHigh[i];
        const WaveletFilter& synthesis = banks.synthesisLow[i];
        for (int k = 0; k < analysis.length; ++k) {
            EXPECT_EQ(std::abs(analysis.taps[k]), std::abs(synthesis.taps[k]));
            EXPECT_EQ(analysis.taps[k], analysis.taps[analysis.length - 1 - k]);
            EXPECT_EQ(synthesis.taps[k], synthesis.taps[analysis.length - 1 - k]);
        }
        const WaveletFilter& low = banks.analysisLow[i];
        for (int k = 0; k < low.length; ++k) {
            EXPECT_EQ(std::abs(low.taps[k]), std::abs(banks.synthesisHigh[i].taps[k]));
            EXPECT_EQ(low.taps[k], low.taps[low.length - 1 - k]);
            EXPECT_EQ(banks.synthesisHigh[i].taps[k],
                      banks.synthesisHigh[i].taps[low.length - 1 - k]);
        }
    }
}

TEST(WaveletFilterBanks, OrthonormalWaveletsAreUndoneByTheirMirroredTaps) {
    const WaveletBanks banks;
    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        const int last = banks.analysisLow[i].length - 1;
        double squares = 0.0;
        for (int k = 0; k <= last; ++k) {
            const double low = banks.analysisLow[i].taps[k];
            EXPECT_EQ(banks.synthesisLow[i].taps[last - k], low);
            EXPECT_EQ(banks.synthesisHigh[i].taps[last - k], banks.analysisHigh[i].taps[k]);
            EXPECT_EQ(std::abs(banks.analysisHigh[i].taps[last - k]), std::abs(low));
            squares += low * low;
        }
        // Twelve and nine published decimals.
        EXPECT_NEAR(squares, 1.0, i == 0 ? 1e-11 : 1e-9);
    }
}

TEST(WaveletFilterBanks, TapsBeyondTheLengthStayAsTheyWere) {
    WaveletFilter banks[4][kWaveletCount];
    for (auto& bank : banks) {
        for (WaveletFilter& filter : bank) {
            for (double& tap : filter.taps) {
                tap = 77.0;
            }
        }
    }

    InitWaveletFilters(banks[0], banks[1], banks[2], banks[3]);

    for (const auto& bank : banks) {
        for (const WaveletFilter& filter : bank) {
            for (int k = 0; k < 25; ++k) {
                EXPECT_EQ(filter.taps[k] == 77.0, k >= filter.length);
            }
        }
    }
}

}  // namespace
}  // namespace orv
