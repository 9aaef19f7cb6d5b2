#include "solvers/preconditioned/ilu0_bicg_stab_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "algebra/preconditioners/compact_incomplete_lu0.h"
#include "base/text_output.h"
#include "solvers/preconditioned/stab_transcription.h"
#include "support/direct_solution.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

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

TEST(Ilu0BicgStabSolver, SolvesBandAndFullSystems) {
    const SilencedOutput silence;
    const BandMatrix plane = diffusionPlane(9, 7, 3.0F);
    const BandMatrix windy = windyPlane(9, 7, 3.0F);
    const FullMatrix dense = test::dominantMatrix(30);
    Ilu0BicgStabSolver solver(200, 1e-2);
    for (const Matrix* const A :
         {static_cast<const Matrix*>(&plane), static_cast<const Matrix*>(&windy),
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

TEST(Ilu0BicgStabSolver, TakesEveryStepAsItIsDefined) {
    const SilencedOutput silence;
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    const CompactIncompleteLU0 M(A);
    for (const int maxIter : {1, 2, 3, 4}) {
        Ilu0BicgStabSolver solver(maxIter, 1e-12);

        const auto u = solver.Solve(A, b, start(RealVector(30, 1.0F)));

        EXPECT_TRUE(sameVectorBits(
            *u, transcribedStab(A, M, b, RealVector(30, 1.0F), maxIter, 1e-12).u))
            << maxIter;
    }
}

TEST(Ilu0BicgStabSolver, StopsWhereTheTranscriptionStops) {
    const SilencedOutput silence;
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    const CompactIncompleteLU0 M(A);
    for (const double tol : {10.0, 1.0, 0.01}) {
        const TranscribedRun expected = transcribedStab(A, M, b, b, 100, tol);
        Ilu0BicgStabSolver solver(100, tol);

        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, b, nullptr), expected.u));
        EXPECT_TRUE(solver.converged());
    }
}

TEST(Ilu0BicgStabSolver, EndsInTheFirstStepWhereTheFactorsAreExact) {
    const SilencedOutput silence;
    const BandMatrix line = windyPlane(20, 1, 2.0F);
    Ilu0BicgStabSolver solver(1, 1e-2);

    const auto u = solver.Solve(line, wavyVector(20), start(RealVector(20)));

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(residualNorm(line, wavyVector(20), *u), 1e-2);
}

TEST(Ilu0BicgStabSolver, OnAMatrixWithoutIncompleteFactorsBreaksDown) {
    const FTriDiagonalMatrix A = test::diffusionLine(6, 1.0F);
    Ilu0BicgStabSolver solver(4, 1e-4);
    const SilencedOutput silence;

    const auto u = solver.Solve(A, wavyVector(6), nullptr);

    EXPECT_FALSE(solver.converged());
    for (int i = 0; i < 6; ++i) {
        EXPECT_TRUE(std::isnan((*u)[i])) << i;
    }
    // A system that it can work on follows as if nothing had been.
    const BandMatrix B = diffusionPlane(3, 2, 1.0F);
    EXPECT_TRUE(sameVectorBits(*solver.Solve(B, wavyVector(6), nullptr),
                               *Ilu0BicgStabSolver(4, 1e-4).Solve(B, wavyVector(6), nullptr)));
}

TEST(Ilu0BicgStabSolver, PrintsTheFactorisationOfEverySolve) {
    const BandMatrix A = diffusionPlane(2, 2, 1.0F);
    Ilu0BicgStabSolver solver(0, 1e-4);

    const std::string one =
        test::standardOutputOf([&] { solver.Solve(A, wavyVector(4), nullptr); });
    const std::string two = test::standardOutputOf([&] {
        solver.Solve(A, wavyVector(4), nullptr);
        solver.Solve(A, wavyVector(4), nullptr);
    });

    EXPECT_EQ(one.substr(0, 12), "row2: v(4): ");
    EXPECT_EQ(two, one + one);
}

}  // namespace
}  // namespace orv
