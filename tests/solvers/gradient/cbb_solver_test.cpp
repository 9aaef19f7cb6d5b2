#include "solvers/gradient/cbb_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "support/gradient_support.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::expectSameAsPlain;
using test::expectSolves;
using test::expectSolvesDiffusion;
using test::product;
using test::residualNorm;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::windyPlane;

Solved plainCbb(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol) {
    for (int it = 0; it < maxIter; ++it) {
        RealVector g = product(A, u);
        g.AddScaled(-1.0F, b);
        const double gg = g.Dot(g);
        if (gg < tol) {
            return {u, true};
        }
        const RealVector q = product(A, g);
        const double lambda = gg / g.Dot(q);
        u.AddScaled2(static_cast<float>(-2.0 * lambda), g, static_cast<float>(lambda * lambda),
                     q);
    }
    return {u, false};
}

TEST(CbbSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<CbbSolver>(plainCbb, 1e-5);
}

TEST(CbbSolver, SolvesLinesAndPlanesInFewPairsOfSteps) {
    CbbSolver solver(100, 1e-8);

    expectSolvesDiffusion(solver, 2e-4, 2e-4, 2e-4);
    expectSolves(solver, windyPlane(16, 12, 1.0F), RealVector(192), 2e-4, 2e-4);
}

TEST(CbbSolver, StopsInItsFirstIterationOnZeroData) {
    CbbSolver solver(50, 0.0001);

    const auto u = solver.Solve(diffusionLine(6, 1.0F), RealVector(6), start(RealVector(6)));

    EXPECT_TRUE(solver.converged());
    EXPECT_TRUE(sameVectorBits(*u, RealVector(6)));
}

TEST(CbbSolver, TakesTwoCauchyStepsAtOnce) {
    // A = 2, b = 0, u = 3: g = 6, lambda = 36 / 72; u = 3 - 2 0.5 6 + 0.25 12 = 0.
    FullMatrix A(1, 2.0F);
    CbbSolver solver(1, 1e-9);

    const auto u = solver.Solve(A, RealVector(1), start(RealVector(1, 3.0F)));

    EXPECT_EQ((*u)[0], 0.0F);
    EXPECT_FALSE(solver.converged());
}

TEST(Quirk, CbbSquaredNorm) {
    // The residual norm 0.005 is far above the tolerance 0.0001, its square is below.
    FullMatrix A(1, 1.0F);
    const RealVector b(1, 1.0F);
    CbbSolver solver(10, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(1, 1.005F)));

    EXPECT_TRUE(solver.converged());
    EXPECT_EQ((*u)[0], 1.005F);
    EXPECT_GT(residualNorm(A, b, *u), solver.tol());
}

}  // namespace
}  // namespace orv
