#include "solvers/preconditioned/ilu0_bicg_stab_solver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "base/text_output.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionPlane;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::wavyVector;
using test::windyPlane;

TEST(Ilu0BicgStabSolver, EndsInTheFirstStepWhereTheFactorsAreExact) {
    const SilencedOutput silence;
    const BandMatrix line = windyPlane(20, 1, 2.0F);
    Ilu0BicgStabSolver solver(1, 1e-2);

    const auto u = solver.Solve(line, wavyVector(20), start(RealVector(20)));

    EXPECT_TRUE(solver.converged());
    EXPECT_LT(residualNorm(line, wavyVector(20), *u), 1e-2);
}

TEST(Ilu0BicgStabSolver, OnAMatrixWithoutIncompleteFactorsBreaksDown) {
    const FTriDiagonalMatrix A = test::diffusionLine(6, 1.0F);
    Ilu0BicgStabSolver solver(4, 1e-4);
    const SilencedOutput silence;

    const auto u = solver.Solve(A, wavyVector(6), nullptr);

    EXPECT_FALSE(solver.converged());
    for (int i = 0; i < 6; ++i) {
        EXPECT_TRUE(std::isnan((*u)[i])) << i;
    }
    // A system that it can work on follows as if nothing had been.
    const BandMatrix B = diffusionPlane(3, 2, 1.0F);
    EXPECT_TRUE(sameVectorBits(*solver.Solve(B, wavyVector(6), nullptr),
                               *Ilu0BicgStabSolver(4, 1e-4).Solve(B, wavyVector(6), nullptr)));
}

TEST(Ilu0BicgStabSolver, PrintsTheFactorisationOfEverySolve) {
    const BandMatrix A = diffusionPlane(2, 2, 1.0F);
    Ilu0BicgStabSolver solver(0, 1e-4);

    const std::string one =
        test::standardOutputOf([&] { solver.Solve(A, wavyVector(4), nullptr); });
    const std::string two = test::standardOutputOf([&] {
        solver.Solve(A, wavyVector(4), nullptr);
        solver.Solve(A, wavyVector(4), nullptr);
    });

    EXPECT_EQ(one.substr(0, 12), "row2: v(4): ");
    EXPECT_EQ(two, one + one);
}

}  // namespace
}  // namespace orv
