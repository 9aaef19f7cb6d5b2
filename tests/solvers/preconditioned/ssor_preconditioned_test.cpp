#include "solvers/preconditioned/ssor_preconditioned.h"

#include <gtest/gtest.h>

#include "solvers/preconditioned/preconditioned_bb_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_cg_solver.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

template <class Solver>
class SsorPair : public testing::Test {};
using Solvers = testing::Types<PreconditionedBbSolver, PreconditionedCgSolver,
                               PreconditionedBicgStabSolver, PreconditionedBicgStab2Solver>;
TYPED_TEST_SUITE(SsorPair, Solvers);

TYPED_TEST(SsorPair, RelaxesFromTheFirstSolveOn) {
    const FTriDiagonalMatrix A = test::diffusionLine(4, 1.0F);
    for (const bool sgs : {true, false}) {
        TypeParam solver(1, 1e-4, sgs);
        EXPECT_EQ(solver.omega(), 1.0);

        solver.Solve(A, test::wavyVector(4), nullptr);

        EXPECT_EQ(solver.omega(), sgs ? 1.0 : 1.1);
    }
}

}  // namespace
}  // namespace orv
