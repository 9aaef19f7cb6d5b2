#include "solvers/bicg/bicg_stab2_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "solvers/bicg/bicg_stab_solver.h"
#include "support/bicg_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::directSolution;
using test::dominantMatrix;
using test::expectTranscribed;
using test::largestError;
using test::makeOf;
using test::norm;
using test::plus;
using test::product;
using test::residualNorm;
using test::sameVectorBits;
using test::scaledPlus;
using test::start;
using test::sumOf;
using test::wavyVector;

RealVector transcribed(const Matrix& A, const RealVector& b, const RealVector& begin,
                       int iterations) {
    RealVector u = begin;
    RealVector r = plus(b, -1.0, product(A, u));
    const RealVector rTilde = r;
    double rho0 = 1.0;
    double omega2 = 1.0;
    double alpha = 0.0;
    RealVector uHat(b.size());
    for (int it = 0; it < iterations; ++it) {
        rho0 = -(omega2 * rho0);

        double rho1 = rTilde.Dot(r);
        double beta = rho1 * alpha / rho0;
        rho0 = rho1;
        uHat = scaledPlus(-beta, uHat, r);
        RealVector v = product(A, uHat);
        alpha = rho0 / v.Dot(rTilde);
        r = plus(r, -alpha, v);
        RealVector s = product(A, r);
        u = plus(u, alpha, uHat);

        rho1 = rTilde.Dot(s);
        beta = rho1 * alpha / rho0;
        rho0 = rho1;
        v = scaledPlus(-beta, v, s);
        const RealVector w = product(A, v);
        alpha = rho0 / w.Dot(rTilde);
        uHat = scaledPlus(-beta, uHat, r);
        r = plus(r, -alpha, v);
        s = plus(s, -alpha, w);
        const RealVector t = product(A, s);

        double omega1 = r.Dot(s);
        const double mu = s.SumOfSquares();
        const double nu = s.Dot(t);
        const double tauSq = t.SumOfSquares();
        omega2 = ((r.Dot(t)) - nu * omega1 / mu) / (tauSq - nu * nu / mu);
        omega1 = (omega1 - omega2 * nu) / mu;
        u = sumOf({{1.0, u}, {omega1, r}, {omega2, s}, {alpha, uHat}});
        r = sumOf({{1.0, r}, {-omega1, s}, {-omega2, t}});
        uHat = sumOf({{1.0, uHat}, {-omega1, v}, {-omega2, w}});
    }
    return u;
}

TEST(BicgStab2Solver, FollowsItsFormulasToTheBit) {
    expectTranscribed(makeOf<BicgStab2Solver>, transcribed);
}

TEST(BicgStab2Solver, ComparesTheResidualNormStrictly) {
    const FullMatrix A = dominantMatrix(5);
    const RealVector b = wavyVector(5);
    // The largest tolerance that the first residual isn't below, by halving the interval.
    const auto converges = [&](double tol) {
        BicgStab2Solver solver(1, tol);
        (void)solver.Solve(A, b, start(RealVector(5)));
        return solver.converged();
    };
    double low = 0.0;
    double high = norm(b);
    while (std::nextafter(low, high) < high) {
        const double middle = low + 0.5 * (high - low);
        (converges(middle) ? high : low) = middle;
    }

    BicgStab2Solver first(1, low);
    const auto u = first.Solve(A, b, start(RealVector(5)));

    EXPECT_FALSE(first.converged());
    // What the recurrence has and floats leave of the true one.
    EXPECT_NEAR(low, residualNorm(A, b, *u), 1e-4);
}

TEST(BicgStab2Solver, SolvesASystemOfNearlyImaginaryEigenvaluesThatHoldsTheOneStepMethodUp) {
    // Eigenvalues 0.2 + i y with y up to 2.
    FullMatrix A(20, 0.0F);
    for (int i = 0; i < 20; ++i) {
        A.Set(i, i, 0.2F);
        if (i + 1 < 20) {
            A.Set(i + 1, i, 1.0F);
            A.Set(i, i + 1, -1.0F);
        }
    }
    BicgStab2Solver twoSteps(20, 0.001);
    BicgStabSolver oneStep(100, 0.001);

    const auto u = twoSteps.Solve(A, wavyVector(20), nullptr);
    (void)oneStep.Solve(A, wavyVector(20), nullptr);

    EXPECT_TRUE(twoSteps.converged());
    EXPECT_LT(residualNorm(A, wavyVector(20), *u), 0.002);
    EXPECT_LT(largestError(*u, directSolution(A, wavyVector(20))), 0.002);
    EXPECT_FALSE(oneStep.converged());
}

TEST(BicgStab2Solver, BreaksDownOnASolutionBeforeThePlaneStep) {
    BicgStab2Solver solver(5, 0.0001);

    const auto u = solver.Solve(FullMatrix(1, 2.0F), RealVector(1, 6.0F), nullptr);

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(solver.converged());
}

TEST(Quirk, Bicgstab2KeepsDirection) {
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);
    RealVector broken = wavyVector(9);
    broken[4] = std::numeric_limits<float>::infinity();
    BicgStab2Solver solver(50, 0.001);

    (void)solver.Solve(A, broken, start(RealVector(9)));
    const auto spoiled = solver.Solve(A, wavyVector(9), nullptr);
    const bool spoiledConverged = solver.converged();
    (void)solver.Solve(diffusionLine(8, 2.0F), wavyVector(8), nullptr);
    const auto healed = solver.Solve(A, wavyVector(9), nullptr);

    EXPECT_TRUE(std::isnan(spoiled->Sum()));
    EXPECT_FALSE(spoiledConverged);
    BicgStab2Solver fresh(50, 0.001);
    EXPECT_TRUE(sameVectorBits(*healed, *fresh.Solve(A, wavyVector(9), nullptr)));
    EXPECT_TRUE(solver.converged());
}

}  // namespace
}  // namespace orv
