#include "solvers/lanczos/symmlq_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>

#include "algebra/matrix.h"
#include "base/rounding.h"
#include "support/lanczos_support.h"
#include "support/solver_runs.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::expectSolves;
using test::expectStopsLater;
using test::expectWrittenDown;
using test::makeOf;
using test::matrixOf;
using test::norm;
using test::PlainMatrix;
using test::PlainMethod;
using test::product;
using test::residual;
using test::residualNorm;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::vectorOf;
using test::wavyVector;
using test::windyPlane;

/// The method written down step by step; `zeta` goes on from solve to solve.
Solved writtenDown(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol,
                   double& zeta) {
    const int n = A.Rows();
    RealVector r = residual(A, b, u);
    if (norm(r) < tol) {
        return {u, false, 0};
    }
    const double beta1 = norm(r);
    RealVector v = r;
    v.DivideScalar(toFloat(beta1));
    double beta = 0;
    double gamma = 0;
    double c = -1;
    double s = 0;
    double rhs = beta1;
    RealVector vOld(n);
    RealVector wBar = v;
    for (int k = 1; k <= maxIter; ++k) {
        RealVector t = product(A, v);
        t.AddScaled(toFloat(-beta), vOld);
        const double alpha = v.Dot(t);
        t.AddScaled(toFloat(-alpha), v);
        beta = norm(t);
        vOld = v;
        v = t;
        v.DivideScalar(toFloat(beta));
        const double x = alpha * s - gamma * c;
        const double y = beta * s;
        const double g = -gamma * s - alpha * c;
        gamma = beta * c;
        const double rot = std::sqrt(beta * beta + g * g);
        c = g / rot;
        s = beta / rot;
        const double zetaBar = rhs - x * zeta;
        rhs = -(y * zeta);
        zeta = zetaBar / rot;
        for (int i = 0; i < n; ++i) {
            u[i] = toFloat(double{u[i]} + double{toFloat(zeta * c)} * double{wBar[i]} +
                           double{toFloat(zeta * s)} * double{v[i]});
            wBar[i] = toFloat(double{toFloat(s)} * double{wBar[i]} +
                              double{toFloat(-c)} * double{v[i]});
        }
        if (std::sqrt(zetaBar * zetaBar + rhs * rhs) < tol) {
            return {u, true, k};
        }
    }
    return {u, false, maxIter};
}

/// The solves of one solver.
PlainMethod plainSymmlq() {
    return [zeta = 0.0](const Matrix& A, const RealVector& b, RealVector u, int maxIter,
                        double tol) mutable {
        return writtenDown(A, b, std::move(u), maxIter, tol, zeta);
    };
}

TEST(SymmlqSolver, SolvesSymmetricSystems) {
    // The estimate leaves the rounding of u and of the recurrence out: twice the tolerance.
    for (const int n : {3, 9, 40, 200}) {
        SymmlqSolver solver(200, 1e-3);
        expectSolves(solver, diffusionLine(n, 2.0F), RealVector(n), 2e-3, 2e-3);
    }
    SymmlqSolver solver(200, 1e-3);
    expectSolves(solver, diffusionPlane(16, 12, 2.0F), wavyVector(192), 2e-3, 2e-3);
}

TEST(SymmlqSolver, SolvesIndefiniteSystems) {
    FTriDiagonalMatrix A = diffusionLine(30, 1.0F);
    for (int i = 0; i < 30; i += 3) {
        A.Set(i, i, -5.0F);
    }
    SymmlqSolver solver(200, 1e-3);

    expectSolves(solver, A, wavyVector(30), 5e-3, 5e-3);
}

TEST(SymmlqSolver, DoesNotSolveSystemsWithoutSymmetry) {
    const BandMatrix A = windyPlane(8, 6, 1.0F);
    const RealVector b = wavyVector(48);
    SymmlqSolver solver(200, 1e-3);

    const auto u = solver.Solve(A, b, nullptr);

    EXPECT_FALSE(solver.converged());
    EXPECT_GT(residualNorm(A, b, *u), 1.0);
}

