#include "solvers/lanczos/tfqmr_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>

#include "algebra/matrix.h"
#include "base/rounding.h"
#include "support/direct_solution.h"
#include "support/solver_systems.h"
#include "support/watching_matrix.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::directSolution;
using test::dominantMatrix;
using test::largestError;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::wavyVector;
using test::windyPlane;

/// What a solve gives: the solution, the flag, the iterations and the search vector.
struct Outcome {
    RealVector u;
    bool converged;
    int iterations;
    RealVector y;
};

/// The method written down step by step.
Outcome writtenDown(const Matrix& A, const RealVector& b, RealVector u, int maxIter,
                    double tol) {
    const int n = A.Rows();
    RealVector y = b;
    y.AddScaled(-1.0F, *A.Multiply(u, nullptr));
    if (std::sqrt(y.SumOfSquares()) < tol) {
        return {u, false, 0, y};
    }
    const RealVector rTilde = y;
    RealVector w = y;
    RealVector d(n);
    RealVector v = *A.Multiply(u, nullptr);
    RealVector z = v;
    double rho = rTilde.Dot(y);
    double tau = std::sqrt(y.SumOfSquares());
    double theta = 0;
    double eta = 0;
    for (int k = 1; k <= maxIter; ++k) {
        const double sigma = rTilde.Dot(z);
        if (sigma == 0) {
            continue;
        }
        const double rhoOld = rho;
        const double alpha = rhoOld / sigma;
        y.AddScaled(toFloat(-alpha), z);
        for (int half = 0; half < 2; ++half) {
            if (half == 1) {
                v = *A.Multiply(y, nullptr);
            }
            w.AddScaled(toFloat(-alpha), v);
            const double thetaOld = theta;
            theta = std::sqrt(w.SumOfSquares()) / tau;
            const double c = 1 / std::sqrt(theta * theta + 1);
            tau = theta * tau * c;
            const double etaOld = eta;
            eta = c * c * alpha;
            const float ofD = toFloat(etaOld * thetaOld * thetaOld / alpha);
            for (int i = 0; i < n; ++i) {
                d[i] = ofD * d[i] + y[i];
                u[i] = u[i] + toFloat(eta) * d[i];
            }
        }
        if (std::sqrt(y.SumOfSquares()) < tol) {
            return {u, true, k, y};
        }
        rho = rTilde.Dot(w);
        if (rhoOld == 0) {
            continue;
        }
        const double beta = rho / rhoOld;
        for (int i = 0; i < n; ++i) {
            y[i] = toFloat(beta) * y[i] + w[i];
            z[i] = toFloat(double{toFloat(beta * beta)} * double{z[i]} +
                           double{toFloat(beta)} * double{v[i]});
        }
        v = *A.Multiply(y, nullptr);
        z.Add(v);
    }
    return {u, false, maxIter, y};
}

TEST(TfqmrSolver, GivesTheBitsOfTheMethodWrittenDown) {
    const FTriDiagonalMatrix line = diffusionLine(25, 2.0F);
    const BandMatrix plane = diffusionPlane(5, 5, 1.0F);
    const BandMatrix windy = windyPlane(5, 5, 1.0F);
    const FullMatrix dense = dominantMatrix(25);
    const RealVector b = wavyVector(25);
    for (const Matrix* A :
         {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&plane),
          static_cast<const Matrix*>(&windy), static_cast<const Matrix*>(&dense)}) {
        for (const int maxIter : {1, 2, 3, 8}) {
            TfqmrSolver solver(maxIter, 1e-9);
            for (const RealVector& u0 : {b, RealVector(25, 7.0F), RealVector(25, -1.0F)}) {
                const Outcome expected = writtenDown(*A, b, u0, maxIter, 1e-9);

                EXPECT_TRUE(sameVectorBits(*solver.Solve(*A, b, start(u0)), expected.u))
                    << maxIter;
            }
        }
    }
}

