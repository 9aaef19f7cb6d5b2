#include "solvers/preconditioned/preconditioned_cg_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algebra/preconditioners/explicit_ssor.h"
#include "algebra/storage/diagonal_matrix.h"
#include "base/rounding.h"
#include "solvers/preconditioned/preconditioner_probe.h"
#include "support/direct_solution.h"
#include "support/matrix_support.h"
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
    TranscribedRun run{u, false, 0};
    if (std::sqrt(g.SumOfSquares()) < tol) {
        return run;
    }
    auto z = M.Solve(g, nullptr);
    RealVector p(u.size());
    p.AddScaled(-1.0F, *z);
    while (run.iterations < maxIter && !run.converged) {
        ++run.iterations;
        const auto q = A.Multiply(p, nullptr);
        const float gz = toFloat(g.Dot(*z));
        const double alpha = double{gz} / p.Dot(*q);
        u.AddScaled(toFloat(alpha), p);
        g.AddScaled(toFloat(alpha), *q);
        run.converged = std::sqrt(g.SumOfSquares()) < tol;
        z = M.Solve(g, nullptr);
        const double beta = g.Dot(*z) / double{gz};
        p.ScaleAddScaled(toFloat(beta), -1.0F, *z);
    }
    run.u = u;
    return run;
}

TEST(PreconditionedCgSolver, SolvesSymmetricSystems) {
    for (const bool sgs : {true, false}) {
        PreconditionedCgSolver solver(200, 1e-2, sgs);
        for (const int n : {2, 3, 9, 40}) {
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

TEST(PreconditionedCgSolver, TakesEveryStepAsItIsDefined) {
    for (const int w : {1, 3, 6, 9}) {
        const BandMatrix A = diffusionPlane(w, 5, 2.0F);
        const int n = A.Rows();
        const RealVector b = wavyVector(n);
        for (const int maxIter : {1, 2, 3, 9, 20}) {
            for (const bool sgs : {true, false}) {
                const ExplicitSsor M(A, sgs ? 1.0 : 1.1);
                PreconditionedCgSolver solver(maxIter, 1e-12, sgs);

                const auto u = solver.Solve(A, b, start(RealVector(n, 1.0F)));

                EXPECT_TRUE(sameVectorBits(
                    *u, transcribed(A, M, b, RealVector(n, 1.0F), maxIter, 1e-12).u))
                    << w << " " << maxIter;
            }
        }
    }
}

TEST(PreconditionedCgSolver, StopsWhereTheTranscriptionStops) {
    const BandMatrix A = diffusionPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    for (const double tol : {10.0, 1.0, 1e-2}) {
        const TranscribedRun expected = transcribed(A, ExplicitSsor(A, 1.1), b, b, 100, tol);
        PreconditionedCgSolver solver(100, tol, /*sgs=*/false);
        PreconditionedCgSolver shorter(expected.iterations - 1, tol, /*sgs=*/false);

        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, b, nullptr), expected.u));
        EXPECT_TRUE(solver.converged());
        shorter.Solve(A, b, nullptr);
        EXPECT_FALSE(shorter.converged());
    }
}

TEST(PreconditionedCgSolver, SolvesADiagonalSystemInOneStep) {
    // M is A itself: A = diag(2, 4), b = (2, 8), u = 0: g = -b, z = (-1, -2), p = (1, 2),
    // gz = 18, p.q = 18.
    DiagonalMatrix A(2, 2.0F);
    A.Set(1, 1, 4.0F);
    PreconditionedCgSolver solver(5, 1e-9, /*sgs=*/true);

    const auto u = solver.Solve(A, test::vectorOf({2, 8}), start(RealVector(2)));

    EXPECT_TRUE(solver.converged());
    EXPECT_EQ(test::elementsOf(*u), (std::vector<float>{1.0F, 2.0F}));
}

TEST(PreconditionedCgSolver, ReturnsAStartVectorThatSolvesTheSystem) {
    const FullMatrix A(1, 4.0F);
    PreconditionedCgSolver solver(5, 0.1, /*sgs=*/true);

    const auto u = solver.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 1.01F)));

    EXPECT_EQ((*u)[0], 1.01F);
    EXPECT_FALSE(solver.converged());
}

TEST(PreconditionedCgSolver, RecoversAfterABreakdown) {
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);
    FTriDiagonalMatrix broken = A;
    broken.Set(2, 2, 0.0F);
    PreconditionedCgSolver solver(6, 1e-12, /*sgs=*/true);

    const auto lost = solver.Solve(broken, wavyVector(6), nullptr);
    const auto u = solver.Solve(A, wavyVector(6), nullptr);

    EXPECT_TRUE(std::isnan((*lost)[0]));
    EXPECT_TRUE(sameVectorBits(
        *u, *PreconditionedCgSolver(6, 1e-12, /*sgs=*/true).Solve(A, wavyVector(6), nullptr)));
}

TEST(PreconditionedCgSolver, RelaxesFromTheFirstSolveOn) {
    const FTriDiagonalMatrix A = diffusionLine(4, 1.0F);
    PreconditionedCgSolver sgs(1, 1e-4, /*sgs=*/true);
    PreconditionedCgSolver ssor(1, 1e-4, /*sgs=*/false);
    EXPECT_EQ(ssor.omega(), 1.0);

    sgs.Solve(A, wavyVector(4), nullptr);
    ssor.Solve(A, wavyVector(4), nullptr);

    EXPECT_EQ(sgs.omega(), 1.0);
    EXPECT_EQ(ssor.omega(), 1.1);
}

}  // namespace
}  // namespace orv
