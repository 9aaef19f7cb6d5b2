#include "wavelets/kernels/shrink_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <vector>

#include "base/cpu_features.h"
#include "support/plane_support.h"

namespace orv {
namespace {

constexpr KernelTarget kTargets[] = {KernelTarget::Generic, KernelTarget::Avx2,
                                     KernelTarget::Avx512};

const ShrinkKernels& generic() {
    return shrinkKernels(KernelTarget::Generic);
}

/// Values of many sizes, with zeros of both signs and what is no finite number among them.
std::vector<double> valuesOf(std::size_t count, unsigned seed, bool finite) {
    test::Noise noise(seed);
    std::vector<double> values(count);
    for (double& v : values) {
        v = noise.between(-3.0, 3.0);
        switch (noise.integer(0, 20)) {
            case 0:
                v = 0.0;
                break;
            case 1:
                v = -0.0;
                break;
            case 2:
                v *= 1e150;
                break;
            case 3:
                v *= 1e-310;
                break;
            case 4:
                v = finite ? v : std::numeric_limits<double>::infinity();
                break;
            case 5:
                v = finite ? v : std::numeric_limits<double>::quiet_NaN();
                break;
            default:
                break;
        }
    }
    return values;
}

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

// NaN stays NaN; which one is not compared.
bool sameOrNan(const std::vector<double>& a, const std::vector<double>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) {
        return std::memcmp(&x, &y, sizeof x) == 0 || (std::isnan(x) && std::isnan(y));
    });
}

double plainSoftened(double v, double threshold) {
    if (!(std::fabs(v) > threshold) || v == 0.0) {
        return 0.0;
    }
    return v > 0.0 ? v - threshold : v + threshold;
}

/// Calls check(kernels, values, tag) for every target and length, from every alignment.
template <class Check>
void forEachCase(bool finite, Check check) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        for (std::size_t count = 0; count < 70; ++count) {
            SCOPED_TRACE(testing::Message() << nameOf(target) << ", " << count);
            check(shrinkKernels(target),
                  valuesOf(count, static_cast<unsigned>(count) + 1U, finite));
        }
    }
}

TEST(ShrinkKernels, MagnitudesAreThoseOfThePlainLoop) {
    forEachCase(false, [](const ShrinkKernels& kernels, const std::vector<double>& values) {
        std::vector<double> plain(values.size());
        std::vector<double> scaled(values.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            plain[i] = std::fabs(values[i]);
            scaled[i] = std::fabs(values[i] / 1.7);
        }
        std::vector<double> result(values.size(), -1.0);

        kernels.magnitudes(values.data(), result.data(), result.size());
        EXPECT_TRUE(sameOrNan(result, plain));
        kernels.scaledMagnitudes(values.data(), 1.7, result.data(), result.size());
        EXPECT_TRUE(sameOrNan(result, scaled));
    });
}

TEST(ShrinkKernels, SofteningIsThatOfThePlainLoop) {
    for (const double threshold :
         {-1.5, 0.0, 0.8, 2.9, 1e200, std::numeric_limits<double>::quiet_NaN()}) {
        forEachCase(false, [threshold](const ShrinkKernels& kernels,
                                       const std::vector<double>& values) {
            std::vector<double> plain(values.size());
            std::vector<double> scaledPlain(values.size());
            std::size_t tossed = 0;
            std::size_t scaledTossed = 0;
            for (std::size_t i = 0; i < values.size(); ++i) {
                plain[i] = plainSoftened(values[i], threshold);
                tossed += std::fabs(values[i]) > threshold ? 0U : 1U;
                const double quotient = values[i] / 0.3;
                scaledPlain[i] = plainSoftened(quotient, threshold) * 0.3;
                scaledTossed += std::fabs(quotient) > threshold ? 0U : 1U;
            }
            std::vector<double> result = values;
            std::vector<double> scaled = values;

            EXPECT_EQ(kernels.shrink(result.data(), threshold, result.size()), tossed);
            EXPECT_EQ(kernels.shrinkScaled(scaled.data(), 0.3, threshold, scaled.size()),
                      scaledTossed);
            EXPECT_TRUE(sameBits(result, plain));
            EXPECT_TRUE(sameBits(scaled, scaledPlain));
        });
    }
}

TEST(ShrinkKernels, DividingAndMultiplyingRoundsTwice) {
    forEachCase(false, [](const ShrinkKernels& kernels, const std::vector<double>& values) {
        std::vector<double> plain(values.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double quotient = values[i] / 12.34;
            plain[i] = quotient * 12.34;
        }
        std::vector<double> result = values;

        kernels.divideAndMultiply(result.data(), 12.34, result.size());

        EXPECT_TRUE(sameOrNan(result, plain));
    });
    double one = 1.0;
    generic().divideAndMultiply(&one, 49.0, 1);
    EXPECT_EQ(one, 1.0 - 0x1p-53);
}

TEST(ShrinkKernels, SumsOfSquaresKeepTheOrderOfTheirLanes) {
    forEachCase(true, [](const ShrinkKernels& kernels, const std::vector<double>& values) {
        double lanes[8] = {};
        for (std::size_t i = 0; i < values.size(); ++i) {
            lanes[i % 8] += values[i] * values[i];
        }
        const double sum = ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
                           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));

        EXPECT_EQ(kernels.sumOfSquares(values.data(), values.size()), sum);
    });
}

TEST(ShrinkKernels, CentredSquaresAreThoseOfThePlainLoop) {
    forEachCase(false, [](const ShrinkKernels& kernels, const std::vector<double>& values) {
        std::vector<double> plain(values.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            plain[i] = (values[i] * values[i] - 1.3) / 7.0;
        }
        std::vector<double> result = values;

        kernels.centredSquares(result.data(), 1.3, 7.0, result.data(), result.size());

        EXPECT_TRUE(sameOrNan(result, plain));
    });
}

TEST(ShrinkKernels, LargestMagnitudePassesOverWhatIsNoNumber) {
    forEachCase(false, [](const ShrinkKernels& kernels, const std::vector<double>& values) {
        double largest = 0.0;
        for (const double v : values) {
            largest = std::fabs(v) > largest ? std::fabs(v) : largest;
        }

        EXPECT_EQ(kernels.largestMagnitude(values.data(), values.size()), largest);
    });
}

TEST(ShrinkKernels, RunningSumsAreThoseOfThePlainLoop) {
    for (const KernelTarget target : kTargets) {
        if (!isAvailable(target)) {
            continue;
        }
        for (std::size_t height = 1; height < 40; ++height) {
            for (std::size_t columns = 0; columns <= 4; ++columns) {
                SCOPED_TRACE(testing::Message()
                             << nameOf(target) << ", " << columns << " of " << height);
                // The column in front, the columns, and one sample behind that must stay.
                std::vector<double> result = valuesOf(
                    (columns + 1) * height + 1, static_cast<unsigned>(height + columns), true);
                std::vector<double> plain = result;
                for (std::size_t i = height; i < (columns + 1) * height; ++i) {
                    plain[i] = i % height == 0
                                   ? plain[i] + plain[i - height]
                                   : ((plain[i] + plain[i - 1]) + plain[i - height]) -
                                         plain[i - height - 1];
                }

                shrinkKernels(target).cumulateColumns(result.data(), result.data() + height,
                                                      height, static_cast<int>(columns));

                EXPECT_TRUE(sameBits(result, plain));
            }
        }
    }
}

}  // namespace
}  // namespace orv
