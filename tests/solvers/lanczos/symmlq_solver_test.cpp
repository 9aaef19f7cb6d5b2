#include "solvers/lanczos/symmlq_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <utility>

#include "algebra/matrix.h"
#include "base/rounding.h"
#include "support/direct_solution.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::directSolution;
using test::largestError;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::wavyVector;
using test::windyPlane;

/// What a solve gives: the solution, the flag and the iterations.
struct Outcome {
    RealVector u;
    bool converged;
    int iterations;
};

/// The method written down step by step; `zeta` goes on from solve to solve.
Outcome writtenDown(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol,
                    double& zeta) {
    const int n = A.Rows();
    RealVector r = b;
    RealVector t = *A.Multiply(u, nullptr);
    r.AddScaled(-1.0F, t);
    if (std::sqrt(r.SumOfSquares()) < tol) {
        return {u, false, 0};
    }
    const double beta1 = std::sqrt(r.SumOfSquares());
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
        t = *A.Multiply(v, nullptr);
        t.AddScaled(toFloat(-beta), vOld);
        const double alpha = v.Dot(t);
        t.AddScaled(toFloat(-alpha), v);
        beta = std::sqrt(t.SumOfSquares());
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

TEST(SymmlqSolver, SolvesSymmetricSystems) {
    for (const int n : {3, 9, 40, 200}) {
        const FTriDiagonalMatrix A = diffusionLine(n, 2.0F);
        const RealVector b = wavyVector(n);
        SymmlqSolver solver(200, 1e-3);

        const auto u = solver.Solve(A, b, start(RealVector(n)));

        EXPECT_TRUE(solver.converged()) << n;
        // The estimate leaves the rounding of u and of the recurrence out: twice the tolerance.
        EXPECT_LT(residualNorm(A, b, *u), 2e-3) << n;
        EXPECT_LT(largestError(*u, directSolution(A, b)), 2e-3) << n;
    }
    const BandMatrix plane = diffusionPlane(16, 12, 2.0F);
    const RealVector b = wavyVector(192);
    SymmlqSolver solver(200, 1e-3);

    const auto u = solver.Solve(plane, b, nullptr);

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(residualNorm(plane, b, *u), 2e-3);
    EXPECT_LT(largestError(*u, directSolution(plane, b)), 2e-3);
}

TEST(SymmlqSolver, SolvesIndefiniteSystems) {
    FTriDiagonalMatrix A = diffusionLine(30, 1.0F);
    for (int i = 0; i < 30; i += 3) {
        A.Set(i, i, -5.0F);
    }
    const RealVector b = wavyVector(30);
    SymmlqSolver solver(200, 1e-3);

    const auto u = solver.Solve(A, b, nullptr);

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(residualNorm(A, b, *u), 5e-3);
    EXPECT_LT(largestError(*u, directSolution(A, b)), 5e-3);
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
    const FTriDiagonalMatrix line = diffusionLine(25, 2.0F);
    const BandMatrix plane = diffusionPlane(5, 5, 1.0F);
    const BandMatrix windy = windyPlane(5, 5, 1.0F);
    const RealVector b = wavyVector(25);
    for (const Matrix* A :
         {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&plane),
          static_cast<const Matrix*>(&windy)}) {
        for (const int maxIter : {1, 2, 3, 8, 15}) {
            SymmlqSolver solver(maxIter, 1e-9);
            double zeta = 0.0;
            for (const float value : {0.0F, 7.0F}) {
                const RealVector u0(25, value);

                const Outcome expected = writtenDown(*A, b, u0, maxIter, 1e-9, zeta);

                EXPECT_TRUE(sameVectorBits(*solver.Solve(*A, b, start(u0)), expected.u))
                    << maxIter;
            }
        }
    }
}

TEST(SymmlqSolver, StopsOnItsEstimate) {
    const BandMatrix A = diffusionPlane(8, 6, 1.0F);
    const RealVector b = wavyVector(48);
    int last = 0;
    for (const double tol : {100.0, 10.0, 1.0, 0.1, 0.01}) {
        double zeta = 0.0;
        const Outcome expected = writtenDown(A, b, b, 60, tol, zeta);
        SymmlqSolver solver(60, tol);

        const auto u = solver.Solve(A, b, nullptr);

        EXPECT_TRUE(solver.converged()) << tol;
        EXPECT_TRUE(expected.converged) << tol;
        EXPECT_GT(expected.iterations, last) << tol;
        EXPECT_TRUE(sameVectorBits(*u, expected.u)) << tol;
        last = expected.iterations;
    }
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
    FullMatrix A(2, 1.0F);
    A.Set(0, 0, 4.0F);
    A.Set(1, 1, 4.0F);
    RealVector b(2);
    b[0] = 4.0F;
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
