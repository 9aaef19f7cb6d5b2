#include "solvers/lanczos/mr_solver.h"

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
using test::expectMissesSolution;
using test::expectWrittenDown;
using test::matrixOf;
using test::norm;
using test::PlainMatrix;
using test::residualNorm;
using test::sameVectorBits;
using test::Solved;
using test::start;
using test::vectorOf;
using test::wavyVector;

/// The rotations of the method: from alpha and the two norms to the factors of the updates.
struct Rotations {
    double xi = 0, xiOld = 0, c = 1, s = 0, e2 = 0, e3 = 0, f = 0, dBar = 0, rBar = 0, phi = 0;

    double next(int k, double alpha, double betaOld, double beta) {
        const double e3Old = e3;
        if (k == 1) {
            f = beta;
            dBar = alpha;
            xiOld = xi;
            phi = 1;
            rBar = std::sqrt(beta * beta + alpha * alpha);
            xi = betaOld / rBar;
            return (betaOld * alpha) / rBar;
        }
        c = dBar / rBar;
        s = betaOld / rBar;
        e2 = c * f + s * alpha;
        e3 = s * beta;
        dBar = s * f - c * alpha;
        f = -(beta * c);
        rBar = std::sqrt(dBar * dBar + beta * beta);
        const double newXi = -(e3Old * xiOld + e2 * xi) / rBar;
        xiOld = xi;
        xi = newXi;
        phi = s * phi;
        return (dBar * beta * phi) / rBar;
    }
};

/// The method written down step by step.
Solved writtenDown(const Matrix& A, const RealVector& b, RealVector u, int maxIter, double tol,
                   bool restricted) {
    const int n = A.Rows();
    RealVector v = restricted ? *A.Multiply(b, nullptr) : b;
    RealVector vOld(n);
    RealVector w(n);
    Rotations rotations;
    if (norm(v) < tol) {
        return {u, false, 0};
    }
    double beta = norm(v);
    v.DivideScalar(toFloat(beta));
    for (int k = 1; k <= maxIter; ++k) {
        RealVector t = *A.Multiply(v, nullptr);
        t.AddScaled(toFloat(-beta), vOld);
        const double alpha = v.Dot(t);
        t.AddScaled(toFloat(-alpha), v);
        const double betaOld = beta;
        beta = norm(t);
        vOld = v;
        v.SetScaled(toFloat(1 / beta), t);
        const double step = rotations.next(k, alpha, betaOld, beta);
        for (int i = 0; i < n; ++i) {
            // The third term of the update, -e3Old times a vector of zeros, has no effect.
            w[i] = toFloat(double{toFloat(-rotations.e2)} * double{w[i]} + double{v[i]});
            w[i] = w[i] / toFloat(rotations.rBar);
            u[i] = u[i] + toFloat(restricted ? rotations.xi : step) * w[i];
        }
        if (std::abs(beta) < tol) {
            return {u, true, k};
        }
    }
    return {u, false, maxIter};
}

TEST(MrSolver, KnowsItsRange) {
    EXPECT_FALSE(MrSolver(1, 0.1, /*rangeRestricted=*/false).rangeRestricted());
    EXPECT_TRUE(MrSolver(1, 0.1, /*rangeRestricted=*/true).rangeRestricted());
}

TEST(MrSolver, GivesTheBitsOfTheMethodWrittenDown) {
    for (const bool restricted : {false, true}) {
        SCOPED_TRACE(restricted);
        const auto make = [&](int maxIter, double tol) {
            return std::make_unique<MrSolver>(maxIter, tol, restricted);
        };
        const auto plain = [&](const Matrix& A, const RealVector& b, const RealVector& u,
                               int maxIter, double tol) {
            return writtenDown(A, b, u, maxIter, tol, restricted);
        };
        expectWrittenDown(make, [&] { return plain; }, {1, 2, 3, 4, 8, 15}, {0.0F, 7.0F});
    }
}

TEST(MrSolver, TakesTheStepsOfATwoByTwoSystem) {
    // A = (2 3; 3 5), b = (4, 0): alpha = 2, beta = 3, v = (0, 1), rBar = sqrt(13);
    // w = v / rBar and u = u0 + (4 2 / rBar) w. With restricted range the same vector is
    // A b for b = (20, -12), and the step is xi = 4 / rBar.
    const PlainMatrix A = matrixOf({{2.0F, 3.0F}, {3.0F, 5.0F}});
    const RealVector b = vectorOf({4.0F, 0.0F});
    const RealVector image = vectorOf({20.0F, -12.0F});
    const double root = std::sqrt(13.0);
    const float w = 1.0F / toFloat(root);

    const auto plain =
        MrSolver(1, 1e-9, /*rangeRestricted=*/false).Solve(A, b, start(RealVector(2, 1.0F)));
    const auto restricted =
        MrSolver(1, 1e-9, /*rangeRestricted=*/true).Solve(A, image, start(RealVector(2, 1.0F)));

    EXPECT_EQ((*plain)[0], 1.0F);
    EXPECT_EQ((*plain)[1], 1.0F + toFloat(8.0 / root) * w);
    EXPECT_EQ((*restricted)[0], 1.0F);
    EXPECT_EQ((*restricted)[1], 1.0F + toFloat(4.0 / root) * w);
}

TEST(MrSolver, DoesNotSolveDiffusionSystems) {
    for (const bool restricted : {false, true}) {
        SCOPED_TRACE(restricted);
        MrSolver ofLine(100, 0.0001, restricted);
        expectMissesSolution(ofLine, diffusionLine(40, 2.0F), RealVector(40), false, 20.0);
        MrSolver ofPlane(100, 0.0001, restricted);
        expectMissesSolution(ofPlane, diffusionPlane(8, 6, 1.0F), RealVector(48), false, 20.0);
    }
}

