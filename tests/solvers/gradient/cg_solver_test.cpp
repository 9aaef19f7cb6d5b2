#include "solvers/gradient/cg_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/gradient_support.h"

namespace orv {
namespace {

using test::diagonal;
using test::diffusionPlane;
using test::expectSameAsPlain;
using test::expectSolves;
using test::expectSolvesDiffusion;
using test::norm;
using test::product;
using test::residual;
using test::Solved;
using test::start;
using test::vectorOf;

Solved plainCg(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol) {
    RealVector r = residual(A, b, u);
    if (norm(r) < tol) {
        return {u, false};
    }
    RealVector p = r;
    for (int it = 0; it < maxIter; ++it) {
        const RealVector q = product(A, p);
        const double rr = r.Dot(r);
        const double alpha = rr / p.Dot(q);
        u.AddScaled(static_cast<float>(alpha), p);
        r.AddScaled(static_cast<float>(-alpha), q);
        if (norm(r) < tol) {
            return {u, true};
        }
        const double beta = r.Dot(r) / rr;
        p.ScaleAdd(static_cast<float>(beta), r);
    }
    return {u, false};
}

TEST(CgSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<CgSolver>(plainCg, 1e-3);
}

TEST(CgSolver, SolvesDiffusionLinesAndPlanes) {
    CgSolver solver(300, 0.0001);

    // Tolerance and float rounding of a residual of samples up to 60; the smallest eigenvalue
    // is 1, so the error is within the residual.
    expectSolvesDiffusion(solver, 1e-3, 1e-3, 1e-3);
    expectSolves(solver, diffusionPlane(5, 31, 40.0F), RealVector(155), 1e-2, 1e-2);
}

TEST(CgSolver, TakesAsManyIterationsAsThereAreEigenvalues) {
    // Two different eigenvalues, 2 and 5: the second residual is 0 but for rounding.
    const DiagonalMatrix A = diagonal({2.0F, 5.0F, 2.0F, 5.0F});
    CgSolver two(2, 0.0001);
    CgSolver one(1, 0.0001);

    const auto u = two.Solve(A, vectorOf({2.0F, 5.0F, 4.0F, -5.0F}), start(RealVector(4)));
    (void)one.Solve(A, vectorOf({2.0F, 5.0F, 4.0F, -5.0F}), start(RealVector(4)));

    EXPECT_TRUE(two.converged());
    EXPECT_FALSE(one.converged());
    test::expectNear(*u, {1.0, 1.0, 2.0, -1.0}, 1e-5);
}

TEST(CgSolver, TestsTheResidualStrictlyBelowTheTolerance) {
    // A = 1, b = 3, u = 0: the start residual is 3, the next one 0.
    const FullMatrix A(1, 1.0F);
    const RealVector b(1, 3.0F);
    CgSolver at(1, 3.0);
    CgSolver above(1, 3.0000001);
    CgSolver zero(4, 0.0);

    EXPECT_EQ((*at.Solve(A, b, start(RealVector(1))))[0], 3.0F);
    EXPECT_TRUE(at.converged());
    EXPECT_EQ((*above.Solve(A, b, start(RealVector(1))))[0], 0.0F);
    EXPECT_FALSE(above.converged());
    // No norm is below 0: the loop goes on into 0 / 0.
    EXPECT_TRUE(std::isnan((*zero.Solve(A, b, start(RealVector(1))))[0]));
    EXPECT_FALSE(zero.converged());
}

TEST(CgSolver, RunsToItsLimitWhenADirectionHasNoCurvature) {
    // p.A p = 1 - 1 for the indefinite diagonal 1, -1.
    const DiagonalMatrix A = diagonal({1.0F, -1.0F});
    CgSolver solver(5, 0.0001);

    const auto u = solver.Solve(A, RealVector(2, 1.0F), start(RealVector(2)));

    EXPECT_FALSE(test::isFinite(*u));
    EXPECT_FALSE(solver.converged());
}

}  // namespace
}  // namespace orv
