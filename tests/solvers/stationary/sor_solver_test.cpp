#include "solvers/stationary/sor_solver.h"

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
class CountingSorSolver : public SorSolver {
  public:
    using SorSolver::SorSolver;
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override {
        ++sweeps;
        return SorSolver::Iterate(A, b, std::move(u));
    }
    int sweeps = 0;
};

TEST(SorSolver, GivesTheStartBackWithoutIterations) {
    const RealVector before = wavyVector(7);
    for (const int maxIter : {0, -3}) {
        SorSolver solver(maxIter, 0.0001);

        const auto u = solver.Solve(diffusionLine(7, 1.0F), RealVector(7, 2.0F), start(before));

        EXPECT_TRUE(sameVectorBits(*u, before)) << maxIter;
        EXPECT_EQ(solver.Solve(diffusionLine(7, 1.0F), before, nullptr), nullptr);
    }
}

TEST(SorSolver, ApproachesTheSolution) {
    for (const int n : {1, 2, 9, 40}) {
        const RealVector b = wavyVector(n);
        const FTriDiagonalMatrix line = diffusionLine(n, 2.0F);
        const FullMatrix dense = dominantMatrix(n);
        for (const Matrix* const A :
             {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&dense)}) {
            SorSolver solver(200, 0.0001);

            const auto u = solver.Solve(*A, b, nullptr);

            // Sweeps stall within a few units of the last place of values up to 100.
            EXPECT_LT(largestError(*u, denseSolve(*A, b)), 1e-4) << n;
        }
    }
}

TEST(SorSolver, SweepsOnFromAnExactSolution) {
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector solution(5, 3.0F);  // rows sum to 1, so b equals u
    CountingSorSolver solver(23, 1e30);

    const auto u = solver.Solve(A, solution, start(solution));

    EXPECT_EQ(solver.sweeps, 23);
    EXPECT_FALSE(solver.converged());
    EXPECT_LT(largestError(*u, std::vector<double>(5, 3.0)), 1e-5);
}

TEST(SorSolver, WorksInThePassedVector) {
    auto u = start(RealVector(5));
    const RealVector* const address = u.get();
    SorSolver solver(3, 0.0001);

    u = solver.Solve(diffusionLine(5, 1.0F), wavyVector(5), std::move(u));

    EXPECT_EQ(u.get(), address);
}

TEST(SorSolver, RelaxesByElevenTenths) {
    // From u = 10: omega b / 4 + (1 - omega) u in float.
    FullMatrix A(1, 4.0F);
    RealVector b(1, 8.0F);
    SorSolver solver(1, 0.0001);

    const auto u = solver.Solve(A, b, start(RealVector(1, 10.0F)));

    EXPECT_NEAR((*u)[0], 1.1 * 2.0 - 0.1 * 10.0, 2e-6);  // the rounding of 1 - 1.1f, ten times
    EXPECT_TRUE(sameVectorBits(*u, *A.SorSweep(b, 1.1F, start(RealVector(1, 10.0F)))));
}

}  // namespace
}  // namespace orv
