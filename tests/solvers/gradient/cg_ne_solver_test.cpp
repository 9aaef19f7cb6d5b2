#include "solvers/gradient/cg_ne_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/gradient_support.h"

namespace orv {
namespace {

using test::directSolution;
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
using test::wavyVector;
using test::windyPlane;

Solved plainCgNe(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol) {
    RealVector r = residual(A, b, u);
    if (norm(r) < tol) {
        return {u, false};
    }
    RealVector p = transposedProduct(A, r);
    for (int it = 0; it < maxIter; ++it) {
        const RealVector q = product(A, p);
        const double rr = r.Dot(r);
        const double alpha = rr / p.Dot(p);
        u.AddScaled(static_cast<float>(alpha), p);
        r.AddScaled(static_cast<float>(-alpha), q);
        if (norm(r) < tol) {
            return {u, true};
        }
        const double beta = r.Dot(r) / rr;
        p.MultiplyScalar(static_cast<float>(beta));
        const RealVector w = transposedProduct(A, r);
        p.Add(w);
    }
    return {u, false};
}

TEST(CgNeSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<CgNeSolver>(plainCgNe, 1e-3);
}

TEST(CgNeSolver, SolvesSystemsWithAndWithoutSymmetry) {
    CgNeSolver solver(1000, 0.0001);

    // The smallest singular value is about 1; the recurred residual leaves the true one by
    // rounding.
    expectSolvesDiffusion(solver, 1e-3, 2e-3, 1e-3);
    expectSolvesWithoutSymmetry(solver, 1e-3);
}

TEST(CgNeSolver, LessensTheErrorInEachIteration) {
    const BandMatrix A = windyPlane(16, 12, 1.0F);
    const RealVector b = wavyVector(A.Rows());
    const std::vector<double> solution = directSolution(A, b);
    const auto errorAfter = [&](int maxIter) {
        CgNeSolver solver(maxIter, 0.0001);
        const auto u = solver.Solve(A, b, start(RealVector(A.Rows())));
        double squares = 0.0;
        for (int i = 0; i < u->size(); ++i) {
            const double error = double{(*u)[i]} - solution[static_cast<std::size_t>(i)];
            squares += error * error;
        }
        return std::sqrt(squares);
    };

    for (int maxIter = 1; maxIter < 40; ++maxIter) {
        EXPECT_LT(errorAfter(maxIter), errorAfter(maxIter - 1)) << maxIter;
    }
}

TEST(CgNeSolver, StepsAlongTheTransposedResidual) {
    // A = (0 1; 2 0) by rows, b = (2, 2): p = (4, 2), alpha = 8 / 20.
    FullMatrix A(2, 0.0F);
    A.Set(1, 0, 1.0F);
    A.Set(0, 1, 2.0F);
    CgNeSolver solver(1, 0.0001);

    const auto u = solver.Solve(A, vectorOf({2.0F, 2.0F}), start(RealVector(2)));

    EXPECT_TRUE(sameVectorBits(*u, vectorOf({0.4F * 4.0F, 0.4F * 2.0F})));
}

}  // namespace
}  // namespace orv
