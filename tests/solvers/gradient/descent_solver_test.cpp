#include "solvers/gradient/descent_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/gradient_support.h"

namespace orv {
namespace {

using test::diagonal;
using test::dominantMatrix;
using test::expectSameAsPlain;
using test::expectSolves;
using test::expectSolvesDiffusion;
using test::norm;
using test::product;
using test::residual;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::vectorOf;

Solved plainDescent(const Matrix& A, const RealVector& b, RealVector u, int maxIter,
                    double tol) {
    RealVector r = residual(A, b, u);
    if (norm(r) < tol) {
        return {u, false};
    }
    for (int it = 0; it < maxIter; ++it) {
        const RealVector q = product(A, r);
        const double lambda = r.Dot(r) / r.Dot(q);
        u.AddScaled(static_cast<float>(lambda), r);
        r.AddScaled(static_cast<float>(-lambda), q);
        if (norm(r) < tol) {
            return {u, true};
        }
    }
    return {u, false};
}

TEST(DescentSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<DescentSolver>(plainDescent, 1e-3);
}

TEST(DescentSolver, SolvesSymmetricSystems) {
    DescentSolver solver(1000, 0.0001);

    // The smallest eigenvalue is 1; the recurred residual leaves the true one by rounding.
    expectSolvesDiffusion(solver, 1e-3, 2e-3, 1e-3);
    expectSolves(solver, dominantMatrix(12), RealVector(12), 1e-3, 1e-4);
}

TEST(DescentSolver, SearchesExactlyAlongTheResidual) {
    // r = (1, 1), q = (1, 3), lambda = 2 / 4; then r = (1, -1) / 2, lambda = (1 / 2) / 1.
    const DiagonalMatrix A = diagonal({1.0F, 3.0F});
    const RealVector b = vectorOf({1.0F, 1.0F});
    DescentSolver one(1, 0.0001);
    DescentSolver two(2, 0.0001);

    const auto first = one.Solve(A, b, start(RealVector(2)));
    const auto second = two.Solve(A, b, start(RealVector(2)));

    EXPECT_TRUE(sameVectorBits(*first, vectorOf({0.5F, 0.5F})));
    EXPECT_TRUE(sameVectorBits(*second, vectorOf({0.75F, 0.25F})));
    EXPECT_FALSE(two.converged());
}

}  // namespace
}  // namespace orv
