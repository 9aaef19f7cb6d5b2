#include "solvers/gmres/gcr_solver.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "base/rounding.h"
#include "support/direct_solution.h"
#include "support/krylov_systems.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::allNan;
using test::diffusionLine;
using test::directSolution;
using test::dominantMatrix;
using test::KrylovSystem;
using test::krylovSystems;
using test::largestError;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::times;
using test::vectorOf;
using test::wavyVector;
using test::windyPlane;

/// The method written down once more, with all its memory from the start and no early end.
struct PlainGcr {
    int maxIter;
    int m;
    double tol;
    bool converged = false;

    static RealVector residual(const Matrix& A, const RealVector& b, const RealVector& u) {
        RealVector r = b;
        r.AddScaled(-1.0F, times(A, u));
        return r;
    }

    void solve(const Matrix& A, const RealVector& b, RealVector& u) {
        const std::size_t count = static_cast<std::size_t>(m);
        std::vector<RealVector> p(count + 1, RealVector(A.Rows()));
        std::vector<RealVector> ap(count, RealVector(A.Rows()));
        std::vector<double> d(count);
        converged = false;
        RealVector r = residual(A, b, u);
        if (std::sqrt(r.SumOfSquares()) < tol) {
            return;
        }
        p[0] = r;
        std::size_t j = 0;
        for (int it = 1; it <= maxIter; ++it) {
            ap[j] = times(A, p[j]);
            d[j] = ap[j].Dot(ap[j]);
            const double alpha = r.Dot(ap[j]) / d[j];
            u.AddScaled(toFloat(alpha), p[j]);
            r.AddScaled(-toFloat(alpha), ap[j]);
            if (std::sqrt(r.SumOfSquares()) < tol) {
                converged = true;
                return;
            }
            const RealVector t = times(A, r);
            p[j + 1] = r;
            for (std::size_t i = 0; i <= j; ++i) {
                p[j + 1].AddScaled(toFloat(-t.Dot(ap[i]) / d[i]), p[i]);
            }
            ++j;
            if (j == count) {
                r = residual(A, b, u);
                p[0] = r;
                j = 0;
            }
        }
    }
};

TEST(GcrSolver, SolvesAllSystemsWithAndWithoutRestarts) {
    for (const int m : {2, 5, 100}) {
        GcrSolver solver(200, m, 0.005);
        for (const KrylovSystem& system : krylovSystems()) {
            const auto u =
                solver.Solve(*system.A, system.b, start(RealVector(system.b.size())));

            EXPECT_TRUE(solver.converged()) << system.name << ", m = " << m;
            // A tenth more leaves room for the rounding of float vectors; eigenvalues are 1
            // and more.
            EXPECT_LT(residualNorm(*system.A, system.b, *u), 0.0055) << system.name << m;
            EXPECT_LT(largestError(*u, directSolution(*system.A, system.b)), 0.0055)
                << system.name << ", m = " << m;
        }
    }
}

TEST(GcrSolver, GivesTheBitsOfThePlainMethodFromSolveToSolve) {
    for (const int m : {2, 3, 6, 17, 40}) {
        for (const int maxIter : {0, 1, 2, 5, 16, 40}) {
            GcrSolver solver(maxIter, m, 0.001);
            PlainGcr plain{maxIter, m, 0.001};
            for (const KrylovSystem& system : krylovSystems()) {
                RealVector expected = system.b;
                plain.solve(*system.A, system.b, expected);

                const auto u = solver.Solve(*system.A, system.b, nullptr);

                EXPECT_TRUE(sameVectorBits(*u, expected)) << system.name << m << maxIter;
                EXPECT_EQ(solver.converged(), plain.converged) << system.name << m << maxIter;
            }
        }
    }
}

TEST(GcrSolver, MakesTwoStepsByHand) {
    // A = (1 1; 0 1) by rows, b = (2, 2), u = 0. p0 = (2, 2), A p0 = (4, 2), alpha = 12 / 20:
    // u = (1.2, 1.2), r = (-0.4, 0.8). A r = (0.4, 0.8), so p1 = r - (3.2 / 20) p0 =
    // (-0.72, 0.48) and A p1 = (-0.24, 0.48), alpha = 0.48 / 0.288: u = (0, 2).
    FullMatrix A(2, 0.0F);
    A.Set(0, 0, 1.0F);
    A.Set(1, 0, 1.0F);
    A.Set(1, 1, 1.0F);
    GcrSolver one(1, 5, 1e-5);
    GcrSolver two(2, 5, 1e-5);

    const auto first = one.Solve(A, RealVector(2, 2.0F), start(RealVector(2)));
    const auto second = two.Solve(A, RealVector(2, 2.0F), start(RealVector(2)));

    EXPECT_FLOAT_EQ((*first)[0], 1.2F);
    EXPECT_FLOAT_EQ((*first)[1], 1.2F);
    EXPECT_FALSE(one.converged());
    EXPECT_NEAR((*second)[0], 0.0, 1e-6);
    EXPECT_FLOAT_EQ((*second)[1], 2.0F);
    EXPECT_TRUE(two.converged());
}

