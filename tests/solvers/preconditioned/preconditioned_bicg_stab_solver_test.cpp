#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"

#include <gtest/gtest.h>

#include "algebra/preconditioners/explicit_ssor.h"
#include "algebra/storage/diagonal_matrix.h"
#include "solvers/preconditioned/transcriptions.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::TranscribedRun;
using test::transcribedStab;
using test::wavyVector;
using test::windyPlane;

TEST(PreconditionedBicgStabSolver, EndsInTheMiddleOfAStepThatSolvesTheSystem) {
    // M is A itself, so that the first half step ends at s = 0: A = diag(2, 4), b = (2, 8),
    // u = 0: r = b, p = (1 + 68) r, y = 69 (1, 2), alpha = 68 / (69 68), u = (1, 2).
    DiagonalMatrix A(2, 2.0F);
    A.Set(1, 1, 4.0F);
    PreconditionedBicgStabSolver solver(5, 1e-4, /*sgs=*/true);

    const auto u = solver.Solve(A, test::vectorOf({2, 8}), start(RealVector(2)));

    // Without the test on s, t.t = 0 would leave NaN.
    EXPECT_TRUE(solver.converged());
    EXPECT_NEAR((*u)[0], 1.0F, 1e-6);
    EXPECT_NEAR((*u)[1], 2.0F, 1e-6);
}

TEST(Quirk, StabFirstDirection) {
    const BandMatrix A = windyPlane(6, 5, 2.0F);
    const RealVector b = wavyVector(30);
    const ExplicitSsor M(A, 1.0);
    PreconditionedBicgStabSolver solver(1, 1e-12, /*sgs=*/true);

    const auto u = solver.Solve(A, b, start(RealVector(30, 1.0F)));

    // The first direction is (1 + rho) r - rho A u and not r.
    const TranscribedRun textbook = transcribedStab(A, M, b, RealVector(30, 1.0F), 1, 1e-12,
                                                    /*resetDirection=*/true);
    EXPECT_TRUE(sameVectorBits(*u, transcribedStab(A, M, b, RealVector(30, 1.0F), 1, 1e-12).u));
    EXPECT_GT(residualNorm(A, b, *u), 1.05 * residualNorm(A, b, textbook.u));
}

}  // namespace
}  // namespace orv
