#include "solvers/lanczos/qmr_solver.h"

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

using test::diagonal;
using test::diffusionLine;
using test::diffusionPlane;
using test::directSolution;
using test::dominantMatrix;
using test::expectStrictTest;
using test::expectWrittenDown;
using test::largestError;
using test::makeOf;
using test::matrixOf;
using test::norm;
using test::PlainMatrix;
using test::residual;
using test::residualNorm;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::vectorOf;
using test::wavyVector;
using test::windyPlane;

/// y = a y + b x in one rounding.
void combine(RealVector& y, double a, double b, const RealVector& x) {
    for (int i = 0; i < y.size(); ++i) {
        y[i] = toFloat(double{toFloat(a)} * double{y[i]} + double{toFloat(b)} * double{x[i]});
    }
}

/// The iteration written down step by step.
struct Steps {
    const Matrix& A;
    RealVector u, r, v, w, p, q, d, s;
    double rho, xi, gamma = 1, theta = 0, epsilon = 0, eta = -1;

    Steps(const Matrix& matrix, const RealVector& b, const RealVector& u0)
        : A(matrix), u(u0), r(residual(matrix, b, u0)), v(r), w(r), p(b), q(b), d(b), s(b) {
        rho = norm(r);
        xi = rho;
    }

    void next(int k) {
        if (rho == 0 || xi == 0) {
            return;
        }
        v.DivideScalar(toFloat(rho));
        w.DivideScalar(toFloat(xi));
        const double delta = v.Dot(w);
        if (delta == 0) {
            return;
        }
        const double ofP = -(delta * xi / epsilon);
        const double ofQ = -(delta * rho / epsilon);
        for (int i = 0; i < u.size(); ++i) {
            p[i] = k == 1 ? v[i] : toFloat(ofP) * p[i] + v[i];
            q[i] = k == 1 ? w[i] : toFloat(ofQ) * q[i] + w[i];
        }
        const RealVector pTilde = *A.Multiply(p, nullptr);
        epsilon = q.Dot(pTilde);
        const double beta = epsilon / delta;
        if (epsilon == 0 || beta == 0) {
            return;
        }
        const double rhoOld = rho;
        RealVector tilde = pTilde;
        tilde.AddScaled(toFloat(-beta), v);
        rho = norm(tilde);
        tilde = *A.MultiplyTransposed(q, nullptr);
        tilde.AddScaled(toFloat(-beta), w);
        xi = norm(tilde);
        step(k, beta, rhoOld, pTilde);
    }

    void step(int k, double beta, double rhoOld, const RealVector& pTilde) {
        const double thetaOld = theta;
        const double gammaOld = gamma;
        theta = rho / (gammaOld * beta);
        gamma = 1 / std::sqrt(theta * theta + 1);
        if (gamma == 0) {
            return;
        }
        eta = -(gamma * eta * gamma * rhoOld) / ((gammaOld * beta) * gammaOld);
        const double h = (gamma * thetaOld) * (gamma * thetaOld);
        if (k == 1) {
            d.SetScaled(toFloat(eta), p);
            s.SetScaled(toFloat(eta), pTilde);
        } else {
            combine(d, h, eta, p);
            combine(s, h, eta, pTilde);
        }
        u.Add(d);
        r.AddScaled(-1.0F, s);
    }
};

/// The solution and the recurred residual after `iterations` of them.
Steps writtenDown(const Matrix& A, const RealVector& b, const RealVector& u, int iterations) {
    Steps steps(A, b, u);
    for (int k = 1; k <= iterations; ++k) {
        steps.next(k);
    }
    return steps;
}

TEST(QmrSolver, GivesTheBitsOfTheMethodWrittenDown) {
    const auto plain = [](const Matrix& A, const RealVector& b, const RealVector& u,
                          int maxIter, double /*tol*/) -> Solved {
        return {writtenDown(A, b, u, maxIter).u, false, maxIter};
    };
    expectWrittenDown(makeOf<QmrSolver>, [&] { return plain; }, {1, 2, 3, 6}, {0.0F, 7.0F});
}

TEST(QmrSolver, ImprovesTheStartVectorOnceAndStalls) {
    const BandMatrix plane = diffusionPlane(8, 6, 1.0F);
    const BandMatrix windy = windyPlane(8, 6, 1.0F);
    for (const Matrix* A :
         {static_cast<const Matrix*>(&plane), static_cast<const Matrix*>(&windy)}) {
        const RealVector b = wavyVector(48);
        const auto one = QmrSolver(1, 0.0001).Solve(*A, b, nullptr);
        QmrSolver solver(100, 0.0001);

        const auto u = solver.Solve(*A, b, nullptr);

        EXPECT_LT(residualNorm(*A, b, *one), 0.5 * residualNorm(*A, b, b));
        EXPECT_FALSE(solver.converged());
        EXPECT_GT(residualNorm(*A, b, *u), residualNorm(*A, b, *one));
        EXPECT_GT(largestError(*u, directSolution(*A, b)), 10.0);
    }
}

TEST(QmrSolver, SolvesAMultipleOfTheIdentityInOneIteration) {
    // r = (6, 8), v = w = (0.6, 0.8), epsilon = 2, so that rho becomes 0, gamma 1, eta 5 and
    // d = (3, 4).
    const DiagonalMatrix A = diagonal({2.0F, 2.0F});
    const RealVector b = vectorOf({6.0F, 8.0F});
    QmrSolver solver(5, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(2)));

    EXPECT_TRUE(solver.converged());
    EXPECT_NEAR((*u)[0], 3.0F, 1e-6);
    EXPECT_NEAR((*u)[1], 4.0F, 1e-6);
}

