#include "schemes/flows/diffusivity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orv {
namespace {

TEST(Diffusivity, FollowsTheFormulaOfItsKind) {
    // The exponentials are compared through the other function that inverts them.
    EXPECT_DOUBLE_EQ(diffusivity(FlowKind::PeronaMalik, 3.0), 0.25);
    EXPECT_DOUBLE_EQ(diffusivity(FlowKind::Variational, 3.0), 0.5);
    EXPECT_DOUBLE_EQ(diffusivity(FlowKind::TotalVariation, 0.0399), 5.0);
    EXPECT_NEAR(std::log1p(-diffusivity(FlowKind::Weickert2, 2.0)), -2.33666 / 4.0, 1e-12);
    EXPECT_NEAR(std::log1p(-diffusivity(FlowKind::Weickert3, 2.0)), -2.9183 / 8.0, 1e-12);
    EXPECT_NEAR(std::log1p(-diffusivity(FlowKind::Weickert4, 2.0)), -3.31488 / 16.0, 1e-12);
}

TEST(Diffusivity, TakesTheFirstFormulaForAnyOtherNumber) {
    for (const int kind : {-1, 3, 9, 13, 99}) {
        EXPECT_EQ(diffusivity(static_cast<FlowKind>(kind), 1.5), 1.0 / 2.5);
    }
}

TEST(Diffusivity, ExponentialsGoToExactlyOneForVerySmallArguments) {
    for (const FlowKind kind :
         {FlowKind::Weickert2, FlowKind::Weickert3, FlowKind::Weickert4}) {
        for (const double s : {1e-2, 1e-30, 1e-200, 5e-324}) {
            EXPECT_EQ(diffusivity(kind, s), 1.0) << s;
        }
    }
}

// Where the exponential is near 1, a difference in double would miss the float of one value in
// 200 here; extended precision shows what is right.
TEST(Diffusivity, ExponentialsKeepTheDigitsOfExtendedPrecision) {
    if (std::numeric_limits<long double>::digits < 64) {
        GTEST_SKIP() << "long double is no longer than double";
    }
    for (int i = 0; i < 100000; ++i) {
        const double s = 0.05 + 1e-3 * i;
        const long double t = s;
        const auto of = [s](FlowKind kind) { return static_cast<float>(diffusivity(kind, s)); };
        const auto exact = [](long double x) { return static_cast<float>(-std::expm1(x)); };

        ASSERT_EQ(of(FlowKind::Weickert2), exact(-2.33666L / (t * t))) << s;
        ASSERT_EQ(of(FlowKind::Weickert3), exact(-2.9183L / (t * t * t))) << s;
        ASSERT_EQ(of(FlowKind::Weickert4), exact(-3.31488L / (t * t * t * t))) << s;
    }
}

TEST(Diffusivity, ANormThatIsNotANumberTravelsOn) {
    for (const int kind : {0, 1, 2, 10, 11, 12}) {
        EXPECT_TRUE(std::isnan(diffusivity(static_cast<FlowKind>(kind),
                                           std::numeric_limits<double>::quiet_NaN())));
    }
}

TEST(Diffusivity, FallsWithTheGradient) {
    for (const int kind : {0, 1, 2, 10, 11, 12}) {
        double last = diffusivity(static_cast<FlowKind>(kind), 0.5);
        for (const double s : {1.0, 2.0, 5.0, 20.0, 300.0}) {
            const double g = diffusivity(static_cast<FlowKind>(kind), s);
            EXPECT_LT(g, last) << kind;
            EXPECT_GE(g, 0.0) << kind;
            last = g;
        }
    }
}

}  // namespace
}  // namespace orv
