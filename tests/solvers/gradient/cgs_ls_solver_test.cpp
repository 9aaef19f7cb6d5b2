#include "solvers/gradient/cgs_ls_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/gradient_support.h"

namespace orv {
namespace {

using test::expectSameAsPlain;
using test::expectSolvesDiffusion;
using test::expectSolvesWithoutSymmetry;
using test::norm;
using test::product;
using test::residual;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::transposedProduct;
using test::vectorOf;

Solved plainCgsLs(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol) {
    RealVector r = residual(A, b, u);
    if (norm(r) < tol) {
        return {u, false};
    }
    RealVector p = transposedProduct(A, r);
    RealVector s = p;
    double gamma = s.Dot(s);
    for (int it = 0; it < maxIter; ++it) {
        const RealVector q = product(A, p);
        const double alpha = gamma / q.Dot(q);
        u.AddScaled(static_cast<float>(alpha), p);
        r.AddScaled(static_cast<float>(-alpha), q);
        if (norm(r) < tol) {
            return {u, true};
        }
        s = transposedProduct(A, r);
        const double gammaNew = s.Dot(s);
        const double beta = gammaNew / gamma;
        gamma = gammaNew;
        p.ScaleAdd(static_cast<float>(beta), s);
    }
    return {u, false};
}

TEST(CgsLsSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<CgsLsSolver>(plainCgsLs, 1e-3);
}

TEST(CgsLsSolver, SolvesSystemsWithAndWithoutSymmetry) {
    CgsLsSolver solver(1000, 0.0001);

    // The smallest singular value is about 1; the recurred residual leaves the true one by
    // rounding.
    expectSolvesDiffusion(solver, 1e-3, 2e-3, 1e-3);
    expectSolvesWithoutSymmetry(solver, 1e-3);
}

TEST(CgsLsSolver, StepsToTheLeastResidualAlongTheNormalResidual) {
    // A = (0 1; 2 0) by rows, b = (2, 2): p = (4, 2), q = (2, 8), alpha = 20 / 68.
    FullMatrix A(2, 0.0F);
    A.Set(1, 0, 1.0F);
    A.Set(0, 1, 2.0F);
    CgsLsSolver solver(1, 0.0001);

    const auto u = solver.Solve(A, vectorOf({2.0F, 2.0F}), start(RealVector(2)));

    const float alpha = static_cast<float>(20.0 / 68.0);
    EXPECT_TRUE(sameVectorBits(*u, vectorOf({alpha * 4.0F, alpha * 2.0F})));
}

}  // namespace
}  // namespace orv
