#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algebra/preconditioners/explicit_ssor.h"
#include "base/rounding.h"
#include "solvers/preconditioned/preconditioner_probe.h"
#include "support/direct_solution.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::directSolution;
using test::largestError;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::TranscribedRun;
using test::wavyVector;
using test::windyPlane;

// The method written down step by step, on a fresh solver. With `renew`, the last update of u
// takes the preconditioned vectors of the moment, as it should: it then solves the system.
TranscribedRun transcribed(const Matrix& A, const Matrix& M, const RealVector& b, RealVector u,
                           int maxIter, double tol, bool renew = false) {
    RealVector r(b);
    r.AddScaled(-1.0F, *A.Multiply(u, nullptr));
    TranscribedRun run{u, false, 0};
    if (std::sqrt(r.SumOfSquares()) < tol) {
        return run;
    }
    const RealVector rTilde(r);
    RealVector uHat(u.size());
    double rho0 = 1.0;
    double omega2 = 1.0;
    double alpha = 0.0;
    while (run.iterations < maxIter && !run.converged) {
        ++run.iterations;
        rho0 = -(omega2 * rho0);
        double rho1 = rTilde.Dot(r);
        double beta = rho1 * alpha / rho0;
        rho0 = rho1;
        uHat.ScaleAdd(toFloat(-beta), r);
        const RealVector z1(*M.Solve(uHat, nullptr));
        RealVector v(*A.Multiply(z1, nullptr));
        alpha = rho0 / v.Dot(rTilde);
        r.AddScaled(toFloat(-alpha), v);
        const RealVector z2(*M.Solve(r, nullptr));
        RealVector s(*A.Multiply(z2, nullptr));
        u.AddScaled(toFloat(alpha), z1);
        rho1 = rTilde.Dot(s);
        beta = rho1 * alpha / rho0;
        rho0 = rho1;
        v.ScaleAdd(toFloat(-beta), s);
        const RealVector z3(*M.Solve(v, nullptr));
        const RealVector w(*A.Multiply(z3, nullptr));
        alpha = rho0 / w.Dot(rTilde);
        uHat.ScaleAdd(toFloat(-beta), r);
        r.AddScaled(toFloat(-alpha), v);
        s.AddScaled(toFloat(-alpha), w);
        const RealVector z4(*M.Solve(s, nullptr));
        const RealVector t(*A.Multiply(z4, nullptr));
        double omega1 = r.Dot(s);
        const double mu = s.Dot(s);
        const double nu = s.Dot(t);
        const double tauSq = t.Dot(t);
        omega2 = (r.Dot(t) - nu * omega1 / mu) / (tauSq - nu * nu / mu);
        omega1 = (omega1 - omega2 * nu) / mu;
        const RealVector zu = renew ? *M.Solve(uHat, nullptr) : z1;
        const RealVector zr = renew ? *M.Solve(r, nullptr) : z2;
        u.AddScaled3(toFloat(omega1), zr, toFloat(omega2), z4, toFloat(alpha), zu);
        r.AddScaled2(toFloat(-omega1), s, toFloat(-omega2), t);
        run.converged = std::sqrt(r.SumOfSquares()) < tol;
        uHat.AddScaled2(toFloat(-omega1), v, toFloat(-omega2), w);
    }
    run.u = u;
    return run;
}

TEST(PreconditionedBicgStab2Solver, TakesEveryStepAsItIsDefined) {
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    for (const int maxIter : {1, 2, 3}) {
        for (const bool sgs : {true, false}) {
            const ExplicitSsor M(A, sgs ? 1.0 : 1.1);
            PreconditionedBicgStab2Solver solver(maxIter, 1e-12, sgs);

            const auto u = solver.Solve(A, b, start(RealVector(30, 1.0F)));

            EXPECT_TRUE(sameVectorBits(
                *u, transcribed(A, M, b, RealVector(30, 1.0F), maxIter, 1e-12).u))
                << maxIter;
        }
    }
}

