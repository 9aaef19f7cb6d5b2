#include "schemes/split/explicit_substeps.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

#include "algebra/storage/f_tri_diagonal_matrix.h"

namespace orv {
namespace {

TEST(ExplicitSubsteps, TauBelowOneNeedsOneStep) {
    for (const float tau : {0.0f, 0.5f, 0.999f}) {
        const ExplicitSubsteps substeps(tau, true);
        EXPECT_EQ(substeps.count, 1);
        EXPECT_EQ(substeps.size, tau * 0.5f);
    }
}

TEST(ExplicitSubsteps, TauOfTwoAndAHalfIsCutIntoThree) {
    const ExplicitSubsteps substeps(2.5f, true);

    EXPECT_EQ(substeps.half, 1.25f);
    EXPECT_EQ(substeps.count, 3);
    EXPECT_EQ(substeps.size, static_cast<float>(1.25 / 3.0));
}

TEST(ExplicitSubsteps, SizeStaysBelowOneHalf) {
    for (float tau = 0.25f; tau < 1000.0f; tau *= 1.37f) {
        EXPECT_LT(ExplicitSubsteps(tau, true).size, 0.5f) << tau;
    }
}

TEST(ExplicitSubsteps, WithoutTheFlagThereIsOneStepOfTheHalf) {
    const ExplicitSubsteps substeps(7.0f, false);

    EXPECT_EQ(substeps.count, 1);
    EXPECT_EQ(substeps.size, 3.5f);
}

TEST(ExplicitSubsteps, CountsThatNoIntHoldsStopAtTheLargest) {
    EXPECT_EQ(ExplicitSubsteps(1e20f, true).count, INT_MAX);
}

TEST(ExplicitStage, MultipliesAsOftenAsToldAndLeavesTheNextToLastProduct) {
    FTriDiagonalMatrix E(2, 0.0f);
    E.Set(0, 0, 2.0f);
    E.Set(1, 1, 3.0f);
    RealVector rhs(2, 1.0f);

    const auto solution = explicitStage(E, 3, rhs, nullptr);

    EXPECT_EQ((*solution)[0], 8.0f);
    EXPECT_EQ((*solution)[1], 27.0f);
    EXPECT_EQ(rhs[0], 4.0f);
    EXPECT_EQ(rhs[1], 9.0f);
}

TEST(ExplicitStage, MultipliesOnceForACountOfZeroOrLess) {
    FTriDiagonalMatrix E(2, 0.0f);
    E.Set(0, 0, 2.0f);
    E.Set(1, 1, 3.0f);
    for (const int count : {1, 0, -3}) {
        RealVector rhs(2, 1.0f);

        const auto solution = explicitStage(E, count, rhs, nullptr);

        EXPECT_EQ(explicitProducts(count), 1);
        EXPECT_EQ((*solution)[0], 2.0f);
        EXPECT_EQ((*solution)[1], 3.0f);
    }
    EXPECT_EQ(explicitProducts(4), 4);
}

TEST(ExplicitSubsteps, TauOfMinusOneOrLessGivesNoCountAboveZero) {
    EXPECT_EQ(ExplicitSubsteps(-0.75f, true).count, 1);
    EXPECT_EQ(ExplicitSubsteps(-1.0f, true).count, 0);
    EXPECT_EQ(ExplicitSubsteps(-2.5f, true).count, -1);
    EXPECT_EQ(ExplicitSubsteps(-2.5f, true).size, 1.25f);
}

}  // namespace
}  // namespace orv
