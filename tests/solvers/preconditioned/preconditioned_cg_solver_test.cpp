#include "solvers/preconditioned/preconditioned_cg_solver.h"

#include <gtest/gtest.h>

#include "algebra/storage/diagonal_matrix.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::start;

TEST(PreconditionedCgSolver, SolvesADiagonalSystemInOneStep) {
    // M is A itself: A = diag(2, 4), b = (2, 8), u = 0: g = -b, z = (-1, -2), p = (1, 2),
    // gz = 18, p.q = 18.
    DiagonalMatrix A(2, 2.0F);
    A.Set(1, 1, 4.0F);
    PreconditionedCgSolver solver(5, 1e-9, /*sgs=*/true);

    const auto u = solver.Solve(A, test::vectorOf({2, 8}), start(RealVector(2)));

    EXPECT_TRUE(solver.converged());
    EXPECT_EQ(test::elementsOf(*u), (std::vector<float>{1.0F, 2.0F}));
}

}  // namespace
}  // namespace orv