TEST(PreconditionedBicgStab2Solver, StopsWhereTheTranscriptionStops) {
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    for (const double tol : {30.0, 1.0, 1e-2}) {
        const TranscribedRun expected = transcribed(A, ExplicitSsor(A, 1.1), b, b, 100, tol);
        PreconditionedBicgStab2Solver solver(100, tol, /*sgs=*/false);
        PreconditionedBicgStab2Solver shorter(expected.iterations - 1, tol, /*sgs=*/false);

        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, b, nullptr), expected.u));
        EXPECT_TRUE(solver.converged());
        shorter.Solve(A, b, nullptr);
        EXPECT_FALSE(shorter.converged());
    }
}

TEST(PreconditionedBicgStab2Solver, TheNextSolveOfTheSameSizeGivesTheSameBits) {
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    PreconditionedBicgStab2Solver solver(3, 1e-12, /*sgs=*/true);

    const auto first = solver.Solve(A, wavyVector(30), nullptr);

    // What the first run left in uHat is multiplied by 0.
    EXPECT_TRUE(sameVectorBits(*solver.Solve(A, wavyVector(30), nullptr), *first));
}

TEST(PreconditionedBicgStab2Solver, KeepsABreakdownForSystemsOfTheSameSize) {
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);
    FTriDiagonalMatrix broken = A;
    broken.Set(2, 2, 0.0F);
    PreconditionedBicgStab2Solver solver(2, 1e-2, /*sgs=*/true);

    const auto lost = solver.Solve(broken, wavyVector(6), nullptr);
    const auto still = solver.Solve(A, wavyVector(6), nullptr);

    EXPECT_TRUE(std::isnan((*lost)[0]));
    EXPECT_TRUE(std::isnan((*still)[0])) << "uHat isn't cleared, and 0 NaN is NaN";
    // New vectors of another size are free of it.
    const auto other = solver.Solve(diffusionLine(7, 1.0F), wavyVector(7), nullptr);
    EXPECT_TRUE(std::isfinite((*other)[0]));
    EXPECT_TRUE(std::isfinite((*solver.Solve(A, wavyVector(6), nullptr))[0]));
}

TEST(PreconditionedBicgStab2Solver, ReturnsAStartVectorThatSolvesTheSystem) {
    const FullMatrix A(1, 4.0F);
    PreconditionedBicgStab2Solver solver(5, 0.1, /*sgs=*/true);

    const auto u = solver.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 1.01F)));

    EXPECT_EQ((*u)[0], 1.01F);
    EXPECT_FALSE(solver.converged());
}

TEST(PreconditionedBicgStab2Solver, RelaxesFromTheFirstSolveOn) {
    const FTriDiagonalMatrix A = diffusionLine(4, 1.0F);
    PreconditionedBicgStab2Solver sgs(1, 1e-4, /*sgs=*/true);
    PreconditionedBicgStab2Solver ssor(1, 1e-4, /*sgs=*/false);
    EXPECT_EQ(ssor.omega(), 1.0);

    sgs.Solve(A, wavyVector(4), nullptr);
    ssor.Solve(A, wavyVector(4), nullptr);

    EXPECT_EQ(sgs.omega(), 1.0);
    EXPECT_EQ(ssor.omega(), 1.1);
}

TEST(Quirk, Stab2StaleDirection) {
    const RealVector b = wavyVector(63);
    const BandMatrix A = windyPlane(9, 7, 3.0F);
    for (const bool sgs : {true, false}) {
        PreconditionedBicgStab2Solver solver(100, 1e-2, sgs);

        const auto u = solver.Solve(A, b, start(RealVector(63)));

        // The r of the recurrence vanishes, that of u does not.
        EXPECT_TRUE(solver.converged());
        EXPECT_GT(residualNorm(A, b, *u), 100.0);
        EXPECT_GT(largestError(*u, directSolution(A, b)), 10.0);
        // With the directions of the moment the same steps solve the system.
        const TranscribedRun renewed = transcribed(A, ExplicitSsor(A, sgs ? 1.0 : 1.1), b,
                                                   RealVector(63), 100, 1e-2, /*renew=*/true);
        EXPECT_TRUE(renewed.converged);
        EXPECT_LT(residualNorm(A, b, renewed.u), 1.5e-2);
    }
}

}  // namespace
}  // namespace orv
