#include "solvers/gradient/cgs_ls_shifted_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <vector>

#include "solvers/gradient/cgs_ls_solver.h"
#include "support/direct_solution.h"
#include "support/gradient_support.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::dominantMatrix;
using test::expectSameAsPlain;
using test::largestError;
using test::norm;
using test::product;
using test::residual;
using test::residualNorm;
using test::sameVectorBits;
using test::shiftedSolution;
using test::Solved;
using test::start;
using test::transposedProduct;
using test::wavyVector;
using test::windyPlane;

Solved plainShifted(const Matrix& A, const RealVector& b, RealVector u, int maxIter,
                    double tol) {
    const double shift = 0.2;
    RealVector r = b;
    RealVector s = product(A, u);
    r.AddScaled(-1.0F, s);
    if (norm(r) < tol) {
        return {u, false};
    }
    s = transposedProduct(A, r);
    s.AddScaled(static_cast<float>(-shift), u);
    RealVector p = s;
    double gamma = s.Dot(s);
    for (int it = 0; it < maxIter; ++it) {
        const RealVector q = product(A, p);
        const double alpha = gamma / (q.Dot(q) + shift * p.Dot(p));
        u.AddScaled(static_cast<float>(alpha), p);
        r.AddScaled(static_cast<float>(-alpha), q);
        s = transposedProduct(A, r);
        s.AddScaled(static_cast<float>(-shift), u);
        if (norm(r) < tol) {
            return {u, true};
        }
        const double gammaNew = s.Dot(s);
        const double beta = gammaNew / gamma;
        gamma = gammaNew;
        p.ScaleAdd(static_cast<float>(beta), s);
    }
    return {u, false};
}

TEST(CgsLsShiftedSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<CgsLsShiftedSolver>(plainShifted, 1e-3);
}

TEST(CgsLsShiftedSolver, StopsAtItsToleranceAsTheRecurrenceDoes) {
    // A tolerance that the unshifted residual comes below on some of the systems.
    expectSameAsPlain<CgsLsShiftedSolver>(plainShifted, 20.0);
}

TEST(CgsLsShiftedSolver, SolvesTheSystemOfTikhonov) {
    const FTriDiagonalMatrix line = diffusionLine(40, 2.0F);
    const BandMatrix plane = diffusionPlane(7, 5, 3.0F);
    const BandMatrix windy = windyPlane(6, 4, 1.0F);
    const FullMatrix dense = dominantMatrix(12);
    for (const double shift : {0.2, 3.0}) {
        for (const Matrix* const A :
             std::initializer_list<const Matrix*>{&line, &plane, &windy}) {
            const RealVector b = wavyVector(A->Rows());
            CgsLsShiftedSolver solver(50, 1e-4);
            solver.SetShift(shift);

            const auto u = solver.Solve(*A, b, start(RealVector(A->Rows())));

            // Rounding of samples up to 60, amplified by the squared condition number.
            EXPECT_LT(largestError(*u, shiftedSolution(*A, b, shift)), 1e-3)
                << A->Rows() << ", " << shift;
        }
        CgsLsShiftedSolver few(6, 1e-4);
        few.SetShift(shift);
        EXPECT_LT(largestError(*few.Solve(dense, wavyVector(12), nullptr),
                               shiftedSolution(dense, wavyVector(12), shift)),
                  1e-4)
            << shift;
    }
}

TEST(CgsLsShiftedSolver, GoesOnIntoNanOnceTheNormalResidualIsZero) {
    // A = 1, b = 8: 2 u = 8 in one step, r = 4 and s = 4 - 1 4 = 0.
    const FullMatrix A(1, 1.0F);
    CgsLsShiftedSolver one(1, 0.0001);
    CgsLsShiftedSolver two(2, 0.0001);
    one.SetShift(1.0);
    two.SetShift(1.0);

    EXPECT_EQ((*one.Solve(A, RealVector(1, 8.0F), start(RealVector(1))))[0], 4.0F);
    EXPECT_TRUE(std::isnan((*two.Solve(A, RealVector(1, 8.0F), start(RealVector(1))))[0]));
    EXPECT_FALSE(two.converged());
}

TEST(CgsLsShiftedSolver, IsTheLeastSquaresFormWithAShiftOfZero) {
    const BandMatrix A = windyPlane(6, 4, 1.0F);
    const RealVector b = wavyVector(24);
    for (const int maxIter : {1, 5, 100}) {
        CgsLsShiftedSolver shifted(maxIter, 0.0001);
        shifted.SetShift(0.0);
        CgsLsSolver plain(maxIter, 0.0001);

        const auto u = shifted.Solve(A, b, nullptr);

        EXPECT_TRUE(sameVectorBits(*u, *plain.Solve(A, b, nullptr))) << maxIter;
        EXPECT_EQ(shifted.converged(), plain.converged()) << maxIter;
    }
}

TEST(CgsLsShiftedSolver, TakesAShiftBetweenSolvesAndKeepsIt) {
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    const RealVector b = wavyVector(9);
    CgsLsShiftedSolver solver(6, 0.0001);
    EXPECT_EQ(solver.shift(), 0.2);
    const auto byDefault = solver.Solve(A, b, nullptr);

    solver.SetShift(0.7);
    const auto changed = solver.Solve(A, b, nullptr);
    const auto kept = solver.Solve(A, b, nullptr);
    solver.SetShift(0.2);
    const auto back = solver.Solve(A, b, nullptr);

    EXPECT_FALSE(sameVectorBits(*changed, *byDefault));
    EXPECT_TRUE(sameVectorBits(*kept, *changed));
    EXPECT_TRUE(sameVectorBits(*back, *byDefault));
    EXPECT_EQ(solver.tol(), 0.0001);
    EXPECT_EQ(solver.maxIter(), 6);
}

TEST(CgsLsShiftedSolver, DampsTheSolution) {
    // A = 2, b = 8: 4 u + shift u = 16.
    const FullMatrix A(1, 2.0F);
    CgsLsShiftedSolver solver(1, 0.0001);
    solver.SetShift(4.0);

    const auto u = solver.Solve(A, RealVector(1, 8.0F), start(RealVector(1)));

    EXPECT_EQ((*u)[0], 2.0F);
}

TEST(Quirk, ShiftedUnshiftedTest) {
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);
    const RealVector b = wavyVector(9);
    CgsLsShiftedSolver solver(30, 0.0001);

    const auto u = solver.Solve(A, b, nullptr);

    // The shifted system is solved, the loop doesn't notice.
    EXPECT_LT(largestError(*u, shiftedSolution(A, b, 0.2)), 1e-3);
    EXPECT_FALSE(solver.converged());
    EXPECT_GT(residualNorm(A, b, *u), 1.0);

    // A residual below the tolerance ends it far from that solution: A = 1, u = 8 / 1.25.
    CgsLsShiftedSolver loose(30, 8.0);
    loose.SetShift(0.25);
    const FullMatrix one(1, 1.0F);
    const auto early = loose.Solve(one, RealVector(1, 8.0F), start(RealVector(1)));

    EXPECT_TRUE(loose.converged());
    EXPECT_EQ((*early)[0], 6.4F);
}

}  // namespace
}  // namespace orv
