#include "solvers/lanczos/tfqmr_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>

#include "algebra/matrix.h"
#include "base/rounding.h"
#include "support/lanczos_support.h"
#include "support/solver_runs.h"
#include "support/solver_systems.h"
#include "support/watching_matrix.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::expectMissesSolution;
using test::expectStopsLater;
using test::expectWrittenDown;
using test::makeOf;
using test::matrixOf;
using test::norm;
using test::PlainMethod;
using test::residual;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::vectorOf;
using test::wavyVector;
using test::windyPlane;

/// The method written down step by step.
Solved writtenDown(const Matrix& A, const RealVector& b, RealVector u, int maxIter,
                   double tol) {
    const int n = A.Rows();
    RealVector y = residual(A, b, u);
    if (norm(y) < tol) {
        return {u, false, 0};
    }
    const RealVector rTilde = y;
    RealVector w = y;
    RealVector d(n);
    RealVector v = *A.Multiply(u, nullptr);
    RealVector z = v;
    double rho = rTilde.Dot(y);
    double tau = norm(y);
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
            theta = norm(w) / tau;
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
        if (norm(y) < tol) {
            return {u, true, k};
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
    return {u, false, maxIter};
}

PlainMethod plainTfqmr() {
    return writtenDown;
}

TEST(TfqmrSolver, GivesTheBitsOfTheMethodWrittenDown) {
    expectWrittenDown(makeOf<TfqmrSolver>, plainTfqmr, {1, 2, 3, 8}, {7.0F, -1.0F});
}

TEST(TfqmrSolver, RaisesConvergedFarFromTheSolution) {
    TfqmrSolver ofPlane(100, 0.0001);
    expectMissesSolution(ofPlane, diffusionPlane(8, 6, 1.0F), wavyVector(48), true, 20.0);
    TfqmrSolver ofWindyPlane(100, 0.0001);
    expectMissesSolution(ofWindyPlane, windyPlane(8, 6, 1.0F), wavyVector(48), true, 20.0);
}

TEST(TfqmrSolver, StopsOnItsSearchVector) {
    expectStopsLater(makeOf<TfqmrSolver>, plainTfqmr, {100.0, 1.0, 0.01});
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
    const test::WatchingMatrix watched(
        matrixOf({{0.0F, 0.0F, 1.0F}, {1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}}));
    const RealVector b = vectorOf({2.0F, -1.0F, 0.0F});
    const RealVector u0 = vectorOf({-1.0F, 0.0F, 1.0F});
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
