#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algebra/preconditioners/explicit_ssor.h"
#include "algebra/storage/diagonal_matrix.h"
#include "solvers/preconditioned/stab_transcription.h"
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
using test::transcribedStab;
using test::wavyVector;
using test::windyPlane;

TEST(PreconditionedBicgStabSolver, SolvesSymmetricAndOtherSystems) {
    const FTriDiagonalMatrix line = diffusionLine(40, 2.0F);
    const FTriDiagonalMatrix pair = diffusionLine(2, 2.0F);
    const BandMatrix plane = diffusionPlane(9, 7, 3.0F);
    const BandMatrix windy = windyPlane(9, 7, 3.0F);
    const FullMatrix dense = test::dominantMatrix(30);
    for (const bool sgs : {true, false}) {
        PreconditionedBicgStabSolver solver(200, 1e-2, sgs);
        for (const Matrix* const A :
             {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&pair),
              static_cast<const Matrix*>(&plane), static_cast<const Matrix*>(&windy),
              static_cast<const Matrix*>(&dense)}) {
            const RealVector b = wavyVector(A->Rows());

            const auto u = solver.Solve(*A, b, nullptr);

            EXPECT_TRUE(solver.converged()) << A->Rows();
            // The residual of the recurrence departs from the true one by its rounding alone.
            EXPECT_LT(residualNorm(*A, b, *u), 1.2e-2) << A->Rows();
            // The smallest eigenvalue is about 1.
            EXPECT_LT(largestError(*u, directSolution(*A, b)), 1.5e-2) << A->Rows();
        }
    }
}

TEST(PreconditionedBicgStabSolver, TakesEveryStepAsItIsDefined) {
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    for (const int maxIter : {1, 2, 3, 5}) {
        for (const bool sgs : {true, false}) {
            const ExplicitSsor M(A, sgs ? 1.0 : 1.1);
            PreconditionedBicgStabSolver solver(maxIter, 1e-12, sgs);

            const auto u = solver.Solve(A, b, start(RealVector(30, 1.0F)));

            EXPECT_TRUE(sameVectorBits(
                *u, transcribedStab(A, M, b, RealVector(30, 1.0F), maxIter, 1e-12).u))
                << maxIter;
        }
    }
}

TEST(PreconditionedBicgStabSolver, StopsWhereTheTranscriptionStops) {
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    for (const double tol : {30.0, 10.0, 3.0, 1.0, 0.3, 0.1, 0.01}) {
        const TranscribedRun expected =
            transcribedStab(A, ExplicitSsor(A, 1.0), b, b, 100, tol);
        PreconditionedBicgStabSolver solver(100, tol, /*sgs=*/true);
        PreconditionedBicgStabSolver shorter(expected.iterations - 1, tol, /*sgs=*/true);

        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, b, nullptr), expected.u));
        EXPECT_TRUE(solver.converged());
        shorter.Solve(A, b, nullptr);
        EXPECT_FALSE(shorter.converged());
    }
}

TEST(PreconditionedBicgStabSolver, EndsInTheMiddleOfAStepThatSolvesTheSystem) {
    // M is A itself, so that the first half step ends at s = 0: A = diag(2, 4), b = (2, 8),
    // u = 0: r = b, p = (1 + 68) r, y = 69 (1, 2), alpha = 68 / (69 68), u = (1, 2).
    DiagonalMatrix A(2, 2.0F);
    A.Set(1, 1, 4.0F);
    PreconditionedBicgStabSolver solver(5, 1e-4, /*sgs=*/true);

    const auto u = solver.Solve(A, test::vectorOf({2, 8}), start(RealVector(2)));

    // Without the test on s, t.t = 0 would leave NaN.
    EXPECT_TRUE(solver.converged());
    EXPECT_NEAR((*u)[0], 1.0F, 1e-6);
    EXPECT_NEAR((*u)[1], 2.0F, 1e-6);
}

TEST(PreconditionedBicgStabSolver, RecoversAfterABreakdown) {
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);
    FTriDiagonalMatrix broken = A;
    broken.Set(2, 2, 0.0F);
    PreconditionedBicgStabSolver solver(3, 1e-12, /*sgs=*/true);

    const auto lost = solver.Solve(broken, wavyVector(6), nullptr);
    const auto u = solver.Solve(A, wavyVector(6), nullptr);

    EXPECT_TRUE(std::isnan((*lost)[0]));
    EXPECT_TRUE(sameVectorBits(*u, *PreconditionedBicgStabSolver(3, 1e-12, /*sgs=*/true)
                                        .Solve(A, wavyVector(6), nullptr)));
}

TEST(PreconditionedBicgStabSolver, RelaxesFromTheFirstSolveOn) {
    const FTriDiagonalMatrix A = diffusionLine(4, 1.0F);
    PreconditionedBicgStabSolver sgs(1, 1e-4, /*sgs=*/true);
    PreconditionedBicgStabSolver ssor(1, 1e-4, /*sgs=*/false);
    EXPECT_EQ(ssor.omega(), 1.0);

    sgs.Solve(A, wavyVector(4), nullptr);
    ssor.Solve(A, wavyVector(4), nullptr);

    EXPECT_EQ(sgs.omega(), 1.0);
    EXPECT_EQ(ssor.omega(), 1.1);
}

TEST(Quirk, StabFirstDirection) {
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    const ExplicitSsor M(A, 1.0);
    PreconditionedBicgStabSolver solver(1, 1e-12, /*sgs=*/true);

    const auto u = solver.Solve(A, b, start(RealVector(30, 1.0F)));

    // The first direction is (1 + rho) r - rho A u and not r.
    const TranscribedRun textbook = transcribedStab(A, M, b, RealVector(30, 1.0F), 1, 1e-12,
                                                    /*resetDirection=*/true);
    EXPECT_TRUE(sameVectorBits(*u, transcribedStab(A, M, b, RealVector(30, 1.0F), 1, 1e-12).u));
    EXPECT_GT(residualNorm(A, b, *u), 1.05 * residualNorm(A, b, textbook.u));
}

}  // namespace
}  // namespace orv
