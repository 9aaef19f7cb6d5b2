#include "solvers/bicg/bicg_stab_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "support/bicg_support.h"
#include "support/solver_systems.h"
#include "support/watching_matrix.h"

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
using test::sameVectorBits;
using test::start;
using test::sumOf;
using test::vectorOf;
using test::WatchingMatrix;

// The column (1, 1) makes r = (1, 0) to s = (0, -1), which the column (0, 2) makes to t = (0, -2).
PlainMatrix twoSteps() {
    return matrixOf({{1.0F, 0.0F}, {1.0F, 2.0F}});
}

RealVector transcribed(const Matrix& A, const RealVector& b, const RealVector& begin,
                       int iterations) {
    RealVector u = begin;
    RealVector r = plus(b, -1.0, product(A, u));
    const RealVector rTilde = r;
    RealVector p = r;
    for (int it = 0; it < iterations; ++it) {
        const double rho = rTilde.Dot(r);
        const RealVector v = product(A, p);
        const double alpha = rho / rTilde.Dot(v);
        const RealVector s = plus(r, -alpha, v);
        const RealVector t = product(A, s);
        const RealVector t2 = *A.MultiplyConjugate(s, nullptr);
        const double ts = static_cast<double>(static_cast<float>(s.Dot(t)));
        const double omega = ts / t2.Dot(t);
        u = sumOf({{1.0, u}, {alpha, p}, {omega, s}});
        r = plus(s, -omega, t);
        const double beta = rTilde.Dot(r) / rho;
        p = sumOf({{beta * alpha / omega, p}, {1.0, r}, {-(beta * alpha), v}});
    }
    return u;
}

TEST(BicgStabSolver, FollowsItsFormulasToTheBit) {
    expectTranscribed(makeOf<BicgStabSolver>, transcribed);
}

TEST(BicgStabSolver, MeetsASolutionWithOneStepOfEachKind) {
    // alpha = 1, omega = 2 / 4: u = (1, 0) + 0.5 (0, -1).
    BicgStabSolver solver(50, 1e-9);

    const auto u = solver.Solve(twoSteps(), vectorOf({1.0F, 0.0F}), start(RealVector(2)));

    EXPECT_TRUE(sameVectorBits(*u, vectorOf({1.0F, -0.5F})));
    EXPECT_TRUE(solver.converged());
}

TEST(BicgStabSolver, ComparesTheResidualNormStrictly) {
    // r = (1, 1), alpha = 2 / 4, s = (0.5, -0.5), t = (0.5, -1.5), omega = 0.4.
    const PlainMatrix A = matrixOf({{1.0F, 0.0F}, {0.0F, 3.0F}});
    const RealVector b = vectorOf({1.0F, 1.0F});
    const double left =
        norm(plus(vectorOf({0.5F, -0.5F}), -1.0 / 2.5, vectorOf({0.5F, -1.5F})));

    expectStrictTest(makeOf<BicgStabSolver>, A, b, left);
}

TEST(BicgStabSolver, BreaksDownOnASolutionInTheMiddleOfAnIteration) {
    // alpha = 1 / 2 solves the system, s = 0, and omega is 0 / 0.
    BicgStabSolver solver(5, 0.0001);

    const auto u = solver.Solve(FullMatrix(1, 2.0F), RealVector(1, 6.0F), nullptr);

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(solver.converged());
}

TEST(Quirk, StabConjugateProduct) {
    // A conjugate product of twice the length halves omega: u = (1, 0) + 0.25 (0, -1).
    const WatchingMatrix plain(twoSteps());
    const WatchingMatrix doubled(twoSteps(), /*conjugateFactor=*/2.0F);
    const RealVector b = vectorOf({1.0F, 0.0F});
    BicgStabSolver solver(1, 0.0);

    const auto u = solver.Solve(doubled, b, start(RealVector(2)));

    EXPECT_TRUE(sameVectorBits(*u, vectorOf({1.0F, -0.25F})));
    EXPECT_TRUE(
        sameVectorBits(*solver.Solve(plain, b, start(RealVector(2))), vectorOf({1.0F, -0.5F})));
    EXPECT_EQ(plain.products(), 4);
    EXPECT_EQ(plain.conjugateProducts(), 1);
}

TEST(Quirk, StabRoundedStep) {
    // s.t is 2 2^-160, which a double holds and a float rounds to 0: omega is 0 instead of 0.5.
    const float small = std::ldexp(1.0F, -80);
    BicgStabSolver solver(1, 0.0);

    const auto u = solver.Solve(twoSteps(), vectorOf({small, 0.0F}), start(RealVector(2)));

    EXPECT_EQ((*u)[0], small);
    EXPECT_EQ((*u)[1], 0.0F);
}

}  // namespace
}  // namespace orv
