#include "wavelets/kernels/wavelet_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "base/cpu_features.h"
#include "support/wavelet_support.h"

namespace orv {
namespace {

using test::WaveletBanks;

constexpr int kMargin = 16;
constexpr int kColumns = 14;
constexpr double kUntouched = 1234.5;

/// Results of a kernel, with untouched samples behind each.
using Results = std::vector<std::vector<double>>;
using Run = std::function<void(const WaveletKernels&, int wavelet, int count, Results&)>;

/// Runs on every target, with every count and wavelet, and compares with the generic one; what
/// lies behind `written(count)` samples of a result has to stay.
void compareTargets(int resultCount, const std::function<int(int)>& written, const Run& run) {
    for (const KernelTarget target : {KernelTarget::Avx2, KernelTarget::Avx512}) {
        if (!isAvailable(target)) {
            continue;
        }
        for (int wavelet = 0; wavelet < kWaveletCount; ++wavelet) {
            for (int count = 0; count < 70; ++count) {
                SCOPED_TRACE(std::string(nameOf(target)) + ", wavelet " +
                             std::to_string(wavelet) + ", count " + std::to_string(count));
                const auto size = static_cast<std::size_t>(2 * count + kMargin);
                Results expected(static_cast<std::size_t>(resultCount),
                                 std::vector<double>(size, kUntouched));
                Results results = expected;

                run(waveletKernels(KernelTarget::Generic), wavelet, count, expected);
                run(waveletKernels(target), wavelet, count, results);

                for (std::size_t i = 0; i < results.size(); ++i) {
                    ASSERT_TRUE(test::sameBits(results[i].data(), expected[i].data(), size));
                    for (auto k = static_cast<std::size_t>(written(count)); k < size; ++k) {
                        ASSERT_EQ(expected[i][k], kUntouched);
                    }
                }
            }
        }
    }
}

/// Columns that start at every alignment.
std::vector<const double*> columnsOf(const std::vector<double>& samples) {
    std::vector<const double*> columns;
    for (std::size_t i = 0; i < kColumns; ++i) {
        columns.push_back(samples.data() + 81 * i);
    }
    return columns;
}

TEST(WaveletKernels, AnalyseAcrossHasTheSameBitsOnEveryTarget) {
    const WaveletBanks banks;
    const std::vector<double> samples = test::noiseLine(81 * kColumns, 1);
    const auto columns = columnsOf(samples);
    compareTargets(
        4, [](int count) { return (count + 1) / 2; },
        [&](const WaveletKernels& kernels, int wavelet, int count, Results& to) {
            kernels.analyseAcross(columns.data(), static_cast<std::size_t>(count),
                                  banks.analysisLow[wavelet], banks.analysisHigh[wavelet],
                                  to[0].data(), to[1].data(), to[2].data(), to[3].data());
        });
}

TEST(WaveletKernels, AnalyseAlongHasTheSameBitsOnEveryTarget) {
    const WaveletBanks banks;
    const std::vector<double> even = test::noiseLine(70 + 2 * kMargin, 2);
    const std::vector<double> odd = test::noiseLine(70 + 2 * kMargin, 3);
    compareTargets(
        2, [](int count) { return count; },
        [&](const WaveletKernels& kernels, int wavelet, int count, Results& to) {
            kernels.analyseAlong(even.data() + kMargin, odd.data() + kMargin,
                                 static_cast<std::size_t>(count), banks.analysisLow[wavelet],
                                 banks.analysisHigh[wavelet], to[0].data(), to[1].data());
        });
}

TEST(WaveletKernels, SynthesiseAlongHasTheSameBitsOnEveryTarget) {
    const WaveletBanks banks;
    const std::vector<double> low = test::noiseLine(70 + 2 * kMargin, 4);
    const std::vector<double> high = test::noiseLine(70 + 2 * kMargin, 5);
    compareTargets(
        1, [](int count) { return 2 * count; },
        [&](const WaveletKernels& kernels, int wavelet, int count, Results& to) {
            kernels.synthesiseAlong(
                low.data() + kMargin, high.data() + kMargin, static_cast<std::size_t>(count),
                banks.synthesisLow[wavelet], banks.synthesisHigh[wavelet], to[0].data());
        });
}

TEST(WaveletKernels, SynthesiseAcrossHasTheSameBitsOnEveryTarget) {
    const WaveletBanks banks;
    const std::vector<double> low = test::noiseLine(81 * kColumns, 6);
    const std::vector<double> high = test::noiseLine(81 * kColumns, 7);
    const auto lowColumns = columnsOf(low);
    const auto highColumns = columnsOf(high);
    compareTargets(
        2, [](int count) { return count; },
        [&](const WaveletKernels& kernels, int wavelet, int count, Results& to) {
            kernels.synthesiseAcross(lowColumns.data(), highColumns.data(),
                                     static_cast<std::size_t>(count),
                                     banks.synthesisLow[wavelet], banks.synthesisHigh[wavelet],
                                     to[0].data(), to[1].data());
        });
}

TEST(WaveletKernels, SumsOfNegativeZerosArePositiveZeros) {
    const WaveletBanks banks;
    const std::vector<double> zeros(81 * kColumns, -0.0);
    const auto columns = columnsOf(zeros);
    std::vector<double> even(32, kUntouched);
    std::vector<double> odd(32, kUntouched);

    waveletKernels().synthesiseAcross(columns.data(), columns.data(), 32, banks.synthesisLow[2],
                                      banks.synthesisHigh[2], even.data(), odd.data());

    for (std::size_t i = 0; i < 32; ++i) {
        EXPECT_EQ(even[i], 0.0);
        EXPECT_FALSE(std::signbit(even[i]));
        EXPECT_FALSE(std::signbit(odd[i]));
    }
}

}  // namespace
}  // namespace orv
