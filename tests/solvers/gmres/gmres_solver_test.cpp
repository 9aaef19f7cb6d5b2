#include "solvers/gmres/gmres_solver.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>

#include "support/direct_solution.h"
#include "support/krylov_systems.h"
#include "support/matrix_support.h"
#include "support/plain_gmres.h"

namespace orv {
namespace {

using test::allNan;
using test::diffusionLine;
using test::diffusionPlane;
using test::directSolution;
using test::dominantMatrix;
using test::KrylovSystem;
using test::krylovSystems;
using test::largestError;
using test::PlainGmres;
using test::residualNorm;
using test::sameVectorBits;
using test::scaledIdentity;
using test::start;
using test::times;
using test::vectorOf;
using test::wavyVector;
using test::windyPlane;

double norm(const RealVector& v) {
    return std::sqrt(v.SumOfSquares());
}

TEST(GmresSolver, SolvesAllSystemsWithColumnsEnough) {
    GmresSolver solver(100, 100, 1e-5, false);
    for (const KrylovSystem& system : krylovSystems()) {
        const auto u = solver.Solve(*system.A, system.b, start(RealVector(system.b.size())));

        EXPECT_TRUE(solver.converged()) << system.name;
        EXPECT_LT(solver.relativeResidual(), 1e-5) << system.name;
        // A tenth more leaves room for the rounding of float vectors; eigenvalues are 1 and
        // more.
        const double bound = 1.1e-5 * norm(system.b);
        EXPECT_LT(residualNorm(*system.A, system.b, *u), bound) << system.name;
        EXPECT_LT(largestError(*u, directSolution(*system.A, system.b)), bound) << system.name;
    }
}

TEST(GmresSolver, GivesTheBitsOfThePlainMethodFromSolveToSolve) {
    for (const int m : {2, 3, 6, 17, 40}) {
        for (const int maxIter : {0, 1, 2, 5, 16, 40}) {
            GmresSolver solver(maxIter, m, 1e-5, false);
            PlainGmres plain(maxIter, m, 1e-5);
            for (const KrylovSystem& system : krylovSystems()) {
                RealVector expected = system.b;
                plain.solve(*system.A, system.b, expected);

                const auto u = solver.Solve(*system.A, system.b, nullptr);

                EXPECT_TRUE(sameVectorBits(*u, expected)) << system.name << m << maxIter;
                EXPECT_EQ(solver.converged(), plain.converged) << system.name << m << maxIter;
                EXPECT_EQ(solver.relativeResidual(), plain.relRes) << system.name;
            }
        }
    }
}

TEST(GmresSolver, RotatesOneColumnByHand) {
    // From u = 0: beta = 5, V0 = (1, 0); A V0 = (3, 4), so H = (3, 4) and V1 = (0, 1). The
    // rotation has q = 3/4, sn = 0.8, cs = 0.6: H = 5, g = (3, -4), y = 0.6, u = (0.6, 0).
    FullMatrix A(2, 0.0F);
    A.Set(0, 0, 3.0F);
    A.Set(0, 1, 4.0F);
    A.Set(1, 1, 1.0F);
    RealVector b(2);
    b[0] = 5.0F;
    GmresSolver solver(1, 2, 1e-6, false);

    const auto u = solver.Solve(A, b, start(RealVector(2)));

    EXPECT_FLOAT_EQ((*u)[0], 0.6F);
    EXPECT_EQ((*u)[1], 0.0F);
    EXPECT_NEAR(solver.relativeResidual(), 0.8, 1e-7);
    EXPECT_FALSE(solver.converged());
}

TEST(GmresSolver, TestsItsLoopRelativeToTheRightSide) {
    // The same system on two scales: the absolute residual differs, the steps don't.
    const FTriDiagonalMatrix A = diffusionLine(30, 2.0F);
    RealVector large = wavyVector(30);
    large.MultiplyScalar(1024.0F);
    GmresSolver solver(30, 30, 0.01, false);

    const auto u = solver.Solve(A, wavyVector(30), start(RealVector(30)));
    const double small = residualNorm(A, wavyVector(30), *u);
    const auto scaled = solver.Solve(A, large, start(RealVector(30)));

    EXPECT_TRUE(solver.converged());
    auto expected = start(*u);
    expected->MultiplyScalar(1024.0F);
    EXPECT_TRUE(sameVectorBits(*scaled, *expected));
    EXPECT_GT(small, 0.01);
    EXPECT_GT(residualNorm(A, large, *scaled), 100.0 * 0.01);
}

TEST(GmresSolver, ReturnsASolvedStartWithConvergedLow) {
    GmresSolver solver(50, 5, 0.0001, false);
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector solution(5, 3.0F);

    const auto u = solver.Solve(A, solution, start(solution));

    EXPECT_TRUE(sameVectorBits(*u, solution));
    EXPECT_FALSE(solver.converged());
    EXPECT_EQ(solver.tol(), 0.0001);
}

TEST(GmresSolver, TakesTheNormOfAZeroRightSideAsOne) {
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);
    GmresSolver solver(20, 20, 1e-5, false);
    GmresSolver none(0, 20, 1e-5, false);

