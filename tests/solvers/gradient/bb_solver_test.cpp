#include "solvers/gradient/bb_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/gradient_support.h"

namespace orv {
namespace {

using test::diagonal;
using test::diffusionLine;
using test::expectSameAsPlain;
using test::expectSolves;
using test::expectSolvesDiffusion;
using test::norm;
using test::product;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::vectorOf;
using test::windyPlane;

/// The method with a rule of its own choice.
template <int selector>
class SelectingBbSolver : public BbSolver {
  public:
    SelectingBbSolver(int maxIter, double tol) : BbSolver(maxIter, tol) {
        selector_ = selector;
    }
};

template <int selector>
Solved plainBb(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol) {
    RealVector g = product(A, u);
    g.AddScaled(-1.0F, b);
    double alpha = 0.5;
    for (int it = 0; it < maxIter; ++it) {
        RealVector d = g;
        d.MultiplyScalar(static_cast<float>(-1.0 / alpha));
        const float dd = static_cast<float>(d.Dot(d));
        u.AddScaled(1.0F, d);
        RealVector gNew = product(A, u);
        gNew.AddScaled(-1.0F, b);
        if (norm(gNew) < tol) {
            return {u, true};
        }
        RealVector y = gNew;
        y.AddScaled(-1.0F, g);
        if (selector == 1) {
            const float yy = static_cast<float>(y.Dot(y));
            alpha = static_cast<double>(yy) / y.Dot(d);
        } else {
            alpha = d.Dot(y) / static_cast<double>(dd);
        }
        g = gNew;
    }
    return {u, false};
}

TEST(BbSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<BbSolver>(plainBb<0>, 1e-3);
}

TEST(BbSolver, TakesTheOtherStepLengthForTheSelectorOneAlone) {
    expectSameAsPlain<SelectingBbSolver<1>>(plainBb<1>, 1e-3);
    expectSameAsPlain<SelectingBbSolver<2>>(plainBb<0>, 1e-3);
    expectSameAsPlain<SelectingBbSolver<-1>>(plainBb<0>, 1e-3);
}

TEST(BbSolver, SolvesSymmetricSystemsAndADominantOneWithout) {
    BbSolver solver(500, 0.0001);

    // The smallest eigenvalue is 1, and the gradient is formed anew in each iteration.
    expectSolvesDiffusion(solver, 2e-4, 2e-4, 2e-4);
    expectSolves(solver, windyPlane(16, 12, 1.0F), RealVector(192), 2e-4, 2e-4);
}

TEST(BbSolver, BeginsWithTwiceTheGradientAndGoesOnWithTheSecant) {
    // A = 2, b = 4: g = -4, u = 8, g = 12, alpha = 16 8 / 64 = 2, the inverse step of Newton.
    const FullMatrix A(1, 2.0F);
    BbSolver one(1, 0.0001);
    BbSolver two(2, 0.0001);

    const auto first = one.Solve(A, RealVector(1, 4.0F), start(RealVector(1)));
    const auto second = two.Solve(A, RealVector(1, 4.0F), start(RealVector(1)));

    EXPECT_EQ((*first)[0], 8.0F);
    EXPECT_FALSE(one.converged());
    EXPECT_EQ((*second)[0], 2.0F);
    EXPECT_TRUE(two.converged());
}

TEST(BbSolver, TakesAStepOfZeroOnASolvedStartAndConverges) {
    BbSolver solver(50, 0.0001);
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);

    const auto zero = solver.Solve(A, RealVector(6), start(RealVector(6)));

    EXPECT_TRUE(solver.converged());
    EXPECT_TRUE(sameVectorBits(*zero, RealVector(6)));

    const auto solved = solver.Solve(A, RealVector(6, 3.0F), start(RealVector(6, 3.0F)));

    EXPECT_TRUE(solver.converged());
    EXPECT_TRUE(sameVectorBits(*solved, RealVector(6, 3.0F)));
}

TEST(BbSolver, StepsAwayFromAStartBelowTheToleranceThatIsNotExact) {
    // The start gradient 0.25 is below the tolerance; the step -2 g and the test come first.
    const FullMatrix A(1, 1.0F);
    BbSolver solver(50, 0.5);

    const auto u = solver.Solve(A, RealVector(1, 1.0F), start(RealVector(1, 1.25F)));

    EXPECT_EQ((*u)[0], 0.75F);
    EXPECT_TRUE(solver.converged());
}

TEST(BbSolver, RunsToItsLimitAfterAStepOfZeroThatIsNotSmallEnough) {
    // With a tolerance of 0 the step of zero isn't the end: alpha is 0 / 0.
    BbSolver solver(3, 0.0);

    const auto u = solver.Solve(diagonal({1.0F, 2.0F}), RealVector(2), start(RealVector(2)));

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(solver.converged());
}

TEST(BbSolver, RoundsTheSquaredStepToSinglePrecision) {
    // d.d = 4 (2^24 + 1) is halfway between two floats and goes to 4 2^24: alpha is the
    // quotient (4096^2 + 2) / 4096^2 instead of (4096^2 + 2) / (4096^2 + 1), all exact sums.
    const DiagonalMatrix A = diagonal({1.0F, 2.0F});
    const RealVector b = vectorOf({4096.0F, 1.0F});
    BbSolver solver(2, 1e-9);

    const auto u = solver.Solve(A, b, start(RealVector(2)));

    RealVector g = vectorOf({4096.0F, 3.0F});
    const double alpha = (4096.0 * 4096.0 + 2.0) / (4096.0 * 4096.0);
    const double unrounded = (4096.0 * 4096.0 + 2.0) / (4096.0 * 4096.0 + 1.0);
    ASSERT_NE(static_cast<float>(-1.0 / alpha), static_cast<float>(-1.0 / unrounded));
    g.MultiplyScalar(static_cast<float>(-1.0 / alpha));
    RealVector expected = vectorOf({8192.0F, 2.0F});
    expected.Add(g);
    EXPECT_TRUE(sameVectorBits(*u, expected));
}

}  // namespace
}  // namespace orv
