#include "solvers/lanczos/minres_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>

#include "algebra/matrix.h"
#include "base/rounding.h"
#include "support/lanczos_support.h"
#include "support/solver_runs.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::expectMissesSolution;
using test::expectStopsLater;
using test::expectStrictTest;
using test::expectWrittenDown;
using test::makeOf;
using test::norm;
using test::PlainMethod;
using test::product;
using test::residual;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::wavyVector;

/// The method written down step by step; w goes on from solve to solve.
Solved writtenDown(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol,
                   RealVector& w) {
    const int n = A.Rows();
    RealVector r = residual(A, b, u);
    if (norm(r) < tol) {
        return {u, false, 0};
    }
    double eta = norm(r);
    RealVector v = r;
    v.DivideScalar(toFloat(eta));
    double beta = 0;
    double gamma = 0;
    double c = -1;
    double s = 0;
    RealVector vOld(n);
    RealVector p(n);
    RealVector q = v;
    for (int k = 1; k <= maxIter; ++k) {
        RealVector t = product(A, v);
        t.AddScaled(toFloat(-beta), vOld);
        const double alpha = v.Dot(t);
        t.AddScaled(toFloat(-alpha), v);
        beta = norm(t);
        vOld = v;
        v = t;
        v.DivideScalar(toFloat(beta));
        const double y = beta * s;
        const double g = -gamma * s - alpha * c;
        gamma = beta * c;
        const double rot = std::sqrt(beta * beta + g * g);
        c = g / rot;
        s = beta / rot;
        q = w;
        for (int i = 0; i < n; ++i) {
            w[i] = v[i] + toFloat(-y) * p[i];
            p[i] = q[i] / toFloat(rot);
            u[i] = u[i] + toFloat(eta * c) * p[i];
        }
        eta = eta * s;
        if (std::abs(eta) < tol) {
            return {u, true, k};
        }
    }
    return {u, false, maxIter};
}

/// The solves of one solver, of n unknowns each.
PlainMethod plainMinres(int n) {
    return [w = RealVector(n)](const Matrix& A, const RealVector& b, RealVector u, int maxIter,
                               double tol) mutable {
        return writtenDown(A, b, std::move(u), maxIter, tol, w);
    };
}

TEST(MinresSolver, GivesTheBitsOfTheMethodWrittenDown) {
    expectWrittenDown(makeOf<MinresSolver>, [] { return plainMinres(25); }, {1, 2, 3, 8, 15},
                      {0.0F, 7.0F, -1.0F});
}

TEST(MinresSolver, RaisesConvergedFarFromTheSolution) {
    // Worse than the start vector, whose part along the first Lanczos vector is missing.
    MinresSolver ofLine(100, 0.0001);
    expectMissesSolution(ofLine, diffusionLine(40, 2.0F), wavyVector(40), true, 20.0);
    MinresSolver ofPlane(100, 0.0001);
    expectMissesSolution(ofPlane, diffusionPlane(8, 6, 1.0F), wavyVector(48), true, 20.0);
}

TEST(MinresSolver, StopsOnTheProductOfItsSines) {
    expectStopsLater(makeOf<MinresSolver>, [] { return plainMinres(48); },
                     {100.0, 10.0, 1.0, 0.1, 0.01});
}

TEST(MinresSolver, TestsItsProductStrictly) {
    // One unknown: beta is 0, and eta with it.
    expectStrictTest(makeOf<MinresSolver>, FullMatrix(1, 2.0F), RealVector(1, 8.0F), 0.0);
}

TEST(MinresSolver, EndsASystemOfOneUnknownAtItsStartVector) {
    // beta = 0 makes eta = 0, which is below every positive tolerance, after an iteration that
    // adds nothing.
    FullMatrix A(1, 2.0F);
    MinresSolver solver(5, 0.0001);

    const auto u = solver.Solve(A, RealVector(1, 8.0F), start(RealVector(1, 3.0F)));

    EXPECT_TRUE(solver.converged());
    EXPECT_EQ((*u)[0], 3.0F);
}

TEST(Quirk, MinresLostVector) {
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    const RealVector b = wavyVector(9);
    const RealVector u0(9, 2.0F);

    const auto one = MinresSolver(1, 1e-9).Solve(A, b, start(u0));
    const auto many = MinresSolver(4, 1e-9).Solve(A, b, start(RealVector(9)));

    EXPECT_TRUE(sameVectorBits(*one, u0));
    // Started from zero, the first Lanczos vector is along b: u stays orthogonal to it.
    EXPECT_GT(many->SumOfSquares(), 1.0);
    EXPECT_NEAR(many->Dot(b), 0.0, 1e-5 * std::sqrt(many->SumOfSquares() * b.SumOfSquares()));
}

TEST(Quirk, MinresKeptDirection) {
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    const RealVector b = wavyVector(9);
    MinresSolver solver(3, 1e-9);
    const auto first = solver.Solve(A, b, nullptr);

    const auto second = solver.Solve(A, b, nullptr);
    (void)solver.Solve(diffusionLine(8, 1.0F), wavyVector(8), nullptr);
    const auto afterOtherSize = solver.Solve(A, b, nullptr);

    EXPECT_FALSE(sameVectorBits(*second, *first));
    EXPECT_TRUE(sameVectorBits(*afterOtherSize, *first));
    // A breakdown stays as well, until the size changes.
    const FullMatrix one(1, 2.0F);
    MinresSolver broken(1, 1e-9);
    EXPECT_EQ((*broken.Solve(one, RealVector(1, 8.0F), start(RealVector(1))))[0], 0.0F);
    EXPECT_TRUE(std::isnan((*broken.Solve(one, RealVector(1, 8.0F), start(RealVector(1))))[0]));
    EXPECT_TRUE(sameVectorBits(*broken.Solve(A, b, nullptr), b));
}

}  // namespace
}  // namespace orv
