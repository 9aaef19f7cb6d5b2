#include "solvers/gradient/cg_nr_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "support/gradient_support.h"
#include "support/watching_matrix.h"

namespace orv {
namespace {

using test::diagonal;
using test::expectSameAsPlain;
using test::expectSolvesDiffusion;
using test::expectSolvesWithoutSymmetry;
using test::norm;
using test::product;
using test::residual;
using test::residualNorm;
using test::Solved;
using test::start;
using test::transposedProduct;

Solved plainCgNr(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol) {
    RealVector r = residual(A, b, u);
    if (norm(r) < tol) {
        return {u, false};
    }
    RealVector p = r;
    r = transposedProduct(A, p);
    p = r;
    for (int it = 0; it < maxIter; ++it) {
        const RealVector q = product(A, p);
        RealVector t = *A.MultiplyConjugate(p, nullptr);
        const double rr = r.Dot(r);
        const double alpha = rr / t.Dot(q);
        u.AddScaled(static_cast<float>(alpha), p);
        t = transposedProduct(A, q);
        r.AddScaled(static_cast<float>(-alpha), t);
        if (norm(r) < tol) {
            return {u, true};
        }
        const double beta = r.Dot(r) / rr;
        p.MultiplyScalar(static_cast<float>(beta));
        p.Add(r);
    }
    return {u, false};
}

TEST(CgNrSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<CgNrSolver>(plainCgNr, 1e-3);
}

TEST(CgNrSolver, SolvesSystemsWithAndWithoutSymmetry) {
    CgNrSolver solver(1000, 0.001);

    // The smallest singular value is about 1, so the residual is within that of the normal
    // equations, but for the rounding of the recurrence.
    expectSolvesDiffusion(solver, 1e-2, 1e-2, 1e-3);
    expectSolvesWithoutSymmetry(solver, 1e-2);
}

TEST(CgNrSolver, AsksForTheConjugateProduct) {
    // A = 2, b = 8: p = r = 16, q = 32, t = 64, alpha = 256 / 2048; half of the step of q.q.
    const test::WatchingMatrix A(FullMatrix(1, 2.0F), /*conjugateFactor=*/2.0F);
    CgNrSolver solver(1, 0.0001);

    const auto u = solver.Solve(A, RealVector(1, 8.0F), start(RealVector(1)));

    EXPECT_EQ((*u)[0], 2.0F);
    EXPECT_FALSE(solver.converged());
}

TEST(CgNrSolver, KnowsTheResidualOfAStartThatIsGoodEnoughWhenIteratedByHand) {
    // The first solve ends with r = 0 and p = 16; the second returns at once with r = 0.5. The
    // step is then 0.25 / (32 32) along the p that stands.
    const FullMatrix A(1, 2.0F);
    CgNrSolver solver(1, 1.0);
    auto u = solver.Solve(A, RealVector(1, 8.0F), start(RealVector(1)));
    ASSERT_EQ((*u)[0], 4.0F);
    u = solver.Solve(A, RealVector(1, 8.5F), std::move(u));
    ASSERT_EQ((*u)[0], 4.0F);

    u = solver.Iterate(A, RealVector(1, 8.5F), std::move(u));

    EXPECT_EQ((*u)[0], 4.0F + 0.00390625F);
}

TEST(Quirk, CgNrTwoTests) {
    CgNrSolver solver(50, 0.01);

    // What is left of b is 1, of which the transpose makes 0.001.
    const DiagonalMatrix weak = diagonal({1.0F, 0.001F});
    const auto early = solver.Solve(weak, RealVector(2, 1.0F), start(RealVector(2)));

    EXPECT_TRUE(solver.converged());
    EXPECT_GT(residualNorm(weak, RealVector(2, 1.0F), *early), 0.9);

    // b - A u is 0.005, of which the transpose makes 5: the start is good enough.
    const FullMatrix strong(1, 1000.0F);
    const auto kept = solver.Solve(strong, RealVector(1, 0.005F), start(RealVector(1)));

    EXPECT_FALSE(solver.converged());
    EXPECT_EQ((*kept)[0], 0.0F);
}

}  // namespace
}  // namespace orv
