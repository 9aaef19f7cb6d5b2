#include "solvers/bicg/bicg_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "support/bicg_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::expectStrictTest;
using test::expectTranscribed;
using test::makeOf;
using test::matrixOf;
using test::norm;
using test::PlainMatrix;
using test::plus;
using test::product;
using test::sameVectorBits;
using test::scaledPlus;
using test::start;
using test::transposedProduct;
using test::vectorOf;
using test::wavyVector;

RealVector transcribed(const Matrix& A, const RealVector& b, const RealVector& /*u*/,
                       int iterations) {
    RealVector u(b.size());
    RealVector r = plus(b, -1.0, product(A, u));
    RealVector rHat = r;
    RealVector p = r;
    RealVector pHat = r;
    for (int it = 0; it < iterations; ++it) {
        const RealVector q = product(A, p);
        const RealVector qHat = transposedProduct(A, pHat);
        const double rho = rHat.Dot(r);
        const double alpha = rho / pHat.Dot(q);
        u = plus(u, alpha, p);
        r = plus(r, -alpha, q);
        rHat = plus(rHat, -alpha, qHat);
        const double beta = r.Dot(rHat) / rho;
        p = scaledPlus(beta, p, r);
        pHat = scaledPlus(beta, pHat, rHat);
    }
    return u;
}

TEST(BicgSolver, FollowsItsFormulasToTheBit) {
    expectTranscribed(makeOf<BicgSolver>, transcribed);
}

TEST(BicgSolver, SolvesOneUnknownInOneStep) {
    // q = 12, alpha = 36 / 72.
    BicgSolver solver(50, 0.0001);

    const auto u = solver.Solve(FullMatrix(1, 2.0F), RealVector(1, 6.0F), nullptr);

    EXPECT_EQ((*u)[0], 3.0F);
    EXPECT_TRUE(solver.converged());
}

TEST(BicgSolver, ComparesTheResidualNormStrictly) {
    // One step leaves r = rHat = (1.5, -0.75), of norm 1.677.
    const PlainMatrix A = matrixOf({{1.0F, 0.0F}, {0.0F, 2.0F}});
    const RealVector b = vectorOf({3.0F, 3.0F});
    BicgSolver first(1, 0.0);
    const RealVector r = plus(b, -1.0, product(A, *first.Solve(A, b, nullptr)));

    expectStrictTest(makeOf<BicgSolver>, A, b, norm(r));
}

TEST(BicgSolver, GoesOnWhenTheShadowResidualAloneIsSmall) {
    // b is an eigenvector of the transpose alone: rHat = 0 and r = (0, -0.5).
    const PlainMatrix A = matrixOf({{2.0F, 0.0F}, {1.0F, 1.0F}});
    BicgSolver solver(1, 0.001);

    const auto u = solver.Solve(A, vectorOf({1.0F, 0.0F}), nullptr);

    EXPECT_TRUE(sameVectorBits(*u, vectorOf({0.5F, 0.0F})));
    EXPECT_FALSE(solver.converged());
}

TEST(BicgSolver, ReturnsZeroForARightHandSideBelowTheTolerance) {
    BicgSolver solver(50, 10.0);

    const auto u = solver.Solve(diffusionLine(4, 1.0F), RealVector(4, 1.0F),
                                start(RealVector(4, 1000.0F)));

    EXPECT_TRUE(sameVectorBits(*u, RealVector(4)));
    EXPECT_FALSE(solver.converged());
}

TEST(Quirk, BicgClearsStart) {
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);
    BicgSolver solver(3, 0.0001);

    const auto fromNull = solver.Solve(A, wavyVector(9), nullptr);

    for (const float value : {0.0F, -7.0F, 1e30F, std::numeric_limits<float>::quiet_NaN()}) {
        const auto u = solver.Solve(A, wavyVector(9), start(RealVector(9, value)));
        EXPECT_TRUE(sameVectorBits(*u, *fromNull)) << value;
    }
}

TEST(Quirk, BicgShadowResidual) {
    // b is an eigenvector of A and not of its transpose: alpha = 1 / 2 solves the system, with
    // r = 0 and rHat = (0, -0.5).
    const PlainMatrix A = matrixOf({{2.0F, 1.0F}, {0.0F, 1.0F}});
    const RealVector b = vectorOf({1.0F, 0.0F});
    BicgSolver once(1, 0.001);
    BicgSolver twice(2, 0.001);
    BicgSolver loose(2, 0.6);

    EXPECT_TRUE(sameVectorBits(*once.Solve(A, b, nullptr), vectorOf({0.5F, 0.0F})));
    EXPECT_FALSE(once.converged());
    EXPECT_TRUE(std::isnan((*twice.Solve(A, b, nullptr))[0]));
    EXPECT_FALSE(twice.converged());
    EXPECT_TRUE(sameVectorBits(*loose.Solve(A, b, nullptr), vectorOf({0.5F, 0.0F})));
    EXPECT_TRUE(loose.converged());
}

}  // namespace
}  // namespace orv