    const auto zero = solver.Solve(A, RealVector(6), nullptr);
    const bool atOnce = !solver.converged() && solver.tol() == 1e-5;
    (void)none.Solve(A, RealVector(6), start(wavyVector(6)));
    const auto u = solver.Solve(A, RealVector(6), start(wavyVector(6)));

    EXPECT_TRUE(atOnce);
    EXPECT_TRUE(sameVectorBits(*zero, RealVector(6)));
    EXPECT_EQ(none.relativeResidual(), norm(times(A, wavyVector(6))));
    EXPECT_TRUE(solver.converged());
    EXPECT_LT(solver.relativeResidual(), 1e-5);
    EXPECT_LT(norm(*u), 2e-5);
}

TEST(GmresSolver, StartsFromTheRightHandSideWhenNoStartIsGiven) {
    const BandMatrix A = windyPlane(4, 3, 1.0F);
    const RealVector b = wavyVector(12);
    GmresSolver solver(2, 5, 1e-12, false);

    const auto fromNull = solver.Solve(A, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(b))));
    EXPECT_FALSE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(RealVector(12)))));
}

TEST(GmresSolver, ReturnsTheStartWithoutIterations) {
    for (const int maxIter : {0, -1, INT_MIN}) {
        GmresSolver solver(maxIter, 5, 0.0001, false);

        const auto u = solver.Solve(diffusionLine(4, 1.0F), wavyVector(4), nullptr);

        EXPECT_TRUE(sameVectorBits(*u, wavyVector(4))) << maxIter;
        EXPECT_FALSE(solver.converged()) << maxIter;
    }
}

TEST(GmresSolver, UpdatesAfterOneColumnWhenThatIsTheLimit) {
    const BandMatrix A = diffusionPlane(5, 4, 1.0F);
    const RealVector b = wavyVector(20);
    GmresSolver solver(1, 9, 1e-9, false);

    const auto u = solver.Solve(A, b, nullptr);

    EXPECT_EQ(solver.vectorsMade(), 2);
    // One column is the step along r that makes the residual least.
    const double before = residualNorm(A, b, b);
    EXPECT_LT(residualNorm(A, b, *u), before);
    EXPECT_NEAR(residualNorm(A, b, *u) / norm(b), solver.relativeResidual(), 1e-6);
}

TEST(GmresSolver, LiftsFewerThanTwoColumnsToTwo) {
    const FullMatrix A = dominantMatrix(20);
    GmresSolver two(7, 2, 1e-9, false);
    const auto expected = two.Solve(A, wavyVector(20), nullptr);
    for (const int m : {INT_MIN, -1, 0, 1, 2}) {
        GmresSolver solver(7, m, 1e-9, false);

        EXPECT_EQ(solver.columns(), 2) << m;
        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, wavyVector(20), nullptr), *expected)) << m;
    }
}

TEST(GmresSolver, ConvergesInLittleMemoryWithLimitsOfAnySize) {
    GmresSolver solver(INT_MAX, INT_MAX, 1e-5, false);
    const FTriDiagonalMatrix A = diffusionLine(40, 2.0F);

    const auto u = solver.Solve(A, wavyVector(40), nullptr);
    const int made = solver.vectorsMade();
    (void)solver.Solve(A, wavyVector(40), nullptr);

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(largestError(*u, directSolution(A, wavyVector(40))), 0.01);
    EXPECT_LE(made, 42);
    EXPECT_EQ(solver.vectorsMade(), made);
}

TEST(GmresSolver, FindsTheSolutionWhenTheBasisIsComplete) {
    // The image of V0 = (0, 1, 0) is a multiple of it: h = 0 is convergence, and V1, which is
    // NaN, is never read.
    const RealVector b = vectorOf({0.0F, 8.0F, 0.0F});
    GmresSolver solver(5, 5, 1e-7, false);

    const auto u = solver.Solve(scaledIdentity(3, 4.0F), b, start(RealVector(3)));

    EXPECT_TRUE(solver.converged());
    EXPECT_EQ(solver.relativeResidual(), 0.0);
    EXPECT_TRUE(sameVectorBits(*u, vectorOf({0.0F, 2.0F, 0.0F})));
}

TEST(GmresSolver, LetsACompleteBasisThroughAsNanWhenNothingIsBelowTheTolerance) {
    const FullMatrix A = scaledIdentity(3, 4.0F);
    const RealVector b = vectorOf({0.0F, 8.0F, 0.0F});
    for (const int limit : {2, 5, INT_MAX}) {
        GmresSolver solver(limit, limit, 0.0, false);
        PlainGmres plain(5, 5, 0.0);
        RealVector expected(3);
        plain.solve(A, b, expected);

        const auto u = solver.Solve(A, b, start(RealVector(3)));

        EXPECT_TRUE(allNan(expected));
        EXPECT_TRUE(allNan(*u)) << limit;
        EXPECT_TRUE(std::isnan(solver.relativeResidual())) << limit;
        EXPECT_FALSE(solver.converged()) << limit;
        EXPECT_LE(solver.vectorsMade(), 3) << limit;
    }
}