TEST(QmrSolver, StopsOnTheRecurredResidual) {
    const FullMatrix A = dominantMatrix(12);
    const RealVector b = wavyVector(12);

    expectStrictTest(makeOf<QmrSolver>, A, b, norm(writtenDown(A, b, RealVector(12), 1).r));
}

TEST(QmrSolver, CarriesTheRecurredResidualOn) {
    // One of the few systems whose residual is smallest in a later iteration, the fourth.
    const PlainMatrix A =
        matrixOf({{-3.0F, 0.0F, 3.0F}, {-1.0F, 0.0F, 1.0F}, {3.0F, 3.0F, 1.0F}});
    const RealVector b = vectorOf({-3.0F, -1.0F, 2.0F});
    const auto normAfter = [&](int iterations) {
        return norm(writtenDown(A, b, RealVector(3), iterations).r);
    };
    const double left = normAfter(4);
    for (const int before : {0, 1, 2, 3}) {
        ASSERT_GT(normAfter(before), 1.01 * left) << before;
    }
    QmrSolver at(4, left);
    QmrSolver above(4, std::nextafter(left, HUGE_VAL));

    (void)at.Solve(A, b, start(RealVector(3)));
    (void)above.Solve(A, b, start(RealVector(3)));

    EXPECT_FALSE(at.converged());
    EXPECT_TRUE(above.converged());
}

TEST(QmrSolver, ReturnsTheStartAfterEveryIterationWhenDeltaIsZero) {
    // The norm of r exceeds the range of a float, so v and w become zero.
    const FTriDiagonalMatrix A = diffusionLine(4, 1.0F);
    const RealVector b(4, 3e38F);
    const test::WatchingMatrix watched(A);
    QmrSolver solver(7, 0.0001);

    const auto u = solver.Solve(watched, b, start(RealVector(4)));

    EXPECT_TRUE(sameVectorBits(*u, RealVector(4)));
    EXPECT_FALSE(solver.converged());
    EXPECT_EQ(watched.products(), 1);
}

TEST(QmrSolver, ReturnsTheStartWhenTheResidualIsZeroAndTheToleranceToo) {
    const FTriDiagonalMatrix A = diffusionLine(4, 1.0F);
    const RealVector solution(4, 3.0F);
    QmrSolver solver(7, 0.0);

    const auto u = solver.Solve(A, solution, start(solution));

    EXPECT_TRUE(sameVectorBits(*u, solution));
    EXPECT_FALSE(solver.converged());
}

TEST(QmrSolver, LeavesTheIterationOfAZeroEpsilonAndDividesByItInTheNext) {
    // r.A r = 0 for A = diag(1, -1) and r = (1, 1). The iteration ends before its second
    // product.
    const DiagonalMatrix A = diagonal({1.0F, -1.0F});
    const test::WatchingMatrix watched(A);
    const RealVector b(2, 1.0F);
    const RealVector zero(2);
    QmrSolver once(1, 0.0001);
    QmrSolver twice(2, 0.0001);

    const auto after1 = once.Solve(watched, b, start(zero));
    const auto after2 = twice.Solve(A, b, start(zero));

    EXPECT_TRUE(sameVectorBits(*after1, zero));
    EXPECT_FALSE(once.converged());
    EXPECT_EQ(watched.products(), 2);
    EXPECT_TRUE(std::isnan((*after2)[0]));
    EXPECT_FALSE(twice.converged());
}

TEST(QmrSolver, KeepsAnExactSolutionToTheLimit) {
    // Solved in the first iteration; as 0 isn't below 0 the others find rho zero.
    const test::WatchingMatrix watched(diagonal({2.0F, 2.0F}));
    const RealVector b = vectorOf({4.0F, 0.0F});
    QmrSolver solver(10, 0.0);

    const auto u = solver.Solve(watched, b, start(RealVector(2)));

    EXPECT_EQ((*u)[0], 2.0F);
    EXPECT_EQ((*u)[1], 0.0F);
    EXPECT_FALSE(solver.converged());
    EXPECT_EQ(watched.products(), 3);
}

TEST(QmrSolver, LeavesTheIterationWhenOneOfItsTwoNormsIsZero) {
    // A = (2 0; 1 2) moves (1, 0) and its transpose keeps its direction: rho = 1, xi = 0,
    // theta = 1/2, gamma^2 = 1 / 1.25, eta = 1.6. The transpose has rho = 0, xi = 1, eta = 2.
    const PlainMatrix A = matrixOf({{2.0F, 0.0F}, {1.0F, 2.0F}});
    const PlainMatrix transposed = matrixOf({{2.0F, 1.0F}, {0.0F, 2.0F}});
    const RealVector b = vectorOf({4.0F, 0.0F});
    for (const bool swapped : {false, true}) {
        const test::WatchingMatrix watched(swapped ? transposed : A);
        QmrSolver solver(10, 0.0);

        const auto u = solver.Solve(watched, b, start(RealVector(2)));

        EXPECT_NEAR((*u)[0], swapped ? 2.0F : 1.6F, 1e-6);
        EXPECT_EQ((*u)[1], 0.0F);
        EXPECT_FALSE(solver.converged());
        EXPECT_EQ(watched.products(), 3);
    }
}

TEST(Quirk, QmrShrinkingVectors) {
    // With refreshed Lanczos vectors a symmetric definite 3 x 3 system is solved in three
    // iterations.
    const FTriDiagonalMatrix A = diffusionLine(3, 1.0F);
    const RealVector b = wavyVector(3);
    QmrSolver solver(3, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(3)));

    EXPECT_FALSE(solver.converged());
    EXPECT_GT(residualNorm(A, b, *u), 1.0);
    EXPECT_TRUE(sameVectorBits(*u, writtenDown(A, b, RealVector(3), 3).u));
}

}  // namespace
}  // namespace orv
