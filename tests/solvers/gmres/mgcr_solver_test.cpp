#include "solvers/gmres/mgcr_solver.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "support/direct_solution.h"
#include "support/krylov_systems.h"
#include "support/matrix_support.h"
#include "support/plain_mgcr.h"

namespace orv {
namespace {

using test::allNan;
using test::diffusionLine;
using test::directSolution;
using test::dominantMatrix;
using test::KrylovSystem;
using test::krylovSystems;
using test::largestError;
using test::PlainMgcr;
using test::residualNorm;
using test::sameBitsOrNan;
using test::sameVectorBits;
using test::scaledIdentity;
using test::start;
using test::vectorOf;
using test::wavyVector;
using test::windyPlane;

double norm(const RealVector& v) {
    return std::sqrt(v.SumOfSquares());
}

TEST(MgcrSolver, SolvesSystemsToAHundredthOfTheRightSide) {
    for (const KrylovSystem& system : krylovSystems()) {
        if (system.b.size() <= 5) {
            continue;
        }
        const double tol = 0.01 * norm(system.b);
        MgcrSolver solver(100, 100, tol);

        const auto u = solver.Solve(*system.A, system.b, start(RealVector(system.b.size())));

        EXPECT_TRUE(solver.converged()) << system.name;
        // A hundredth more leaves room for rounding; eigenvalues are 1 and more.
        EXPECT_LT(residualNorm(*system.A, system.b, *u), 1.01 * tol) << system.name;
        EXPECT_LT(largestError(*u, directSolution(*system.A, system.b)), 1.01 * tol)
            << system.name;
    }
}

TEST(MgcrSolver, SolvesSmallSystemsWithAsManyColumnsAsUnknowns) {
    for (const KrylovSystem& system : krylovSystems()) {
        const int n = system.b.size();
        if (n > 3) {
            continue;
        }
        MgcrSolver solver(n, n, 1e-9);

        const auto u = solver.Solve(*system.A, system.b, start(RealVector(n)));

        EXPECT_LT(residualNorm(*system.A, system.b, *u), 1e-4 * norm(system.b)) << system.name;
    }
}

TEST(MgcrSolver, RunsPastTheSolutionOnceRoundingTakesItsNormBelowZero) {
    // Two columns span all there is; the square of the norm that is left is negative, and the
    // columns that follow are made of rounding.
    const FTriDiagonalMatrix A = diffusionLine(2, 2.0F);
    const RealVector b = wavyVector(2);
    MgcrSolver two(2, 100, 0.1);
    MgcrSolver hundred(100, 100, 0.1);

    const auto near = two.Solve(A, b, start(RealVector(2)));
    const auto far = hundred.Solve(A, b, start(RealVector(2)));

    EXPECT_LT(residualNorm(A, b, *near), 1e-4);
    EXPECT_TRUE(std::isnan(two.runningNorm()));
    EXPECT_FALSE(two.converged());
    EXPECT_GT(residualNorm(A, b, *far), 1.0);
    EXPECT_FALSE(hundred.converged());
}

TEST(MgcrSolver, GivesTheBitsOfThePlainMethodFromSolveToSolve) {
    for (const int m : {2, 3, 6, 17, 40}) {
        for (const int maxIter : {0, 1, 2, 5, 16, 40}) {
            MgcrSolver solver(maxIter, m, 0.05);
            PlainMgcr plain(maxIter, m, 0.05);
            for (const KrylovSystem& system : krylovSystems()) {
                for (const float shift : {0.0F, 30.0F}) {
                    RealVector b = system.b;
                    b.AddScalar(shift);
                    RealVector expected = b;
                    plain.solve(*system.A, b, expected);

                    const auto u = solver.Solve(*system.A, b, nullptr);

                    EXPECT_TRUE(sameVectorBits(*u, expected)) << system.name << m << maxIter;
                    EXPECT_EQ(solver.converged(), plain.converged) << system.name << m;
                }
            }
        }
    }
}

TEST(MgcrSolver, FindsOneColumnByHand) {
    // V0 = b = (5, 0), A b = (15, 20): H = 25, V1 = (0.6, 0.8), g = 3, norm = sqrt(25 - 9);
    // y = 3 / 25, u = (0.6, 0).
    FullMatrix A(2, 0.0F);
    A.Set(0, 0, 3.0F);
    A.Set(0, 1, 4.0F);
    A.Set(1, 1, 1.0F);
    MgcrSolver solver(1, 2, 1e-6);

    const auto u = solver.Solve(A, vectorOf({5.0F, 0.0F}), start(RealVector(2)));

    EXPECT_FLOAT_EQ((*u)[0], 0.6F);
    EXPECT_EQ((*u)[1], 0.0F);
    EXPECT_NEAR(solver.runningNorm(), 4.0, 1e-6);
    EXPECT_FALSE(solver.converged());
}

TEST(MgcrSolver, FollowsTheResidualWithItsRunningNorm) {
    const BandMatrix A = windyPlane(6, 5, 1.0F);
    const RealVector b = wavyVector(30);
    for (const int columns : {1, 2, 3, 4}) {
        MgcrSolver solver(columns, 30, 1e-9);

        const auto u = solver.Solve(A, b, nullptr);

        // The squares differ by the rounding of float vectors, as large at the end as at the
        // start.
        const double square = solver.runningNorm() * solver.runningNorm();
        const double residual = residualNorm(A, b, *u);
        const double before = residualNorm(A, b, b);
        EXPECT_LT(solver.runningNorm(), 0.5 * before) << columns;
        EXPECT_NEAR(square, residual * residual, 1e-5 * before * before) << columns;
        EXPECT_EQ(solver.vectorsMade(), columns + 1);
    }
}

TEST(MgcrSolver, StartsAgainFromTheResidualOfUAfterMColumns) {
    const BandMatrix A = windyPlane(5, 4, 1.0F);
    const RealVector b = wavyVector(20);
    MgcrSolver three(3, 3, 1e-9);
    auto expected = three.Solve(A, b, nullptr);
    expected = three.Solve(A, b, std::move(expected));
    MgcrSolver six(6, 3, 1e-9);

    EXPECT_TRUE(sameVectorBits(*six.Solve(A, b, nullptr), *expected));
}

TEST(MgcrSolver, StopsAtAZeroBasisNorm) {
    // A is singular: the image of V0 = (0, 1) is 0. No column is left, and u stays.
    FullMatrix A(2, 0.0F);
    A.Set(0, 0, 1.0F);
    MgcrSolver solver(INT_MAX, INT_MAX, 0.0);

    const auto u = solver.Solve(A, vectorOf({0.0F, 1.0F}), start(RealVector(2)));

    EXPECT_TRUE(solver.converged());
    EXPECT_TRUE(sameVectorBits(*u, RealVector(2)));
    EXPECT_EQ(solver.vectorsMade(), 2);
}

TEST(MgcrSolver, KeepsTheColumnsBeforeAZeroBasisNorm) {
    // A multiple of the identity: the second image is a multiple of the first.
    MgcrSolver solver(5, 5, -1.0);

    const auto u = solver.Solve(scaledIdentity(3, 4.0F), vectorOf({0.0F, 8.0F, 0.0F}),
                                start(RealVector(3)));

    EXPECT_TRUE(solver.converged());
    EXPECT_TRUE(sameVectorBits(*u, vectorOf({0.0F, 2.0F, 0.0F})));
}

TEST(MgcrSolver, ReturnsASolvedStartWithConvergedLow) {
    MgcrSolver solver(50, 5, 0.0001);
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector solution(5, 3.0F);

    const auto u = solver.Solve(A, solution, start(solution));
    const auto zero = solver.Solve(A, RealVector(5), nullptr);

    EXPECT_TRUE(sameVectorBits(*u, solution));
    EXPECT_TRUE(sameVectorBits(*zero, RealVector(5)));
    EXPECT_FALSE(solver.converged());
}

TEST(MgcrSolver, StartsFromTheRightHandSideWhenNoStartIsGiven) {
    const BandMatrix A = windyPlane(4, 3, 1.0F);
    const RealVector b = wavyVector(12);
    MgcrSolver solver(2, 5, 1e-12);

    const auto fromNull = solver.Solve(A, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(b))));
    EXPECT_FALSE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(RealVector(12)))));
}

