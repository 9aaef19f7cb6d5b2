#include "wavelets/shrinkage/sure_threshold.h"

#include <gtest/gtest.h>

#if defined(__linux__)
#include <sys/resource.h>
#endif

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "support/plain_shrinkage.h"

namespace orv {
namespace {

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void expectPlainResult(const std::vector<double>& values) {
    std::vector<double> copy = values;

    const double threshold = sureThreshold(copy.data(), static_cast<int>(copy.size()));

    const double expected = test::plainSureThreshold(values);
    EXPECT_TRUE(sameBits(threshold, expected)) << threshold << " for " << expected;
    EXPECT_EQ(std::memcmp(copy.data(), values.data(), values.size() * sizeof(double)), 0)
        << "the input was changed";
}

/// Noise of deviation 1 with a share of strong coefficients.
std::vector<double> coefficients(std::size_t count, double share, double strength,
                                 unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    std::vector<double> values(count);
    for (double& v : values) {
        v = normal(random);
        if (static_cast<double>(random() % 1000) < 1000.0 * share) {
            v += strength * normal(random);
        }
    }
    return values;
}

TEST(SureThreshold, IsThatOfTheFullSort) {
    unsigned seed = 1;
    for (const std::size_t count :
         {1U, 2U, 3U, 17U, 1000U, 1023U, 1024U, 1025U, 4096U, 20000U}) {
        for (const double share : {0.0, 0.02, 0.2, 1.0}) {
            for (const double strength : {0.5, 5.0, 200.0}) {
                SCOPED_TRACE(testing::Message() << count << ", " << share << ", " << strength);
                expectPlainResult(coefficients(count, share, strength, seed++));
            }
        }
    }
}

TEST(SureThreshold, IsThatOfTheFullSortOnCoarseValues) {
    for (const double step : {0.01, 0.25, 1.0, 3.0}) {
        std::vector<double> values = coefficients(30000, 0.1, 8.0, 9);
        for (double& v : values) {
            v = std::floor(v / step) * step;
        }
        SCOPED_TRACE(step);
        expectPlainResult(values);
    }
}

TEST(SureThreshold, IsThatOfTheFullSortOnEveryScale) {
    for (const double scale : {0.0, 1e-300, 1e-150, 1e-8, 0.1, 0.9, 1.1, 3.0, 1e6, 1e100, 1e137,
                               1e150, 1e152, 1e155}) {
        std::vector<double> values = coefficients(5000, 0.1, 8.0, 10);
        for (double& v : values) {
            v *= scale;
        }
        SCOPED_TRACE(scale);
        expectPlainResult(values);
    }
}

TEST(SureThreshold, IsThatOfTheFullSortOnConstantsAndMostlyZeros) {
    expectPlainResult(std::vector<double>(5000, -1.25));
    expectPlainResult(std::vector<double>(5000, 0.0));
    std::vector<double> values = coefficients(5000, 0.1, 8.0, 11);
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = i % 9 == 0 ? values[i] : 0.0;
    }
    expectPlainResult(values);
}

TEST(SureThreshold, CountsZerosThatAreNotGiven) {
    for (const std::size_t zeros : {std::size_t{1}, std::size_t{700}, std::size_t{40000}}) {
        for (const std::size_t count : {std::size_t{10}, std::size_t{8000}}) {
            SCOPED_TRACE(testing::Message() << zeros << " zeros, " << count << " others");
            std::vector<double> values = coefficients(count, 0.2, 9.0, 12);
            std::vector<double> all = values;
            all.resize(count + zeros, 0.0);
            for (double& v : values) {
                v = std::fabs(v);
            }

            const double threshold =
                sureThresholdOfMagnitudes(values.data(), values.size(), zeros);

            EXPECT_TRUE(sameBits(threshold, test::plainSureThreshold(all)));
        }
    }
}

TEST(SureThreshold, IsZeroWithoutValues) {
    EXPECT_EQ(sureThreshold(nullptr, 0), 0.0);
}

#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)

void limitMemory(rlim_t bytes) {
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
}

TEST(SureThresholdDeathTest, AnArrayThatCannotBeHadEndsTheProcess) {
    const double value = 1.0;

    EXPECT_EXIT(
        {
            limitMemory(rlim_t{4} << 30);
            sureThreshold(&value, std::numeric_limits<int>::max());
        },
        testing::ExitedWithCode(1), "^sureThreshold: Unable to malloc working array!\n$");
}

#endif

TEST(Quirk, SureRisk) {
    const double values[] = {1.0, 1.6};

    // 1 x 2 + 1 + 2 = 5 against 2.56 x 1 + 3.56 + 0 = 6.12.
    EXPECT_EQ(sureThreshold(values, 2), 1.0);
    // The textbook's risk, a square and a 2 lower, is least at the larger value:
    // 1 x 1 + 1 + 0 = 2 against 2.56 x 0 + 3.56 - 2 = 1.56.
}

}  // namespace
}  // namespace orv
