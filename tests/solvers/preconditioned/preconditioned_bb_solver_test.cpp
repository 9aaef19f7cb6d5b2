#include "solvers/preconditioned/preconditioned_bb_solver.h"

#include <gtest/gtest.h>

#include "support/solver_systems.h"

namespace orv {
namespace {

using test::start;

TEST(PreconditionedBbSolver, BeginsWithAStepOfTwo) {
    // A = 4, M = 4, b = 4, u = 3: g = 8, z = 2, step = -2, u = 3 - 4.
    const FullMatrix A(1, 4.0F);
    PreconditionedBbSolver solver(1, 1e-9, /*sgs=*/true);

    const auto u = solver.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 3.0F)));

    EXPECT_EQ((*u)[0], -1.0F);
    // g = 8 - 2 8 = -8, alpha = z.w / gz = 2 8 / 16 = 1: the second step lands on the solution.
    PreconditionedBbSolver two(2, 1e-9, /*sgs=*/true);
    EXPECT_EQ((*two.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 3.0F))))[0], 1.0F);
    EXPECT_TRUE(two.converged());
}

TEST(PreconditionedBbSolver, HasNoTestOnTheStartVector) {
    const FullMatrix A(1, 4.0F);
    PreconditionedBbSolver solver(5, 0.1, /*sgs=*/true);

    // g = 0.04 is below the tolerance, and still a step is taken.
    const auto u = solver.Solve(A, RealVector(1, 4.0F), start(RealVector(1, 1.01F)));

    EXPECT_TRUE(solver.converged());
    EXPECT_NEAR((*u)[0], 0.99F, 1e-6);
}

}  // namespace
}  // namespace orv
