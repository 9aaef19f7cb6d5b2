#include "solvers/lanczos/minres_solver.h"

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

/// The method written down step by step; w goes on from solve to solve.
Outcome writtenDown(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol,
                    RealVector& w) {
    const int n = A.Rows();
    RealVector r = b;
    RealVector t = *A.Multiply(u, nullptr);
    r.AddScaled(-1.0F, t);
    if (std::sqrt(r.SumOfSquares()) < tol) {
        return {u, false, 0};
    }
    double eta = std::sqrt(r.SumOfSquares());
    RealVector v = r;
    v.DivideScalar(toFloat(eta));
    double beta = 0;
    double gamma = 0;
    double c = -1;
    double s = 0;
    RealVector vOld(n);
    RealVector p(n);
    RealVector q = v;
    for (int k = 1; k <= maxIter; ++k) {
        t = *A.Multiply(v, nullptr);
        t.AddScaled(toFloat(-beta), vOld);
        const double alpha = v.Dot(t);
        t.AddScaled(toFloat(-alpha), v);
        beta = std::sqrt(t.SumOfSquares());
        vOld = v;
        v = t;
        v.DivideScalar(toFloat(beta));
        const double y = beta * s;
        const double g = -gamma * s - alpha * c;
        gamma = beta * c;
        const double rot = std::sqrt(beta * beta + g * g);
        c = g / rot;
        s = beta / rot;
        q = w;
        for (int i = 0; i < n; ++i) {
            w[i] = v[i] + toFloat(-y) * p[i];
            p[i] = q[i] / toFloat(rot);
            u[i] = u[i] + toFloat(eta * c) * p[i];
        }
        eta = eta * s;
        if (std::abs(eta) < tol) {
            return {u, true, k};
        }
    }
    return {u, false, maxIter};
}

TEST(MinresSolver, GivesTheBitsOfTheMethodWrittenDown) {
    const FTriDiagonalMatrix line = diffusionLine(25, 2.0F);
    const BandMatrix plane = diffusionPlane(5, 5, 1.0F);
    const BandMatrix windy = windyPlane(5, 5, 1.0F);
    const RealVector b = wavyVector(25);
    for (const Matrix* A :
         {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&plane),
          static_cast<const Matrix*>(&windy)}) {
        for (const int maxIter : {1, 2, 3, 8, 15}) {
            MinresSolver solver(maxIter, 1e-9);
            RealVector w(25);
            for (const float value : {0.0F, 7.0F, -1.0F}) {
                const RealVector u0(25, value);

                const Outcome expected = writtenDown(*A, b, u0, maxIter, 1e-9, w);

                EXPECT_TRUE(sameVectorBits(*solver.Solve(*A, b, start(u0)), expected.u))
                    << maxIter << " from " << value;
            }
        }
    }
}

TEST(MinresSolver, RaisesConvergedFarFromTheSolution) {
    const FTriDiagonalMatrix line = diffusionLine(40, 2.0F);
    const BandMatrix plane = diffusionPlane(8, 6, 1.0F);
    for (const Matrix* A :
         {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&plane)}) {
        const RealVector b = wavyVector(A->Rows());
        MinresSolver solver(100, 0.0001);

        const auto u = solver.Solve(*A, b, nullptr);

        EXPECT_TRUE(solver.converged());
        // Worse than the start vector, whose part along the first Lanczos vector is missing.
        EXPECT_GT(residualNorm(*A, b, *u), residualNorm(*A, b, b));
        EXPECT_GT(largestError(*u, directSolution(*A, b)), 20.0);
    }
}

TEST(MinresSolver, StopsOnTheProductOfItsSines) {
    const BandMatrix A = diffusionPlane(8, 6, 1.0F);
    const RealVector b = wavyVector(48);
    int last = 0;
    for (const double tol : {100.0, 10.0, 1.0, 0.1, 0.01}) {
        RealVector w(48);
        const Outcome expected = writtenDown(A, b, b, 60, tol, w);
        MinresSolver solver(60, tol);

        const auto u = solver.Solve(A, b, nullptr);

        EXPECT_TRUE(solver.converged()) << tol;
        EXPECT_TRUE(expected.converged) << tol;
        EXPECT_GT(expected.iterations, last) << tol;
        EXPECT_TRUE(sameVectorBits(*u, expected.u)) << tol;
        last = expected.iterations;
    }
}

TEST(MinresSolver, EndsASystemOfOneUnknownAtItsStartVector) {
    // beta = 0 makes eta = 0, which is below every positive tolerance, after an iteration that
    // adds nothing.
    FullMatrix A(1, 2.0F);
    MinresSolver solver(5, 0.0001);

    const auto u = solver.Solve(A, RealVector(1, 8.0F), start(RealVector(1, 3.0F)));

    EXPECT_TRUE(solver.converged());
    EXPECT_EQ((*u)[0], 3.0F);
}

TEST(Quirk, MinresLostVector) {
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    const RealVector b = wavyVector(9);
    const RealVector u0(9, 2.0F);

    const auto one = MinresSolver(1, 1e-9).Solve(A, b, start(u0));
    const auto many = MinresSolver(4, 1e-9).Solve(A, b, start(RealVector(9)));

    EXPECT_TRUE(sameVectorBits(*one, u0));
    // Started from zero, the first Lanczos vector is along b: u stays orthogonal to it.
    EXPECT_GT(many->SumOfSquares(), 1.0);
    EXPECT_NEAR(many->Dot(b), 0.0, 1e-5 * std::sqrt(many->SumOfSquares() * b.SumOfSquares()));
}

TEST(Quirk, MinresKeptDirection) {
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    const RealVector b = wavyVector(9);
    MinresSolver solver(3, 1e-9);
    const auto first = solver.Solve(A, b, nullptr);

    const auto second = solver.Solve(A, b, nullptr);
    (void)solver.Solve(diffusionLine(8, 1.0F), wavyVector(8), nullptr);
    const auto afterOtherSize = solver.Solve(A, b, nullptr);

    EXPECT_FALSE(sameVectorBits(*second, *first));
    EXPECT_TRUE(sameVectorBits(*afterOtherSize, *first));
    // A breakdown stays as well, until the size changes.
    const FullMatrix one(1, 2.0F);
    MinresSolver broken(1, 1e-9);
    EXPECT_EQ((*broken.Solve(one, RealVector(1, 8.0F), start(RealVector(1))))[0], 0.0F);
    EXPECT_TRUE(std::isnan((*broken.Solve(one, RealVector(1, 8.0F), start(RealVector(1))))[0]));
    EXPECT_TRUE(sameVectorBits(*broken.Solve(A, b, nullptr), b));
}

}  // namespace
}  // namespace orv
