#include "solvers/stationary/jacobi_solver.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::sameVectorBits;
using test::start;
using test::wavyVector;

/// Counts the products.
class CountingJacobiSolver : public JacobiSolver {
  public:
    using JacobiSolver::JacobiSolver;
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override {
        ++products;
        return JacobiSolver::Iterate(A, b, std::move(u));
    }
    int products = 0;
};

TEST(JacobiSolver, GivesTheStartBackWithoutIterations) {
    const RealVector before = wavyVector(7);
    for (const int maxIter : {0, -3}) {
        JacobiSolver solver(maxIter, 0.0001);

        const auto u = solver.Solve(diffusionLine(7, 1.0F), RealVector(7, 2.0F), start(before));

        EXPECT_TRUE(sameVectorBits(*u, before)) << maxIter;
        EXPECT_EQ(solver.Solve(diffusionLine(7, 1.0F), before, nullptr), nullptr);
    }
}

TEST(JacobiSolver, DoesNotDependOnTheLimitOrTheStart) {
    const FTriDiagonalMatrix A = diffusionLine(7, 1.0F);
    const RealVector b = wavyVector(7);
    JacobiSolver once(1, 0.0001);
    JacobiSolver often(100, 0.0001);

    const auto u = once.Solve(A, b, start(RealVector(7, 5.0F)));

    EXPECT_TRUE(sameVectorBits(*u, *often.Solve(A, b, start(RealVector(7, -9.0F)))));
    EXPECT_TRUE(sameVectorBits(*u, *often.Solve(A, b, /*rebuild=*/true, nullptr)));
    EXPECT_FALSE(often.converged());
}

TEST(JacobiSolver, MultipliesAsOftenAsTheLimitSays) {
    CountingJacobiSolver solver(23, 1e30);

    (void)solver.Solve(diffusionLine(7, 1.0F), wavyVector(7), nullptr);

    EXPECT_EQ(solver.products, 23);
}

TEST(JacobiSolver, ServesSystemsOfChangingOrder) {
    JacobiSolver solver(2, 0.0001);
    for (const int n : {4, 9, 1, 9}) {
        const FTriDiagonalMatrix A = diffusionLine(n, 1.0F);

        const auto u = solver.Solve(A, wavyVector(n), nullptr);

        EXPECT_TRUE(sameVectorBits(*u, *A.Multiply(wavyVector(n), nullptr)));
    }
}

TEST(Quirk, JacobiProduct) {
    // [2 -1; -1 2] times (1, 0) is (2, -1); a sweep from zero would give (0.5, 0).
    FullMatrix A(2, -1.0F);
    A.Set(0, 0, 2.0F);
    A.Set(1, 1, 2.0F);
    RealVector b(2);
    b[0] = 1.0F;
    JacobiSolver solver(10, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(2)));

    EXPECT_EQ((*u)[0], 2.0F);
    EXPECT_EQ((*u)[1], -1.0F);
}

}  // namespace
}  // namespace orv
