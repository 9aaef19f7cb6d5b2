#include "solvers/bicg/qmr_cg_stab_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "support/bicg_support.h"
#include "support/solver_systems.h"
#include "support/watching_matrix.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::directSolution;
using test::expectTranscribed;
using test::largestError;
using test::matrixOf;
using test::norm;
using test::PlainMatrix;
using test::plus;
using test::product;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::sumOf;
using test::vectorOf;
using test::WatchingMatrix;
using test::wavyVector;

constexpr QmrCgStabStep kSteps[] = {QmrCgStabStep::MinimalResidual,
                                    QmrCgStabStep::NormQuotient};

// The column (1, 1) makes r = (1, 0) to s = (0, -1), which the column (0, 2) makes to t = (0, -2):
// alpha = 1, thetaTilde = 1, c^2 = 1 / 2, xTilde = (0.5, 0).
PlainMatrix twoSteps() {
    return matrixOf({{1.0F, 0.0F}, {1.0F, 2.0F}});
}

RealVector transcribed(QmrCgStabStep step, const Matrix& A, const RealVector& b,
                       const RealVector& begin, int iterations) {
    const int n = b.size();
    RealVector u = begin;
    RealVector r = plus(b, -1.0, product(A, u));
    const RealVector rTilde = r;
    double alpha = 1.0;
    double rho = 1.0;
    double omega = 1.0;
    double tau = norm(r);
    double theta = 0.0;
    double eta = 0.0;
    RealVector p(n);
    RealVector v(n);
    RealVector d(n);
    for (int it = 0; it < iterations; ++it) {
        const double rhoNew = rTilde.Dot(r);
        const double beta = (rhoNew * alpha) / (rho * omega);
        rho = rhoNew;
        p = sumOf({{beta, p}, {1.0, r}, {-(beta * omega), v}});
        v = product(A, p);
        alpha = rho / rTilde.Dot(v);
        const RealVector s = plus(r, -alpha, v);

        const double thetaTilde = norm(s) / tau;
        double c = 1.0 / std::sqrt(thetaTilde * thetaTilde + 1.0);
        const double tauTilde = c * thetaTilde * tau;
        const double etaTilde = c * c * alpha;
        const RealVector dTilde = plus(p, theta * theta * eta / alpha, d);
        const RealVector xTilde = plus(u, etaTilde, dTilde);

        const RealVector t = product(A, s);
        if (step == QmrCgStabStep::NormQuotient) {
            omega = norm(s) / s.Dot(t);
        } else {
            omega = static_cast<double>(static_cast<float>(s.Dot(t))) / t.SumOfSquares();
        }
        r = plus(s, -omega, t);

        theta = norm(r) / tauTilde;
        c = 1.0 / std::sqrt(theta * theta + 1.0);
        tau = tauTilde * theta * c;
        eta = c * c * omega;
        d = plus(s, thetaTilde * thetaTilde * etaTilde / omega, dTilde);
        u = plus(xTilde, eta, d);
    }
    return u;
}

TEST(QmrCgStabSolver, SolvesTheSweepWithinAFittingLimitButNeverSaysSo) {
    for (const test::NamedSystem& system : test::sweepSystems()) {
        const RealVector b = wavyVector(system.A->Rows());
        // Small and dominated systems are solved sooner, and more iterations would end as NaN.
        const int n = system.A->Rows();
        QmrCgStabSolver solver(n == 3 ? 4 : (n == 20 ? 6 : 20), 0.001,
                               QmrCgStabStep::MinimalResidual);

        const auto u = solver.Solve(*system.A, b, nullptr);

        EXPECT_FALSE(solver.converged()) << system.name;
        EXPECT_LT(residualNorm(*system.A, b, *u), 0.002) << system.name;
        EXPECT_LT(largestError(*u, directSolution(*system.A, b)), 0.0005) << system.name;
    }
}

TEST(QmrCgStabSolver, FollowsItsFormulasToTheBit) {
    for (const QmrCgStabStep step : kSteps) {
        expectTranscribed(
            [&](int maxIter, double tol) {
                return std::make_unique<QmrCgStabSolver>(maxIter, tol, step);
            },
            [&](const Matrix& A, const RealVector& b, const RealVector& u, int iterations) {
                return transcribed(step, A, b, u, iterations);
            });
    }
}