TEST(GmresSolver, TakesAColumnOfZerosForConvergence) {
    // A = 0: the column and h are 0, so the estimate is 0, and y = 8 / 0.
    const FullMatrix zero(3, 0.0F);
    const RealVector b = vectorOf({0.0F, 8.0F, 0.0F});
    GmresSolver solver(5, 5, 0.0001, false);

    const auto u = solver.Solve(zero, b, start(RealVector(3)));

    EXPECT_TRUE(solver.converged());
    EXPECT_TRUE(std::isinf((*u)[1]));
    EXPECT_TRUE(std::isnan((*u)[0]));
}

TEST(GmresSolver, EndsTheLoopOnceTheSolutionIsLostAndForgetsIt) {
    RealVector broken = wavyVector(9);
    broken[4] = std::numeric_limits<float>::quiet_NaN();
    GmresSolver solver(INT_MAX, INT_MAX, 1e-5, false);
    GmresSolver fresh(INT_MAX, INT_MAX, 1e-5, false);
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);

    const auto lost = solver.Solve(A, broken, nullptr);
    const bool low = !solver.converged();
    const auto found = solver.Solve(A, wavyVector(9), nullptr);

    EXPECT_TRUE(allNan(*lost));
    EXPECT_TRUE(low);
    EXPECT_TRUE(sameVectorBits(*found, *fresh.Solve(A, wavyVector(9), nullptr)));
}

TEST(GmresSolver, LeavesUAloneInAColumn) {
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);
    const RealVector b = wavyVector(6);
    GmresSolver solver(1, 4, 1e-9, false);
    (void)solver.Solve(A, b, nullptr);

    EXPECT_EQ(solver.Iterate(A, b, nullptr), nullptr);
}

TEST(Quirk, GmresNoRestart) {
    // Six rounds with two columns: one solve of two columns, then column 1 four times more. A
    // restart would start each pair from the residual of u and come nearer.
    const FTriDiagonalMatrix A = diffusionLine(12, 2.0F);
    const RealVector b = wavyVector(12);
    GmresSolver pair(2, 2, 1e-9, false);
    const auto once = pair.Solve(A, b, nullptr);
    const double before = residualNorm(A, b, *once);
    auto restarted = pair.Solve(A, b, start(*once));
    restarted = pair.Solve(A, b, std::move(restarted));
    GmresSolver solver(6, 2, 1e-9, false);

    const auto u = solver.Solve(A, b, nullptr);

    EXPECT_LT(residualNorm(A, b, *restarted), 0.2 * before);
    EXPECT_GT(residualNorm(A, b, *u), before);
    PlainGmres plain(6, 2, 1e-9);
    RealVector expected = b;
    plain.solve(A, b, expected);
    EXPECT_TRUE(sameVectorBits(*u, expected));
}

TEST(Quirk, GmresSinkingTolerance) {
    // A residual of 8 beside a norm of 1000 is above the tolerance 0.1 and relatively below.
    const FullMatrix A = scaledIdentity(1, 1.0F);
    GmresSolver solver(10, 5, 0.1, false);

    const auto u = solver.Solve(A, RealVector(1, 1000.0F), start(RealVector(1, 992.0F)));
    const double sunk = solver.tol();
    const auto next = solver.Solve(A, RealVector(1, 1000.0F), start(RealVector(1, 990.0F)));

    EXPECT_EQ((*u)[0], 992.0F);
    EXPECT_EQ(sunk, 0.008);
    // The first tolerance would have taken 0.01.
    EXPECT_FLOAT_EQ((*next)[0], 1000.0F);
    EXPECT_TRUE(solver.converged());
    EXPECT_EQ(solver.tol(), 0.008);
}

TEST(Quirk, RrgmresStartUntouched) {
    for (const double tol : {1e-12, 1e-4, 0.0}) {
        GmresSolver solver(50, 5, tol, true);
        for (const KrylovSystem& system : krylovSystems()) {
            const RealVector given(system.b.size(), 7.0F);

            const auto u = solver.Solve(*system.A, system.b, start(given));
            const auto fromNull = solver.Solve(*system.A, system.b, nullptr);

            EXPECT_TRUE(sameVectorBits(*u, given)) << system.name;
            EXPECT_TRUE(sameVectorBits(*fromNull, system.b)) << system.name;
            EXPECT_FALSE(solver.converged()) << system.name;
            EXPECT_EQ(solver.tol(), tol) << system.name;
        }
    }
}

TEST(GmresSolver, LosesARestrictedSolutionWhenNothingIsBelowTheTolerance) {
    // The zero residual is divided by its own length.
    GmresSolver solver(50, 5, -1.0, true);

    const auto u = solver.Solve(diffusionLine(6, 1.0F), wavyVector(6), nullptr);

    EXPECT_TRUE(allNan(*u));
    EXPECT_FALSE(solver.converged());
}

}  // namespace
}  // namespace orv