TEST(SymmlqSolver, GivesTheBitsOfTheMethodWrittenDown) {
    expectWrittenDown(makeOf<SymmlqSolver>, plainSymmlq, {1, 2, 3, 8, 15}, {0.0F, 7.0F});
}

TEST(SymmlqSolver, StopsOnItsEstimate) {
    expectStopsLater(makeOf<SymmlqSolver>, plainSymmlq, {100.0, 10.0, 1.0, 0.1, 0.01});
}

TEST(SymmlqSolver, TestsItsEstimateInDoubleAndStrictly) {
    // A = (3 4; 4 0), b = (5, 0): alpha = 3, beta = 4, rot = 5, zeta = 1, gamma = -4; then
    // x = 4 c and beta = 0, so that the estimate of the second step is x. c is 3/5 in double.
    const PlainMatrix A = matrixOf({{3.0F, 4.0F}, {4.0F, 0.0F}});
    const RealVector b = vectorOf({5.0F, 0.0F});
    const double estimate = 4.0 * (3.0 / 5.0);
    SymmlqSolver at(2, estimate);
    SymmlqSolver above(2, std::nextafter(estimate, 3.0));

    (void)at.Solve(A, b, start(RealVector(2)));
    (void)above.Solve(A, b, start(RealVector(2)));

    EXPECT_FALSE(at.converged());
    EXPECT_TRUE(above.converged());
}

TEST(SymmlqSolver, FillsASystemOfOneUnknownWithNan) {
    FullMatrix A(1, 2.0F);
    SymmlqSolver solver(5, 0.0001);

    const auto u = solver.Solve(A, RealVector(1, 8.0F), start(RealVector(1)));

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(solver.converged());
}

TEST(SymmlqSolver, FillsWithNanAndTrustsItsEstimateWhenTheKrylovSpaceEnds) {
    // A = (4 1; 1 4), b = (4, 0): zeta = 4 / sqrt(17) and x = 8 / sqrt(17), so that the second
    // step, whose beta is 0, estimates 32 / 17 = 1.88.
    const PlainMatrix A = matrixOf({{4.0F, 1.0F}, {1.0F, 4.0F}});
    const RealVector b = vectorOf({4.0F, 0.0F});
    SymmlqSolver above(5, 1.9);
    SymmlqSolver below(5, 1.8);

    const auto trusted = above.Solve(A, b, start(RealVector(2)));
    const auto refused = below.Solve(A, b, start(RealVector(2)));

    EXPECT_TRUE(above.converged());
    EXPECT_TRUE(std::isnan((*trusted)[0]));
    EXPECT_FALSE(below.converged());
    EXPECT_TRUE(std::isnan((*refused)[0]));
}

TEST(SymmlqSolver, GivesTheSameBitsInEverySolveWhileItsNumbersStayFinite) {
    const BandMatrix A = diffusionPlane(8, 6, 1.0F);
    SymmlqSolver solver(7, 1e-9);
    const auto first = solver.Solve(A, wavyVector(48), nullptr);

    EXPECT_TRUE(sameVectorBits(*solver.Solve(A, wavyVector(48), nullptr), *first));
}

TEST(Quirk, SymmlqZetaStays) {
    // The breakdown of the 1 x 1 system leaves a NaN that no later start clears, not even one
    // of another size.
    FullMatrix one(1, 2.0F);
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    SymmlqSolver broken(20, 1e-3);
    SymmlqSolver fresh(20, 1e-3);
    (void)broken.Solve(one, RealVector(1, 8.0F), start(RealVector(1)));

    const auto u = broken.Solve(A, wavyVector(9), nullptr);
    const auto healthy = fresh.Solve(A, wavyVector(9), nullptr);

    EXPECT_TRUE(std::isnan((*u)[0]));
    EXPECT_FALSE(broken.converged());
    EXPECT_LT(residualNorm(A, wavyVector(9), *healthy), 2e-3);
}

}  // namespace
}  // namespace orv