TEST(MrSolver, EndsAtTheStartTestForZeroData) {
    const FTriDiagonalMatrix A = diffusionLine(7, 1.0F);
    for (const bool restricted : {false, true}) {
        MrSolver solver(9, 0.0001, restricted);

        const auto u = solver.Solve(A, RealVector(7), start(RealVector(7, 3.0F)));

        EXPECT_TRUE(sameVectorBits(*u, RealVector(7, 3.0F))) << restricted;
        EXPECT_FALSE(solver.converged()) << restricted;
    }
}

TEST(MrSolver, TestsTheVectorThatItStartsFrom) {
    // b is below the tolerance and A b above, and then the other way round.
    const FullMatrix large(1, 1000.0F);
    const FullMatrix small(1, 0.001F);
    const RealVector b(1, 0.1F);

    for (const bool restricted : {false, true}) {
        const auto steep = MrSolver(1, 1.0, restricted).Solve(large, b, start(b));
        const auto flat = MrSolver(1, 0.01, restricted).Solve(small, b, start(b));

        EXPECT_EQ(sameVectorBits(*steep, b), !restricted) << restricted;
        EXPECT_EQ(sameVectorBits(*flat, b), restricted) << restricted;
    }
}

TEST(MrSolver, RaisesConvergedWithNanWhenTheKrylovSpaceEnds) {
    const FullMatrix A(1, 2.0F);
    for (const bool restricted : {false, true}) {
        MrSolver solver(9, 0.0001, restricted);

        const auto u = solver.Solve(A, RealVector(1, 8.0F), start(RealVector(1)));

        EXPECT_TRUE(std::isnan((*u)[0])) << restricted;
        EXPECT_TRUE(solver.converged()) << restricted;
    }
}

TEST(MrSolver, TestsTheLanczosNormStrictly) {
    // One unknown: beta is 0.
    for (const bool restricted : {false, true}) {
        SCOPED_TRACE(restricted);
        const auto make = [&](int maxIter, double tol) {
            return std::make_unique<MrSolver>(maxIter, tol, restricted);
        };
        test::expectStrictTest(make, FullMatrix(1, 2.0F), RealVector(1, 8.0F), 0.0);
    }
}

TEST(MrSolver, CountsIterationsOfItsOwnLoopOnly) {
    // Without a Solve between them, all calls of Iterate are a first iteration, or none is.
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    const RealVector b = wavyVector(9);
    MrSolver stays(0, 1e-9, /*rangeRestricted=*/false);
    MrSolver counts(1, 1e-9, /*rangeRestricted=*/false);
    const Solved two = writtenDown(A, b, b, 2, 1e-9, false);

    auto first = stays.Solve(A, b, nullptr);
    first = stays.Iterate(A, b, std::move(first));
    auto second = counts.Solve(A, b, nullptr);
    EXPECT_TRUE(sameVectorBits(*first, *second));
    first = stays.Iterate(A, b, std::move(first));
    second = counts.Iterate(A, b, std::move(second));

    EXPECT_TRUE(sameVectorBits(*second, two.u));
    EXPECT_FALSE(sameVectorBits(*first, two.u));
}

TEST(Quirk, MrStartKept) {
    // The updates are those of a zero start, whatever u holds; a null u holds b.
    const FTriDiagonalMatrix A = diffusionLine(9, 1.0F);
    const RealVector b = wavyVector(9);
    for (const bool restricted : {false, true}) {
        const auto fromZero = MrSolver(1, 1e-9, restricted).Solve(A, b, start(RealVector(9)));

        const auto fromOther =
            MrSolver(1, 1e-9, restricted).Solve(A, b, start(RealVector(9, 64.0F)));
        const auto fromNull = MrSolver(1, 1e-9, restricted).Solve(A, b, nullptr);

        for (int i = 0; i < 9; ++i) {
            EXPECT_EQ((*fromOther)[i], 64.0F + (*fromZero)[i]) << i;
            EXPECT_EQ((*fromNull)[i], b[i] + (*fromZero)[i]) << i;
        }
    }
}

TEST(Quirk, MrClearedDirection) {
    // Were the direction of two iterations ago used, iteration 3 of a solve would differ from
    // the method written down, whose update has no third term.
    const BandMatrix A = diffusionPlane(6, 5, 1.0F);
    const RealVector b = wavyVector(30);
    for (const int maxIter : {3, 4, 5}) {
        const Solved expected = writtenDown(A, b, b, maxIter, 1e-9, false);

        const auto u = MrSolver(maxIter, 1e-9, /*rangeRestricted=*/false).Solve(A, b, nullptr);

        EXPECT_TRUE(sameVectorBits(*u, expected.u)) << maxIter;
    }
}

TEST(Quirk, MrLanczosNorm) {
    // A small coupling ends the iteration after its first step, far from the solution.
    const PlainMatrix A = matrixOf({{2.0F, 0.001F}, {0.001F, 2.0F}});
    const RealVector b = vectorOf({4.0F, 0.0F});
    MrSolver above(50, 0.0009, /*rangeRestricted=*/false);
    MrSolver below(50, 0.0011, /*rangeRestricted=*/false);

    const auto u = below.Solve(A, b, start(RealVector(2)));
    const auto goesOn = above.Solve(A, b, start(RealVector(2)));

    EXPECT_TRUE(below.converged());
    EXPECT_GT(residualNorm(A, b, *u), 1.0);
    EXPECT_TRUE(sameVectorBits(*u, writtenDown(A, b, RealVector(2), 1, 1e-9, false).u));
    EXPECT_FALSE(sameVectorBits(*goesOn, *u));
}

}  // namespace
}  // namespace orv