TEST(MgcrSolver, ReturnsTheStartWithoutIterations) {
    for (const int maxIter : {0, -1, INT_MIN}) {
        MgcrSolver solver(maxIter, 5, 0.0001);

        const auto u = solver.Solve(diffusionLine(4, 1.0F), wavyVector(4), nullptr);

        EXPECT_TRUE(sameVectorBits(*u, wavyVector(4))) << maxIter;
        EXPECT_FALSE(solver.converged()) << maxIter;
    }
}

TEST(MgcrSolver, LiftsFewerThanTwoColumnsToTwo) {
    const FullMatrix A = dominantMatrix(20);
    MgcrSolver two(7, 2, 1e-9);
    const auto expected = two.Solve(A, wavyVector(20), nullptr);
    for (const int m : {INT_MIN, -1, 0, 1, 2}) {
        MgcrSolver solver(7, m, 1e-9);

        EXPECT_EQ(solver.columns(), 2) << m;
        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, wavyVector(20), nullptr), *expected)) << m;
    }
}

TEST(MgcrSolver, ConvergesInLittleMemoryWithLimitsOfAnySize) {
    const RealVector b = wavyVector(40);
    const double tol = 0.01 * norm(b);
    MgcrSolver solver(INT_MAX, INT_MAX, tol);
    const FTriDiagonalMatrix A = diffusionLine(40, 2.0F);

    const auto u = solver.Solve(A, b, start(RealVector(40)));
    const int made = solver.vectorsMade();
    (void)solver.Solve(A, b, start(RealVector(40)));

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(largestError(*u, directSolution(A, b)), 1.01 * tol);
    EXPECT_LE(made, 42);
    EXPECT_EQ(solver.vectorsMade(), made);
}