TEST(QmrCgStabSolver, RaisesConvergedWhenTheResidualVanishes) {
    // omega = 2 / 4 makes r = 0: d = (0, -1) + (1, 0), u = (0.5, 0) + 0.5 d.
    for (const QmrCgStabStep step : kSteps) {
        const WatchingMatrix A(twoSteps());
        QmrCgStabSolver solver(50, 1e-9, step);

        const auto u = solver.Solve(A, vectorOf({1.0F, 0.0F}), start(RealVector(2)));

        EXPECT_TRUE(sameVectorBits(*u, vectorOf({1.0F, -0.5F})));
        EXPECT_TRUE(solver.converged());
        EXPECT_EQ(A.products(), 3);

        (void)solver.Solve(A, RealVector(2), start(RealVector(2)));
        EXPECT_FALSE(solver.converged());
    }
}

TEST(QmrCgStabSolver, RaisesConvergedWhenTheResidualIsTinyBesideTheStep) {
    // A third unknown on its own: s = -2 e and r = s - 0.5 * 3 s = e there, 0 elsewhere. With
    // theta = sqrt(2) e, 1 + theta^2 is 1 in double for e = 2^-30, and tau is |r|; for e = 2^-20
    // it isn't.
    const PlainMatrix A =
        matrixOf({{1.0F, 0.0F, 0.0F}, {1.0F, 2.0F, 0.0F}, {0.0F, 0.0F, 3.0F}});
    const auto converges = [&](float e) {
        QmrCgStabSolver solver(1, 0.0, QmrCgStabStep::MinimalResidual);
        (void)solver.Solve(A, vectorOf({1.0F, 0.0F, e}), start(RealVector(3)));
        return solver.converged();
    };

    EXPECT_TRUE(converges(std::ldexp(1.0F, -30)));
    EXPECT_FALSE(converges(std::ldexp(1.0F, -20)));
}

TEST(QmrCgStabSolver, EndsAsNanWithALimitFarBeyondItsNeed) {
    const FTriDiagonalMatrix A = diffusionLine(40, 2.0F);
    QmrCgStabSolver solver(200, 0.001, QmrCgStabStep::MinimalResidual);

    const auto u = solver.Solve(A, wavyVector(40), nullptr);

    EXPECT_TRUE(std::isnan(u->Sum()));
    EXPECT_FALSE(solver.converged());
}

TEST(Quirk, QmrcgstabOwnTest) {
    // The tolerance is the start norm itself: every later residual is below it, and none ends the
    // run. A tolerance just above it ends the solve before the first iteration.
    const FTriDiagonalMatrix A = diffusionLine(20, 1.0F);
    const RealVector b = wavyVector(20);
    for (const QmrCgStabStep step : kSteps) {
        const WatchingMatrix counted(A);
        const double startNorm = norm(b);
        QmrCgStabSolver below(9, startNorm, step);
        QmrCgStabSolver above(9, std::nextafter(startNorm, 1e9), step);

        const auto u = below.Solve(counted, b, start(RealVector(20)));

        EXPECT_LT(residualNorm(A, b, *u), 0.1 * startNorm);
        EXPECT_FALSE(below.converged());
        EXPECT_EQ(counted.products(), 1 + 2 * 9);
        EXPECT_TRUE(sameVectorBits(*above.Solve(A, b, start(RealVector(20))), RealVector(20)));
    }
}

TEST(Quirk, Qmrcgstab2Step) {
    // With b = (2, 0), |s| / (s.t) is 2 / 8 where the minimal residual step is 8 / 16, so that
    // r = (0, -1) stays. theta^2 = 1 / 2, c^2 = 2 / 3, eta = 1 / 6, d = (0, -2) + 2 (2, 0),
    // u = (1, 0) + d / 6.
    const RealVector b = vectorOf({2.0F, 0.0F});
    QmrCgStabSolver quotient(1, 0.0, QmrCgStabStep::NormQuotient);
    QmrCgStabSolver minimal(1, 0.0, QmrCgStabStep::MinimalResidual);

    const auto u = quotient.Solve(twoSteps(), b, start(RealVector(2)));

    EXPECT_FLOAT_EQ((*u)[0], 1.0F + 4.0F / 6.0F);
    EXPECT_FLOAT_EQ((*u)[1], -1.0F / 3.0F);
    EXPECT_FALSE(quotient.converged());
    EXPECT_TRUE(sameVectorBits(*minimal.Solve(twoSteps(), b, start(RealVector(2))),
                               vectorOf({2.0F, -1.0F})));
}

}  // namespace
}  // namespace orv
