#include "base/elementary.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace orv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kGreatest = std::numeric_limits<double>::max();
constexpr double kLeastNormal = std::numeric_limits<double>::min();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();

// A reference needs more bits than what it judges.
constexpr bool kLongDoubleIsLonger = std::numeric_limits<long double>::digits >= 64;
#define NEEDS_LONG_DOUBLE()                                     \
    if (!kLongDoubleIsLonger) {                                 \
        GTEST_SKIP() << "long double is no longer than double"; \
    }

bool sameBits(double a, double b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// The error in units of the last place of the exact value; those of subnormal numbers are all
/// the smallest one.
double errorInUlps(double got, long double exact) {
    if (std::isinf(got)) {
        return std::fabs(exact) >= static_cast<long double>(kGreatest) ? 0.5 : 1e9;
    }
    if (!(got == got)) {
        return 1e9;
    }
    const double nearest = std::fmin(std::fabs(static_cast<double>(exact)), kGreatest);
    int exponent = -1021;
    if (nearest >= kLeastNormal) {
        std::frexp(nearest, &exponent);
    }
    const long double ulp = std::ldexp(1.0L, exponent - 53);
    return static_cast<double>(std::fabs(static_cast<long double>(got) - exact) / ulp);
}

class Arguments {
  public:
    double between(double from, double to) {
        return from + (to - from) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
    }
    /// Any positive finite double, all exponents alike.
    double anyPositive() {
        return std::ldexp(between(1.0, 2.0), static_cast<int>(engine_() % 2097) - 1073);
    }
    double near1() {
        return 1.0 +
               between(-1.0, 1.0) * std::ldexp(1.0, -1 - static_cast<int>(engine_() % 51));
    }

  private:
    std::mt19937_64 engine_{20};
};

template <class Got, class Exact, class Next>
double worstError(Got got, Exact exact, Next next, int count = 400000) {
    double worst = 0.0;
    for (int i = 0; i < count; ++i) {
        const double x = next();
        worst = std::fmax(worst, errorInUlps(got(x), exact(static_cast<long double>(x))));
    }
    return worst;
}

long double exactExp(long double x) {
    return std::exp(x);
}
long double exactExp10(long double x) {
    return std::pow(10.0L, x);
}
long double exactLog(long double x) {
    return std::log(x);
}
long double exactLog10(long double x) {
    return std::log10(x);
}
long double exactAtan(long double x) {
    return std::atan(x);
}

// A search around the worst of ten million arguments found no error above 0.83 in exp and 10^x
// (subnormal results; 0.76 in others), 0.76 in the logarithms, 0.86 in the arc tangent and 0.83 in
// the power.
constexpr double kLimit = 0.9;

TEST(Elementary, ExpIsWithinAUnitOfTheLastPlace) {
    NEEDS_LONG_DOUBLE();
    Arguments a;
    EXPECT_LT(worstError(elementaryExp, exactExp, [&] { return a.between(-1.0, 1.0); }),
              kLimit);
    EXPECT_LT(worstError(elementaryExp, exactExp, [&] { return a.between(-746.0, 710.0); }),
              kLimit);
    EXPECT_LT(worstError(elementaryExp, exactExp, [&] { return a.between(-709.8, -708.3); }),
              kLimit);
    EXPECT_LT(worstError(elementaryExp, exactExp, [&] { return a.near1() - 1.0; }), kLimit);
}

TEST(Elementary, Exp10IsWithinAUnitOfTheLastPlace) {
    NEEDS_LONG_DOUBLE();
    Arguments a;
    EXPECT_LT(worstError(elementaryExp10, exactExp10, [&] { return a.between(-1.0, 3.0); }),
              kLimit);
    EXPECT_LT(worstError(elementaryExp10, exactExp10, [&] { return a.between(-325.0, 309.0); }),
              kLimit);
    EXPECT_LT(
        worstError(elementaryExp10, exactExp10, [&] { return a.between(-308.3, -307.6); }),
        kLimit);
}

// The difference is exact; beyond ln(2) / 2 it has up to twice the exponential's error in units.
TEST(Elementary, OneMinusExpLosesNoDigitsNearZero) {
    NEEDS_LONG_DOUBLE();
    Arguments a;
    const auto exact = [](long double x) { return -std::expm1(x); };
    EXPECT_LT(worstError(elementaryOneMinusExp, exact, [&] { return a.between(-0.34, 0.0); }),
              1.0);
    EXPECT_LT(worstError(elementaryOneMinusExp, exact, [&] { return a.between(-40.0, 0.0); }),
              2.0);
    EXPECT_LT(worstError(elementaryOneMinusExp, exact, [&] { return -a.anyPositive(); }), 2.0);
}

TEST(Elementary, OneMinusExpIs1FarBelowAndNeverANegativeZero) {
    for (const double x : {-38.0, -64.0, -64.1, -745.0, -1e300, -kInfinity}) {
        EXPECT_EQ(elementaryOneMinusExp(x), 1.0) << x;
    }
    EXPECT_TRUE(sameBits(elementaryOneMinusExp(0.0), 0.0));
    EXPECT_TRUE(sameBits(elementaryOneMinusExp(-0.0), 0.0));
    EXPECT_TRUE(sameBits(elementaryOneMinusExp(-kNan), kNan));
}

TEST(Elementary, LogarithmsAreWithinAUnitOfTheLastPlace) {
    NEEDS_LONG_DOUBLE();
    Arguments a;
    EXPECT_LT(worstError(elementaryLog, exactLog, [&] { return a.between(0.5, 2.0); }), kLimit);
    EXPECT_LT(worstError(elementaryLog, exactLog, [&] { return a.between(0.70, 0.712); }),
              kLimit);
    EXPECT_LT(worstError(elementaryLog, exactLog, [&] { return a.near1(); }), kLimit);
    EXPECT_LT(worstError(elementaryLog, exactLog, [&] { return a.anyPositive(); }), kLimit);
    EXPECT_LT(worstError(elementaryLog10, exactLog10, [&] { return a.between(0.5, 2.0); }),
              kLimit);
    EXPECT_LT(worstError(elementaryLog10, exactLog10, [&] { return a.near1(); }), kLimit);
    EXPECT_LT(worstError(elementaryLog10, exactLog10, [&] { return a.anyPositive(); }), kLimit);
}

TEST(Elementary, TheArcTangentIsWithinAUnitOfTheLastPlace) {
    NEEDS_LONG_DOUBLE();
    Arguments a;
    EXPECT_LT(worstError(elementaryAtan, exactAtan, [&] { return a.between(-3.0, 3.0); }),
              kLimit);
    EXPECT_LT(worstError(elementaryAtan, exactAtan, [&] { return a.between(0.6875, 0.71); }),
              kLimit);
    EXPECT_LT(worstError(elementaryAtan, exactAtan, [&] { return a.anyPositive(); }), kLimit);
}

template <class Next>
double worstPowerError(Next next) {
    double worst = 0.0;
    for (int i = 0; i < 300000; ++i) {
        const auto [x, y] = next();
        const long double exact =
            std::pow(static_cast<long double>(x), static_cast<long double>(y));
        worst = std::fmax(worst, errorInUlps(elementaryPow(x, y), exact));
    }
    return worst;
}

TEST(Elementary, PowersAreWithinAUnitOfTheLastPlace) {
    NEEDS_LONG_DOUBLE();
    using Pair = std::array<double, 2>;
    Arguments a;
    EXPECT_LT(worstPowerError([&] {
                  return Pair{a.between(0.0, 1.2), a.between(0.0, 3.0)};
              }),
              kLimit);
    EXPECT_LT(worstPowerError([&] {
                  const double x = a.anyPositive();
                  return Pair{x, a.between(-745.0, 709.0) / (std::log(x) + 1e-9)};
              }),
              kLimit);
    EXPECT_LT(worstPowerError([&] {
                  const double x = a.near1();
                  return Pair{x, a.between(-745.0, 709.0) / std::log(x == 1.0 ? 1.5 : x)};
              }),
              kLimit);
    EXPECT_LT(worstPowerError([&] {
                  return Pair{a.between(-40.0, 40.0), std::floor(a.between(-100.0, 100.0))};
              }),
              kLimit);
}

/// Values at which a function bends, stops or ends.
constexpr double kSpecial[] = {0.0,
                               1.0,
                               2.0,
                               3.0,
                               0.5,
                               1.5,
                               2.5,
                               0.4375,
                               0.6875,
                               1.1875,
                               2.4375,
                               10.0,
                               22.0,
                               100.0,
                               308.0,
                               309.0,
                               323.0,
                               324.0,
                               708.3,
                               709.7,
                               709.782712893383973,
                               709.782712893384,
                               745.13,
                               745.2,
                               1000.0,
                               1e300,
                               kInfinity,
                               kNan,
                               kLeast,
                               kLeastNormal,
                               1e-300,
                               0x1p-53,
                               0x1p52,
                               0x1p52 + 1.0,
                               0x1p53 - 1.0,
                               0x1p53,
                               0x1p54,
                               0x1p70,
                               kGreatest,
                               1.0 - 0x1p-53,
                               1.0 + 0x1p-52};

bool closeTo(double got, double expected) {
    if (expected != expected) {
        return sameBits(got, kNan);
    }
    // The library's own error is about half a unit; a subnormal one may be the smallest number.
    return std::signbit(got) == std::signbit(expected) &&
           (got == expected ||
            std::fabs(got - expected) <= std::fmax(std::fabs(expected) * 0x1p-52, kLeast));
}

TEST(Elementary, SpecialValuesAreThoseOfTheLanguage) {
    for (const double size : kSpecial) {
        for (const double x : {size, -size}) {
            SCOPED_TRACE(x);
            EXPECT_TRUE(closeTo(elementaryExp(x), std::exp(x)));
            EXPECT_TRUE(closeTo(elementaryExp10(x), std::pow(10.0, x)));
            EXPECT_TRUE(closeTo(elementaryLog(x), std::log(x)));
            EXPECT_TRUE(closeTo(elementaryLog10(x), std::log10(x)));
            EXPECT_TRUE(closeTo(elementaryAtan(x), std::atan(x)));
        }
    }
}

TEST(Elementary, SpecialPowersAreThoseOfTheLanguage) {
    for (const double base : kSpecial) {
        for (const double exponent : kSpecial) {
            for (const double x : {base, -base}) {
                for (const double y : {exponent, -exponent}) {
                    EXPECT_TRUE(closeTo(elementaryPow(x, y), std::pow(x, y)))
                        << x << " to the " << y << ": " << elementaryPow(x, y);
                }
            }
        }
    }
}

TEST(Elementary, APowerWithExponent0OrBase1Is1EvenForNan) {
    EXPECT_EQ(elementaryPow(kNan, 0.0), 1.0);
    EXPECT_EQ(elementaryPow(kNan, -0.0), 1.0);
    EXPECT_EQ(elementaryPow(1.0, kNan), 1.0);
    EXPECT_EQ(elementaryPow(-1.0, kInfinity), 1.0);
    EXPECT_TRUE(sameBits(elementaryPow(0.0, -3.0), kInfinity));
    EXPECT_TRUE(sameBits(elementaryPow(-0.0, -3.0), -kInfinity));
    EXPECT_TRUE(sameBits(elementaryPow(-0.0, 3.0), -0.0));
    EXPECT_TRUE(sameBits(elementaryPow(-8.0, 1.0 / 3.0), kNan));
}

TEST(Elementary, EveryNanThatComesOutIsTheSame) {
    const double other = -std::nan("0x123");
    for (const double y :
         {elementaryExp(other), elementaryExp10(other), elementaryLog(other),
          elementaryLog10(other), elementaryAtan(other), elementaryPow(other, 2.0),
          elementaryPow(2.0, other), elementaryLog(-1.0), elementaryPow(-2.0, 0.5)}) {
        EXPECT_TRUE(sameBits(y, kNan));
    }
}

TEST(Elementary, PowersOfTenAndTheirLogarithmsAreExact) {
    for (int n = 0; n <= 22; ++n) {
        const double power = std::stod("1e" + std::to_string(n));
        EXPECT_EQ(elementaryExp10(n), power);
        EXPECT_EQ(elementaryPow(10.0, n), power);
        EXPECT_EQ(elementaryLog10(power), n);
    }
    for (int n = -1022; n <= 1023; ++n) {
        EXPECT_EQ(elementaryPow(2.0, n), std::ldexp(1.0, n));
    }
}

TEST(Elementary, TheFirstPowerIsTheNumberItself) {
    Arguments a;
    int different = 0;
    for (int i = 0; i < 100000; ++i) {
        const double x = a.anyPositive();
        different += elementaryPow(x, 1.0) != x ? 1 : 0;
    }
    EXPECT_EQ(different, 0);
}

/// A fingerprint of the bits of f at 4096 arguments from `from` to `to`.
template <class Function>
std::uint64_t fingerprint(Function f, double from, double to) {
    std::uint64_t hash = 0xcbf29ce484222325ULL;
    for (int i = 0; i < 4096; ++i) {
        const double y = f(from + (to - from) * (static_cast<double>(i) / 4096.0));
        std::uint64_t bits;
        std::memcpy(&bits, &y, sizeof bits);
        hash = (hash ^ bits) * 0x100000001b3ULL;
    }
    return hash;
}

TEST(Elementary, BitsAreTheSameOnEveryPlatform) {
    EXPECT_EQ(fingerprint(elementaryExp, -30.0, 30.0), 15693648607231607176ULL);
    EXPECT_EQ(fingerprint(elementaryExp10, -8.0, 8.0), 11368462972909440411ULL);
    EXPECT_EQ(fingerprint(elementaryLog, 0.0, 256.0), 11524157681965414725ULL);
    EXPECT_EQ(fingerprint(elementaryLog10, 0.0, 256.0), 13276561293356947098ULL);
    EXPECT_EQ(fingerprint(elementaryAtan, -4.0, 4.0), 10076197692224501896ULL);
    EXPECT_EQ(fingerprint([](double x) { return elementaryPow(x, 0.45); }, 0.0, 2.0),
              3236973390009114533ULL);
}

}  // namespace
}  // namespace orv
