#include "solvers/gradient/cgi_solver.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/gradient_support.h"

namespace orv {
namespace {

using test::diagonal;
using test::diffusionLine;
using test::diffusionPlane;
using test::directSolution;
using test::expectSameAsPlain;
using test::isFinite;
using test::largestError;
using test::norm;
using test::product;
using test::residualNorm;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::vectorOf;
using test::wavyVector;

/// `lowersFirst` is the recurrence as it was meant, with a third term.
template <bool lowersFirst>
Solved plainCgi(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol) {
    RealVector r = b;
    RealVector v = product(A, b);
    RealVector vOld(b.size());
    bool first = true;
    double sigma = 0.0;
    for (int it = 0; it < maxIter; ++it) {
        RealVector w = product(A, v);
        const double sigmaOld = sigma;
        sigma = std::sqrt(w.Dot(v));
        const double alpha = r.Dot(v) / (sigma * sigma);
        u.AddScaled(static_cast<float>(alpha), v);
        r.AddScaled(static_cast<float>(-alpha), w);
        if (norm(r) < tol) {
            return {u, true};
        }
        const double ratio = first ? 0.0 : sigma / sigmaOld;
        const double beta = w.Dot(w) / (sigma * sigma);
        w.ScaleAddScaled2(static_cast<float>(1.0 / sigma), static_cast<float>(-(beta / sigma)),
                          v, static_cast<float>(-ratio), vOld);
        vOld = v;
        v = w;
        first = !lowersFirst;
    }
    return {u, false};
}

TEST(CgiSolver, FollowsItsRecurrenceToTheBit) {
    expectSameAsPlain<CgiSolver>(plainCgi<false>, 1e-3);
}

TEST(CgiSolver, SolvesWhatTwoDirectionsSolve) {
    // Two different eigenvalues; the third term would act from the third direction on.
    const DiagonalMatrix A = diagonal({2.0F, 5.0F, 2.0F, 5.0F});
    const RealVector b = vectorOf({2.0F, 5.0F, 4.0F, -5.0F});
    CgiSolver solver(2, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(4)));

    EXPECT_TRUE(solver.converged());
    test::expectNear(*u, {1.0, 1.0, 2.0, -1.0}, 1e-5);
}

TEST(CgiSolver, DoesNotSolveDiffusionLinesAndPlanes) {
    const FTriDiagonalMatrix line = diffusionLine(40, 2.0F);
    const BandMatrix plane = diffusionPlane(16, 12, 4.0F);
    for (const Matrix* const A :
         {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&plane)}) {
        const RealVector b = wavyVector(A->Rows());
        CgiSolver solver(500, 0.0001);

        const auto u = solver.Solve(*A, b, start(RealVector(A->Rows())));

        EXPECT_FALSE(solver.converged());
        EXPECT_TRUE(isFinite(*u));
        EXPECT_GT(residualNorm(*A, b, *u), 0.1 * norm(b));
        EXPECT_GT(largestError(*u, directSolution(*A, b)), 1.0);
    }
}

TEST(CgiSolver, BreaksDownWhereTheMatrixIsNegative) {
    // v = A b = (1, 2), w.v = 1 - 8: the root of a negative number.
    const DiagonalMatrix A = diagonal({1.0F, -2.0F});
    const RealVector b = vectorOf({1.0F, -1.0F});
    CgiSolver solver(4, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(2)));

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_TRUE(std::isnan((*u)[1]));
    EXPECT_FALSE(solver.converged());
}

TEST(CgiSolver, HasNoTestOnTheStart) {
    // b is below the tolerance, and the iteration is made all the same.
    const FullMatrix A(1, 2.0F);
    CgiSolver solver(9, 10.0);

    const auto u = solver.Solve(A, RealVector(1, 4.0F), start(RealVector(1)));

    EXPECT_EQ((*u)[0], 2.0F);
    EXPECT_TRUE(solver.converged());
}

TEST(CgiSolver, RepeatsItselfAfterASolveOfFiniteDirections) {
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);
    CgiSolver solver(6, 0.0001);
    CgiSolver fresh(6, 0.0001);
    (void)solver.Solve(diffusionLine(9, 7.0F), RealVector(9, 5.0F), nullptr);

    const auto u = solver.Solve(A, wavyVector(9), nullptr);

    EXPECT_TRUE(sameVectorBits(*u, *fresh.Solve(A, wavyVector(9), nullptr)));
}

TEST(Quirk, CgiStartResidual) {
    // A = 2, b = 4: the step is 2 from any start, and the test sees the residual of a start
    // of 0.
    const FullMatrix A(1, 2.0F);
    const RealVector b(1, 4.0F);
    CgiSolver solver(9, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(1, 10.0F)));

    EXPECT_EQ((*u)[0], 12.0F);
    EXPECT_TRUE(solver.converged());
    EXPECT_EQ(residualNorm(A, b, *u), 20.0);
}

TEST(Quirk, CgiFirstRatio) {
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);
    const RealVector b = wavyVector(9);
    CgiSolver solver(12, 0.01);

    const auto u = solver.Solve(A, b, start(RealVector(9)));

    // With its third term the method is right.
    const Solved meant = plainCgi<true>(A, b, RealVector(9), 12, 0.01);
    EXPECT_TRUE(meant.converged);
    EXPECT_LT(residualNorm(A, b, meant.u), 0.02);
    EXPECT_FALSE(solver.converged());
    EXPECT_GT(residualNorm(A, b, *u), 10.0);
}

TEST(Quirk, CgiOldDirection) {
    const FTriDiagonalMatrix good = diffusionLine(2, 1.0F);
    const RealVector b = vectorOf({1.0F, -3.0F});
    CgiSolver solver(3, 1e-12);
    CgiSolver fresh(3, 1e-12);
    (void)solver.Solve(diagonal({1.0F, -2.0F}), b, nullptr);

    const auto spoilt = solver.Solve(good, b, nullptr);
    (void)solver.Solve(diffusionLine(3, 1.0F), RealVector(3, 1.0F), nullptr);
    const auto replaced = solver.Solve(good, b, nullptr);

    EXPECT_TRUE(std::isnan((*spoilt)[0]));
    EXPECT_TRUE(isFinite(*replaced));
    EXPECT_TRUE(sameVectorBits(*replaced, *fresh.Solve(good, b, nullptr)));
}

}  // namespace
}  // namespace orv
