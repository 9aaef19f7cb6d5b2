#include "solvers/stationary/gauss_seidel_solver.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/solver_systems.h"

namespace orv {
namespace {

using test::denseSolve;
using test::diffusionLine;
using test::dominantMatrix;
using test::largestError;
using test::sameVectorBits;
using test::start;
using test::wavyVector;

/// Counts the sweeps.
class CountingGaussSeidelSolver : public GaussSeidelSolver {
  public:
    using GaussSeidelSolver::GaussSeidelSolver;
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override {
        ++sweeps;
        return GaussSeidelSolver::Iterate(A, b, std::move(u));
    }
    int sweeps = 0;
};

TEST(GaussSeidelSolver, GivesTheStartBackWithoutIterations) {
    const RealVector before = wavyVector(7);
    for (const int maxIter : {0, -3}) {
        GaussSeidelSolver solver(maxIter, 0.0001);

        const auto u = solver.Solve(diffusionLine(7, 1.0F), RealVector(7, 2.0F), start(before));

        EXPECT_TRUE(sameVectorBits(*u, before)) << maxIter;
        EXPECT_EQ(solver.Solve(diffusionLine(7, 1.0F), before, nullptr), nullptr);
    }
}

TEST(GaussSeidelSolver, ApproachesTheSolution) {
    for (const int n : {1, 2, 9, 40}) {
        const RealVector b = wavyVector(n);
        const FTriDiagonalMatrix line = diffusionLine(n, 2.0F);
        const FullMatrix dense = dominantMatrix(n);
        for (const Matrix* const A :
             {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&dense)}) {
            GaussSeidelSolver solver(200, 0.0001);

            const auto u = solver.Solve(*A, b, nullptr);

            // Sweeps stall within a few units of the last place of values up to 100.
            EXPECT_LT(largestError(*u, denseSolve(*A, b)), 1e-4) << n;
        }
    }
}

TEST(GaussSeidelSolver, SweepsOnFromAnExactSolution) {
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector solution(5, 3.0F);  // rows sum to 1, so b equals u
    CountingGaussSeidelSolver solver(23, 1e30);

    const auto u = solver.Solve(A, solution, start(solution));

    EXPECT_EQ(solver.sweeps, 23);
    EXPECT_FALSE(solver.converged());
    EXPECT_LT(largestError(*u, std::vector<double>(5, 3.0)), 1e-5);
}

TEST(GaussSeidelSolver, WorksInThePassedVector) {
    auto u = start(RealVector(5));
    const RealVector* const address = u.get();
    GaussSeidelSolver solver(3, 0.0001);

    u = solver.Solve(diffusionLine(5, 1.0F), wavyVector(5), std::move(u));

    EXPECT_EQ(u.get(), address);
}

TEST(GaussSeidelSolver, SweepsInPlaceInRisingOrder) {
    // Rows (4, 1) and (2, 5): u0 = 8 / 4 = 2, then u1 = (9 - 2 * 2) / 5 = 1.
    FullMatrix A(2, 0.0F);
    A.Set(0, 0, 4.0F);
    A.Set(1, 0, 1.0F);
    A.Set(0, 1, 2.0F);
    A.Set(1, 1, 5.0F);
    RealVector b(2);
    b[0] = 8.0F;
    b[1] = 9.0F;
    GaussSeidelSolver solver(1, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(2)));

    EXPECT_EQ((*u)[0], 2.0F);
    EXPECT_EQ((*u)[1], 1.0F);
}

}  // namespace
}  // namespace orv
