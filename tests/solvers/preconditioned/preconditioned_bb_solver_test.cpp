#include "solvers/preconditioned/preconditioned_bb_solver.h"

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
using test::diffusionPlane;
using test::directSolution;
using test::largestError;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::TranscribedRun;
using test::wavyVector;

// The method written down step by step.
TranscribedRun transcribed(const Matrix& A, const Matrix& M, const RealVector& b, RealVector u,
                           int maxIter, double tol) {
    RealVector g(*A.Multiply(u, nullptr));
    g.AddScaled(-1.0F, b);
    double alpha = 0.5;
    TranscribedRun run{u, false, 0};
    while (run.iterations < maxIter && !run.converged) {
        ++run.iterations;
        const auto z = M.Solve(g, nullptr);
        const float gz = toFloat(g.Dot(*z));
        const auto w = A.Multiply(*z, nullptr);
        const float step = toFloat(-1.0 / alpha);
        u.AddScaled(step, *z);
        g.AddScaled(step, *w);
        run.converged = std::sqrt(g.SumOfSquares()) < tol;
        alpha = z->Dot(*w) / double{gz};
    }
    run.u = u;
    return run;
}

TEST(PreconditionedBbSolver, SolvesSymmetricSystems) {
    for (const bool sgs : {true, false}) {
        PreconditionedBbSolver solver(200, 1e-2, sgs);
        for (const int n : {1, 2, 3, 9, 40}) {
            const FTriDiagonalMatrix A = diffusionLine(n, 2.0F);
            const RealVector b = wavyVector(n);

            const auto u = solver.Solve(A, b, nullptr);

            EXPECT_TRUE(solver.converged()) << n;
            // The residual of the recurrence departs from the true one by its rounding alone.
            EXPECT_LT(residualNorm(A, b, *u), 1.1e-2) << n;
            // The smallest eigenvalue is 1.
            EXPECT_LT(largestError(*u, directSolution(A, b)), 1.1e-2) << n;
        }
        const BandMatrix A = diffusionPlane(9, 7, 3.0F);

        const auto u = solver.Solve(A, wavyVector(63), nullptr);

        EXPECT_TRUE(solver.converged());
        EXPECT_LT(residualNorm(A, wavyVector(63), *u), 1.1e-2);
    }
}

TEST(PreconditionedBbSolver, TakesEveryStepAsItIsDefined) {
    const BandMatrix A = diffusionPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    for (const int maxIter : {1, 2, 3, 7}) {
        // The two members of the pair differ by omega alone.
        for (const bool sgs : {true, false}) {
            const ExplicitSsor M(A, sgs ? 1.0 : 1.1);
            const ExplicitSsor other(A, sgs ? 1.1 : 1.0);
            PreconditionedBbSolver solver(maxIter, 1e-12, sgs);

            const auto u = solver.Solve(A, b, start(RealVector(30, 1.0F)));

            EXPECT_TRUE(sameVectorBits(
                *u, transcribed(A, M, b, RealVector(30, 1.0F), maxIter, 1e-12).u));
            EXPECT_FALSE(sameVectorBits(
                *u, transcribed(A, other, b, RealVector(30, 1.0F), maxIter, 1e-12).u));
        }
    }
}

TEST(PreconditionedBbSolver, StopsWhereTheTranscriptionStops) {
    const BandMatrix A = diffusionPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    for (const double tol : {10.0, 1.0, 1e-2}) {
        const TranscribedRun expected = transcribed(A, ExplicitSsor(A, 1.0), b, b, 100, tol);
        PreconditionedBbSolver solver(100, tol, /*sgs=*/true);
        PreconditionedBbSolver shorter(expected.iterations - 1, tol, /*sgs=*/true);

        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, b, nullptr), expected.u));
        EXPECT_TRUE(solver.converged());
        shorter.Solve(A, b, nullptr);
        EXPECT_FALSE(shorter.converged());
    }
}

TEST(PreconditionedBbSolver, BeginsWithAStepOfTwo) {
    // A = 4, M = 4, b = 4, u = 3: g = 8, z = 2, step = -2, u = 3 - 4.
    const FullMatrix A(1, 4.0F);
    PreconditionedBbSolver solver(1, 1e-9, /*sgs=*/true);

    const auto u = solver.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 3.0F)));

    EXPECT_EQ((*u)[0], -1.0F);
    // g = 8 - 2 8 = -8, alpha = z.w / gz = 2 8 / 16 = 1: the second step lands on the solution.
    PreconditionedBbSolver two(2, 1e-9, /*sgs=*/true);
    EXPECT_EQ((*two.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 3.0F))))[0], 1.0F);
    EXPECT_TRUE(two.converged());
}

TEST(PreconditionedBbSolver, HasNoTestOnTheStartVector) {
    const FullMatrix A(1, 4.0F);
    PreconditionedBbSolver solver(5, 0.1, /*sgs=*/true);

    // g = 0.04 is below the tolerance, and still a step is taken.
    const auto u = solver.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 1.01F)));

    EXPECT_TRUE(solver.converged());
    EXPECT_NEAR((*u)[0], 0.99F, 1e-6);
}

TEST(PreconditionedBbSolver, RelaxesFromTheFirstSolveOn) {
    const FTriDiagonalMatrix A = diffusionLine(4, 1.0F);
    PreconditionedBbSolver sgs(1, 1e-4, /*sgs=*/true);
    PreconditionedBbSolver ssor(1, 1e-4, /*sgs=*/false);
    EXPECT_EQ(ssor.omega(), 1.0);

    sgs.Solve(A, wavyVector(4), nullptr);
    ssor.Solve(A, wavyVector(4), nullptr);

    EXPECT_EQ(sgs.omega(), 1.0);
    EXPECT_EQ(ssor.omega(), 1.1);
}

TEST(PreconditionedBbSolver, AZeroOnTheDiagonalLeavesNotANumber) {
    FullMatrix A(2, 1.0F);
    A.Set(0, 0, 0.0F);
    PreconditionedBbSolver solver(10, 1e-4, /*sgs=*/true);

    const auto u = solver.Solve(A, wavyVector(2), nullptr);

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(solver.converged());
}

}  // namespace
}  // namespace orv