TEST(GcrSolver, StartsAgainFromTheTrueResidualAfterMDirections) {
    const BandMatrix A = windyPlane(5, 4, 1.0F);
    const RealVector b = wavyVector(20);
    GcrSolver three(3, 3, 1e-9);
    auto expected = three.Solve(A, b, nullptr);
    expected = three.Solve(A, b, std::move(expected));
    GcrSolver six(6, 3, 1e-9);

    EXPECT_TRUE(sameVectorBits(*six.Solve(A, b, nullptr), *expected));
}

TEST(GcrSolver, ReturnsASolvedStartWithConvergedLow) {
    GcrSolver solver(50, 5, 0.0001);
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector solution(5, 3.0F);

    const auto u = solver.Solve(A, solution, start(solution));
    const auto zero = solver.Solve(A, RealVector(5), nullptr);

    EXPECT_TRUE(sameVectorBits(*u, solution));
    EXPECT_TRUE(sameVectorBits(*zero, RealVector(5)));
    EXPECT_FALSE(solver.converged());
}

TEST(GcrSolver, StartsFromTheRightHandSideWhenNoStartIsGiven) {
    const BandMatrix A = windyPlane(4, 3, 1.0F);
    const RealVector b = wavyVector(12);
    GcrSolver solver(2, 5, 1e-12);

    const auto fromNull = solver.Solve(A, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(b))));
    EXPECT_FALSE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(RealVector(12)))));
}

TEST(GcrSolver, ReturnsTheStartWithoutIterations) {
    for (const int maxIter : {0, -1, INT_MIN}) {
        GcrSolver solver(maxIter, 5, 0.0001);

        const auto u = solver.Solve(diffusionLine(4, 1.0F), wavyVector(4), nullptr);

        EXPECT_TRUE(sameVectorBits(*u, wavyVector(4))) << maxIter;
        EXPECT_FALSE(solver.converged()) << maxIter;
    }
}

TEST(GcrSolver, LiftsFewerThanTwoDirectionsToTwo) {
    const FullMatrix A = dominantMatrix(20);
    GcrSolver two(7, 2, 1e-9);
    const auto expected = two.Solve(A, wavyVector(20), nullptr);
    for (const int m : {INT_MIN, -1, 0, 1, 2}) {
        GcrSolver solver(7, m, 1e-9);

        EXPECT_EQ(solver.directions(), 2) << m;
        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, wavyVector(20), nullptr), *expected)) << m;
    }
}

TEST(GcrSolver, ConvergesInLittleMemoryWithLimitsOfAnySize) {
    GcrSolver solver(INT_MAX, INT_MAX, 0.005);
    const FTriDiagonalMatrix A = diffusionLine(40, 2.0F);

    const auto u = solver.Solve(A, wavyVector(40), nullptr);
    const int made = solver.directionsMade();
    (void)solver.Solve(A, wavyVector(40), nullptr);

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(largestError(*u, directSolution(A, wavyVector(40))), 0.0055);
    EXPECT_LE(made, 42);
    EXPECT_EQ(solver.directionsMade(), made);
}

TEST(GcrSolver, LetsAZeroImageThroughAsNan) {
    // d_0 = 0 and r . ap_0 = 0.
    GcrSolver solver(INT_MAX, INT_MAX, 0.0001);
    const FullMatrix zero(3, 0.0F);

    const auto lost = solver.Solve(zero, wavyVector(3), nullptr);
    const bool low = !solver.converged();
    const int made = solver.directionsMade();
    const auto found = solver.Solve(dominantMatrix(3), wavyVector(3), start(RealVector(3)));

    PlainGcr plain{9, 9, 0.0001};
    RealVector expected = wavyVector(3);
    plain.solve(zero, wavyVector(3), expected);
    EXPECT_TRUE(allNan(expected));
    EXPECT_TRUE(allNan(*lost));
    EXPECT_TRUE(low);
    EXPECT_LE(made, 2);
    // What was lost does not stay in the solver.
    EXPECT_LT(largestError(*found, directSolution(dominantMatrix(3), wavyVector(3))), 1e-4);
}

TEST(GcrSolver, BreaksDownWhenTheResidualIsOrthogonalToItsImage) {
    // A turns by a right angle: r . A r = 0, so the first step is 0, and p_1 is p_0 up to a
    // vector that A takes to 0.
    FullMatrix A(2, 0.0F);
    A.Set(1, 0, -1.0F);
    A.Set(0, 1, 1.0F);
    GcrSolver solver(6, 6, 1e-4);

    const auto u = solver.Solve(A, vectorOf({3.0F, 4.0F}), start(RealVector(2)));

    EXPECT_TRUE(allNan(*u));
    EXPECT_FALSE(solver.converged());
}

}  // namespace
}  // namespace orv
