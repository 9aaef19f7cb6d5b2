#include "filters/kernels/homomorphic_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "base/cpu_features.h"
#include "base/elementary.h"
#include "support/plane_support.h"

namespace orv {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::size_t kCounts[] = {0, 1, 2, 3, 7, 8, 15, 64, 511, 512, 513, 1200};

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
    return a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

template <class Check>
void onEveryTarget(Check check) {
    for (const KernelTarget target :
         {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
        const HomomorphicKernels* kernels = homomorphicKernels(target);
        if (kernels == nullptr || !isAvailable(target)) {
            continue;
        }
        for (const std::size_t count : kCounts) {
            SCOPED_TRACE(testing::Message() << nameOf(target) << ", " << count);
            check(*kernels, count);
        }
    }
}

std::vector<double> tableOfLogarithms() {
    std::vector<double> table(256);
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = elementaryLog(static_cast<double>(i));
    }
    return table;
}

std::vector<double> bytes(std::size_t count) {
    std::vector<double> x(count);
    test::Noise noise(1);
    for (double& sample : x) {
        sample = noise.integer(0, 255);
    }
    return x;
}

void expectLogarithms(const HomomorphicKernels& kernels, const std::vector<double>& x) {
    std::vector<double> expected;
    for (const double sample : x) {
        expected.push_back(elementaryLog(sample + 0.0));
    }
    std::vector<double> actual(x.size(), -7.0);

    kernels.logarithm(x.data(), tableOfLogarithms().data(), actual.data(), x.size());

    EXPECT_TRUE(sameBits(actual, expected));
}

TEST(HomomorphicKernels, LogarithmsFromTheTableAreThoseOfTheFunction) {
    onEveryTarget([](const HomomorphicKernels& kernels, std::size_t count) {
        expectLogarithms(kernels, bytes(count));
    });
}

TEST(HomomorphicKernels, OneSampleThatIsNoByteIsStillRight) {
    onEveryTarget([](const HomomorphicKernels& kernels, std::size_t count) {
        for (const double odd :
             {0.5, 1.0000000000000002, 254.5, 256.0, 511.0, -1.0, -0.0, 1e300, 0x1p52,
              0x1p52 + 7.0, 1e-320, kInfinity, -kInfinity, kNan}) {
            std::vector<double> x = bytes(count);
            if (count > 0) {
                x[count / 2] = odd;
            }
            expectLogarithms(kernels, x);
        }
    });
}

TEST(HomomorphicKernels, TheTableIsReadForBytes) {
    onEveryTarget([](const HomomorphicKernels& kernels, std::size_t count) {
        const std::vector<double> marked(256, 42.0);
        const std::vector<double> x = bytes(count);
        std::vector<double> y(count);

        kernels.logarithm(x.data(), marked.data(), y.data(), count);

        EXPECT_TRUE(sameBits(y, std::vector<double>(count, 42.0)));
    });
}

TEST(HomomorphicKernels, SplitAndJoinFollowTheirFormulas) {
    onEveryTarget([](const HomomorphicKernels& kernels, std::size_t count) {
        const double special[] = {0.0, -0.0, -3.0, 5.0, 255.0, kInfinity, -kInfinity, kNan};
        test::Noise noise(2);
        std::vector<double> source(count);
        std::vector<double> light(count);
        for (std::size_t i = 0; i < count; ++i) {
            source[i] = i % 5 == 3 ? special[(i / 5) % 8] : noise.between(-60.0, 255.0);
            light[i] = i % 7 == 2 ? special[(i / 7) % 8] : noise.between(-60.0, 255.0);
        }
        std::vector<double> level(count);
        std::vector<double> share(count);

        kernels.split(source.data(), light.data(), level.data(), share.data(), count);

        for (std::size_t i = 0; i < count; ++i) {
            double m = light[i];
            if (m < 0.0)
                m = 0.0;
            if (m < source[i])
                m = source[i];
            double r = source[i] / m;
            if (r < 0.0)
                r = 0.0;
            if (r > 1.0)
                r = 1.0;
            EXPECT_TRUE(level[i] == m * 0.00392156862745098 || std::isnan(m));
            EXPECT_EQ(std::isnan(level[i]), std::isnan(m));
            EXPECT_TRUE(share[i] == r || (std::isnan(r) && std::isnan(share[i])));
        }

        std::vector<double> joined(count);
        kernels.join(level.data(), share.data(), joined.data(), count);
        for (std::size_t i = 0; i < count; ++i) {
            const double expected = level[i] * 255.0 * share[i];
            EXPECT_TRUE(joined[i] == expected ||
                        (std::isnan(expected) && std::isnan(joined[i])));
        }
    });
}

TEST(HomomorphicKernels, NoLightAndABlackSampleHaveNoShare) {
    onEveryTarget([](const HomomorphicKernels& kernels, std::size_t count) {
        std::vector<double> source(count, 0.0);
        std::vector<double> light(count, -1.0);
        std::vector<double> share(count);

        kernels.split(source.data(), light.data(), light.data(), share.data(), count);

        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_EQ(light[i], 0.0);
            EXPECT_TRUE(std::isnan(share[i]));
        }
    });
}

TEST(HomomorphicKernels, DifferencesMayTakeTheFirstPlace) {
    onEveryTarget([](const HomomorphicKernels& kernels, std::size_t count) {
        std::vector<double> x = bytes(count);
        const std::vector<double> low(count, 0.3);
        std::vector<double> expected;
        for (const double sample : x) {
            expected.push_back(sample - 0.3);
        }

        kernels.difference(x.data(), low.data(), x.data(), count);

        EXPECT_TRUE(sameBits(x, expected));
    });
}

}  // namespace
}  // namespace orv