TEST(TfqmrSolver, RaisesConvergedFarFromTheSolution) {
    const BandMatrix plane = diffusionPlane(8, 6, 1.0F);
    const BandMatrix windy = windyPlane(8, 6, 1.0F);
    for (const Matrix* A :
         {static_cast<const Matrix*>(&plane), static_cast<const Matrix*>(&windy)}) {
        const RealVector b = wavyVector(48);
        TfqmrSolver solver(100, 0.0001);

        const auto u = solver.Solve(*A, b, nullptr);

        EXPECT_TRUE(solver.converged());
        EXPECT_GT(residualNorm(*A, b, *u), residualNorm(*A, b, b));
        EXPECT_GT(largestError(*u, directSolution(*A, b)), 20.0);
    }
}

TEST(TfqmrSolver, StopsOnItsSearchVector) {
    const BandMatrix A = diffusionPlane(8, 6, 1.0F);
    const RealVector b = wavyVector(48);
    int last = 0;
    for (const double tol : {100.0, 1.0, 0.01}) {
        const Outcome expected = writtenDown(A, b, b, 60, tol);
        TfqmrSolver solver(60, tol);

        const auto u = solver.Solve(A, b, nullptr);

        EXPECT_TRUE(solver.converged()) << tol;
        EXPECT_TRUE(expected.converged) << tol;
        EXPECT_LT(std::sqrt(expected.y.SumOfSquares()), tol);
        EXPECT_GT(expected.iterations, last) << tol;
        EXPECT_TRUE(sameVectorBits(*u, expected.u)) << tol;
        last = expected.iterations;
    }
}

TEST(TfqmrSolver, TakesTwoHalfStepsOnASystemOfOneUnknown) {
    // A = 2, b = 6, u = 1: y = rTilde = w = 4, v = z = 2, sigma = 8, rho = 16, alpha = 2.
    // y = 0, w = 0: theta = 0, c = 1, tau = 0, eta = 2, d = 0: u stays; then theta = 0 / 0.
    // The iteration ends there, with one product of its two.
    const test::WatchingMatrix A(FullMatrix(1, 2.0F));
    TfqmrSolver solver(3, 0.0001);

    const auto u = solver.Solve(A, RealVector(1, 6.0F), start(RealVector(1, 1.0F)));

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_TRUE(solver.converged());
    EXPECT_EQ(A.products(), 2 + 1);
}

TEST(TfqmrSolver, LeavesTheIterationAfterItsHalfStepsWhenRhoWasZero) {
    // A moves the unit vectors on, e1 to e2 to e3 to e1. From u = (-1, 0, 1): rTilde = e1,
    // z = (1, -1, 0), alpha = 1, y = e2, w = e2 - e3, so that rho = 0; then sigma = -1 and
    // alpha = 0, which the second iteration divides by. It makes one product, not two.
    FullMatrix A(3, 0.0F);
    A.Set(0, 1, 1.0F);
    A.Set(1, 2, 1.0F);
    A.Set(2, 0, 1.0F);
    RealVector b(3);
    b[0] = 2.0F;
    b[1] = -1.0F;
    RealVector u0(3);
    u0[0] = -1.0F;
    u0[2] = 1.0F;
    const test::WatchingMatrix watched(A);
    TfqmrSolver solver(4, 0.0001);

    const auto u = solver.Solve(watched, b, start(u0));

    EXPECT_EQ(watched.products(), 2 + 2 + 3);
    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(solver.converged());
}

TEST(Quirk, TfqmrStartImage) {
    // z = A u in place of A y: a zero start vector ends every iteration at its first test.
    const test::WatchingMatrix A(diffusionLine(9, 1.0F));
    const RealVector zero(9);
    TfqmrSolver solver(20, 0.0001);

    const auto u = solver.Solve(A, wavyVector(9), start(zero));

    EXPECT_TRUE(sameVectorBits(*u, zero));
    EXPECT_FALSE(solver.converged());
    EXPECT_EQ(A.products(), 2);
}

}  // namespace
}  // namespace orv
