#include "solvers/bicg/cgs_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "support/bicg_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::expectStrictTest;
using test::expectTranscribed;
using test::makeOf;
using test::matrixOf;
using test::norm;
using test::PlainMatrix;
using test::plus;
using test::product;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::vectorOf;
using test::wavyVector;
using test::windyPlane;

RealVector transcribed(const Matrix& A, const RealVector& b, const RealVector& begin,
                       int iterations) {
    RealVector u = begin;
    RealVector r = plus(b, -1.0, product(A, u));
    const RealVector rTilde = r;
    RealVector p = r;
    RealVector uHat = r;
    for (int it = 0; it < iterations; ++it) {
        const RealVector v = product(A, p);
        const double rho = rTilde.Dot(r);
        const double alpha = rho / rTilde.Dot(v);
        RealVector q = plus(uHat, -alpha, v);
        uHat = plus(uHat, 1.0, q);
        u = plus(u, alpha, uHat);
        r = plus(r, -alpha, product(A, uHat));
        const double beta = r.Dot(rTilde) / rho;
        uHat = plus(r, beta, q);
        q = plus(q, beta, p);
        p = plus(uHat, beta, q);
    }
    return u;
}

TEST(CgsSolver, FollowsItsFormulasToTheBit) {
    expectTranscribed(makeOf<CgsSolver>, transcribed);
}

TEST(CgsSolver, SquaresTheFirstStepAndComparesTheResidualNormStrictly) {
    // r = (1, 1), v = (1, 3), alpha = 2 / 4: q = (0.5, -0.5), uHat = (1.5, 0.5) and
    // u = (0.75, 0.25); r - alpha (1.5, 1.5) = (0.25, 0.25).
    const PlainMatrix A = matrixOf({{1.0F, 0.0F}, {0.0F, 3.0F}});
    const RealVector b = vectorOf({1.0F, 1.0F});
    CgsSolver solver(1, 0.0);

    const auto u = solver.Solve(A, b, start(RealVector(2)));

    EXPECT_TRUE(sameVectorBits(*u, vectorOf({0.75F, 0.25F})));
    expectStrictTest(makeOf<CgsSolver>, A, b, norm(vectorOf({0.25F, 0.25F})));
}

TEST(CgsSolver, StopsByARecurredResidualThatMayBeFarBelowTheTrueOne) {
    // A strong wind: the residual rises from 373 to around 100000 before it falls.
    const BandMatrix A = windyPlane(15, 11, 50.0F);
    const RealVector b = wavyVector(165);
    CgsSolver solver(200, 0.0001);

    const auto u = solver.Solve(A, b, nullptr);

    EXPECT_TRUE(solver.converged());
    EXPECT_GT(residualNorm(A, b, *u), 10.0 * solver.tol());
    EXPECT_LT(residualNorm(A, b, *u), 0.1);
}

}  // namespace
}  // namespace orv
