#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"

#include <gtest/gtest.h>

#include "algebra/preconditioners/explicit_ssor.h"
#include "solvers/preconditioned/transcriptions.h"
#include "support/direct_solution.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::directSolution;
using test::largestError;
using test::residualNorm;
using test::start;
using test::TranscribedRun;
using test::transcribedStab2;
using test::wavyVector;
using test::windyPlane;

TEST(Quirk, Stab2StaleDirection) {
    const RealVector b = wavyVector(63);
    const BandMatrix A = windyPlane(9, 7, 3.0F);
    for (const bool sgs : {true, false}) {
        PreconditionedBicgStab2Solver solver(100, 1e-2, sgs);

        const auto u = solver.Solve(A, b, start(RealVector(63)));

        // The r of the recurrence vanishes, that of u does not.
        EXPECT_TRUE(solver.converged());
        EXPECT_GT(residualNorm(A, b, *u), 100.0);
        EXPECT_GT(largestError(*u, directSolution(A, b)), 10.0);
        // With the directions of the moment the same steps solve the system.
        const TranscribedRun renewed = transcribedStab2(
            A, ExplicitSsor(A, sgs ? 1.0 : 1.1), b, RealVector(63), 100, 1e-2, /*renew=*/true);
        EXPECT_TRUE(renewed.converged);
        EXPECT_LT(residualNorm(A, b, renewed.u), 1.5e-2);
    }
}

}  // namespace
}  // namespace orv