TEST(MgcrSolver, EndsTheLoopOnceTheSolutionIsLost) {
    RealVector broken = wavyVector(9);
    broken[4] = std::numeric_limits<float>::quiet_NaN();
    MgcrSolver solver(INT_MAX, INT_MAX, 0.1);

    const auto lost = solver.Solve(diffusionLine(9, 2.0F), broken, nullptr);

    EXPECT_TRUE(allNan(*lost));
    EXPECT_FALSE(solver.converged());
    EXPECT_LE(solver.vectorsMade(), 2);
}

TEST(MgcrSolver, KeepsTheCoefficientsOfALostSolutionAsIfItHadGoneOn) {
    // Limits on both sides of the ten columns that a sound solve needs, and of the room for
    // eight that the lost one made: a coefficient that it would have come to is NaN for all that
    // follow, until the size changes.
    const RealVector b = wavyVector(20);
    RealVector other = b;
    other.AddScalar(90.0F);
    RealVector broken = b;
    broken[4] = std::numeric_limits<float>::quiet_NaN();
    const double tol = 0.02 * norm(b);
    int poisoned = 0;
    int sound = 0;
    for (const int m : {2, 9, 11, 30}) {
        for (const int maxIter : {1, 3, 9, 11, 12, 30}) {
            for (const auto& sides : {std::vector<RealVector>{broken, b, other, b},
                                      {other, broken, other, b},
                                      {broken, wavyVector(21), b}}) {
                MgcrSolver solver(maxIter, m, tol);
                PlainMgcr plain(maxIter, m, tol);
                for (const RealVector& side : sides) {
                    const FTriDiagonalMatrix A = diffusionLine(side.size(), 8.0F);
                    RealVector expected(side.size(), 1.0F);
                    plain.solve(A, side, expected);

                    const auto u = solver.Solve(A, side, start(RealVector(side.size(), 1.0F)));

                    EXPECT_EQ(solver.converged(), plain.converged) << m << ", " << maxIter;
                    EXPECT_TRUE(sameBitsOrNan(*u, expected)) << m << ", " << maxIter;
                    ++(allNan(*u) ? poisoned : sound);
                }
            }
        }
    }
    // A broken side in each sequence, and what it poisons.
    EXPECT_GT(poisoned, 3 * 24 + 10);
    EXPECT_GT(sound, 100);
}

TEST(MgcrSolver, KeepsTheCoefficientsOfASolutionThatALaterBasisLoses) {
    // The elements of A are so small that the second coefficient overflows; the next basis
    // begins with NaN, and one column of it was left.
    FTriDiagonalMatrix tiny = diffusionLine(3, 2.0F);
    tiny.Scale(1e-30F);
    RealVector large = wavyVector(3);
    large.MultiplyScalar(1e18F);
    const FTriDiagonalMatrix A = diffusionLine(3, 2.0F);
    for (const int maxIter : {2, 3, 4, 9}) {
        MgcrSolver solver(maxIter, 2, 100.0);
        PlainMgcr plain(maxIter, 2, 100.0);
        RealVector expected(3);
        plain.solve(tiny, large, expected);
        const auto lost = solver.Solve(tiny, large, start(RealVector(3)));
        const bool same = sameBitsOrNan(*lost, expected);
        // An eigenvector: one column is enough.
        expected = RealVector(3);
        plain.solve(A, RealVector(3, 64.0F), expected);

        const auto u = solver.Solve(A, RealVector(3, 64.0F), start(RealVector(3)));

        EXPECT_TRUE(same) << maxIter;
        EXPECT_TRUE(solver.converged()) << maxIter;
        EXPECT_FALSE(std::isfinite((*u)[1])) << maxIter;
        EXPECT_TRUE(sameBitsOrNan(*u, expected)) << maxIter;
    }
}

TEST(Quirk, MgcrStaleCoefficient) {
    // The second solve has one column, V0 = 9 e and V1 = e; y0 = 1 / 3 is its solution, and to
    // it comes y1 of the first solve.
    const FTriDiagonalMatrix A = diffusionLine(3, 2.0F);
    const FullMatrix triple = scaledIdentity(3, 3.0F);
    const RealVector b = vectorOf({0.0F, 9.0F, 0.0F});
    MgcrSolver solver(2, 20, 1e-6);
    PlainMgcr plain(2, 20, 1e-6);
    RealVector expected = wavyVector(3);
    plain.solve(A, wavyVector(3), expected);
    expected.Fill(0.0F);
    plain.solve(triple, b, expected);

    const auto clean = solver.Solve(triple, b, start(RealVector(3)));
    (void)solver.Solve(A, wavyVector(3), nullptr);
    const auto u = solver.Solve(triple, b, start(RealVector(3)));

    EXPECT_TRUE(sameVectorBits(*clean, vectorOf({0.0F, 3.0F, 0.0F})));
    EXPECT_TRUE(solver.converged());
    EXPECT_GT(std::abs((*u)[1] - 3.0F), 1e-3F);
    EXPECT_TRUE(sameVectorBits(*u, expected));
}

}  // namespace
}  // namespace orv
