#include "base/kernels/elementary_kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "base/cpu_features.h"
#include "base/elementary.h"

namespace orv {
namespace {

constexpr KernelTarget kTargets[] = {KernelTarget::Generic, KernelTarget::Avx2,
                                     KernelTarget::Avx512};

struct Case {
    const char* name;
    ElementaryKernels::Function ElementaryKernels::*array;
    double (*scalar)(double);
};

constexpr Case kCases[] = {
    {"exp", &ElementaryKernels::exp, elementaryExp},
    {"log", &ElementaryKernels::log, elementaryLog},
    {"log10", &ElementaryKernels::log10, elementaryLog10},
    {"exp10", &ElementaryKernels::exp10, elementaryExp10},
    {"atan", &ElementaryKernels::atan, elementaryAtan},
};

std::vector<double> ordinaryArguments(std::size_t count) {
    std::vector<double> x(count);
    std::uint64_t state = 7;
    for (double& value : x) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        value = 0.001 + 255.0 * static_cast<double>(state >> 11) * 0x1p-53;
    }
    return x;
}

/// Arguments from 1/2 to 2, whose powers leave the range of normal numbers at exponents near 1024.
std::vector<double> aroundOne(std::size_t count) {
    std::vector<double> x = ordinaryArguments(count);
    for (std::size_t i = 0; i < count; ++i) {
        x[i] = i % 5 == 0 ? 2.0 : (i % 5 == 1 ? 0.5 : 0.5 + 1.5 * (x[i] / 256.0));
    }
    return x;
}

/// Arguments of every kind, bit patterns without order among them.
std::vector<double> unruly(std::size_t count) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kSpecial[] = {0.0,    -0.0,   1.0,     -1.0,      kInfinity, -kInfinity,
                                   -3.0,   2.0,    -0x1p52, 0x1p-1074, 0x1p-1022, 1e308,
                                   -708.5, 709.5,  -745.2,  710.0,     -307.5,    308.3,
                                   -320.0, 1e-310, 0x1p53,  0.9999999, -1e-3,     5.0};
    std::vector<double> x(count);
    std::uint64_t state = 11;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        const std::uint64_t bits = state ^ (state >> 31);
        std::memcpy(&x[i], &bits, sizeof bits);
        if (i % 3 == 0) {
            x[i] = kSpecial[(i / 3) % std::size(kSpecial)];
        } else if (i % 17 == 1) {
            x[i] = std::numeric_limits<double>::quiet_NaN();
        }
    }
    return x;
}

bool sameBits(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0);
}

/// Runs `check(kernels, x)` for all targets of this machine, kinds of arguments and lengths.
template <class Check>
void onEveryTarget(Check check) {
    for (const KernelTarget target : kTargets) {
        const ElementaryKernels* kernels = elementaryKernels(target);
        if (kernels == nullptr || !isAvailable(target)) {
            continue;
        }
        for (const std::size_t count : {0u, 1u, 2u, 3u, 5u, 8u, 13u, 31u, 511u, 513u, 2000u}) {
            SCOPED_TRACE(testing::Message() << nameOf(target) << ", " << count);
            check(*kernels, ordinaryArguments(count));
            check(*kernels, unruly(count));
            check(*kernels, aroundOne(count));
            // One value at or beyond an end of a range among many that are in it.
            for (const double odd :
                 {-0.0, -708.0, -708.4, -709.0, -730.0, 709.0, 709.7, 709.9, -307.0, -307.7,
                  -315.0, 308.0, 308.2, 308.3, 1e-310, 1e307, 1e-307, -2.0}) {
                std::vector<double> mixed = ordinaryArguments(count);
                if (count > 2) {
                    mixed[count / 2] = odd;
                }
                check(*kernels, mixed);
            }
        }
    }
}

TEST(ElementaryKernels, ArraysHaveTheBitsOfSingleValues) {
    onEveryTarget([](const ElementaryKernels& kernels, const std::vector<double>& x) {
        for (const Case& c : kCases) {
            std::vector<double> expected;
            for (const double value : x) {
                expected.push_back(c.scalar(value));
            }
            std::vector<double> actual(x.size(), -7.0);

            (kernels.*c.array)(x.data(), actual.data(), x.size());

            EXPECT_TRUE(sameBits(actual, expected)) << c.name;
        }
    });
}

TEST(ElementaryKernels, PowersHaveTheBitsOfSingleValues) {
    constexpr double kExponents[] = {0.45,
                                     0.5,
                                     1.0,
                                     2.0,
                                     3.0,
                                     -1.0,
                                     -2.5,
                                     0.0,
                                     -0.0,
                                     1e-300,
                                     250.7,
                                     -1000.0,
                                     1024.5,
                                     -1024.5,
                                     1e30,
                                     0x1p53 - 1.0,
                                     std::numeric_limits<double>::infinity(),
                                     -std::numeric_limits<double>::infinity(),
                                     std::numeric_limits<double>::quiet_NaN()};
    onEveryTarget([&](const ElementaryKernels& kernels, const std::vector<double>& x) {
        for (const double exponent : kExponents) {
            std::vector<double> expected;
            for (const double value : x) {
                expected.push_back(elementaryPow(value, exponent));
            }
            std::vector<double> actual(x.size(), -7.0);

            kernels.pow(x.data(), exponent, actual.data(), x.size());

            EXPECT_TRUE(sameBits(actual, expected)) << exponent;
        }
    });
}

TEST(ElementaryKernels, AResultMayTakeTheArgumentsPlace) {
    onEveryTarget([](const ElementaryKernels& kernels, const std::vector<double>& x) {
        for (const Case& c : kCases) {
            std::vector<double> apart(x.size());
            std::vector<double> inPlace = x;

            (kernels.*c.array)(x.data(), apart.data(), x.size());
            (kernels.*c.array)(inPlace.data(), inPlace.data(), x.size());

            EXPECT_TRUE(sameBits(inPlace, apart)) << c.name;
        }
        std::vector<double> apart(x.size());
        std::vector<double> inPlace = x;

        kernels.pow(x.data(), 0.45, apart.data(), x.size());
        kernels.pow(inPlace.data(), 0.45, inPlace.data(), x.size());

        EXPECT_TRUE(sameBits(inPlace, apart));
    });
}

TEST(ElementaryKernels, NothingBehindTheLastValueIsWritten) {
    onEveryTarget([](const ElementaryKernels& kernels, const std::vector<double>& x) {
        std::vector<double> y(x.size() + 8, 42.0);

        kernels.exp(x.data(), y.data(), x.size());
        kernels.pow(x.data(), 0.5, y.data(), x.size());

        for (std::size_t i = x.size(); i < y.size(); ++i) {
            EXPECT_EQ(y[i], 42.0);
        }
    });
}

}  // namespace
}  // namespace orv
