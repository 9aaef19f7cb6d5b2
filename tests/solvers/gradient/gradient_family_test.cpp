// What all methods of one recurrence have in common.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

#include "solvers/gradient/bb_solver.h"
#include "solvers/gradient/cbb_solver.h"
#include "solvers/gradient/cg_ne_solver.h"
#include "solvers/gradient/cg_nr_solver.h"
#include "solvers/gradient/cg_solver.h"
#include "solvers/gradient/cgi_solver.h"
#include "solvers/gradient/cgs_ls_shifted_solver.h"
#include "solvers/gradient/cgs_ls_solver.h"
#include "solvers/gradient/descent_solver.h"
#include "support/gradient_support.h"
#include "support/watching_matrix.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::sameVectorBits;
using test::start;
using test::WatchingMatrix;
using test::wavyVector;

template <class Solver>
class GradientFamily : public testing::Test {};

using Family = testing::Types<DescentSolver, BbSolver, CbbSolver, CgSolver, CgNeSolver,
                              CgNrSolver, CgsLsSolver, CgsLsShiftedSolver, CgiSolver>;
TYPED_TEST_SUITE(GradientFamily, Family);

/// The products that a solve with this limit makes.
template <class Solver>
int productsOf(const Matrix& A, const RealVector& b, const RealVector& from, int maxIter) {
    const WatchingMatrix watched(A);
    Solver solver(maxIter, 1e-30);
    (void)solver.Solve(watched, b, start(from));
    return watched.products();
}

TYPED_TEST(GradientFamily, StartsFromTheRightHandSideWhenNoStartIsGiven) {
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);
    const RealVector b = wavyVector(6);
    TypeParam solver(2, 1e-12);

    const auto fromNull = solver.Solve(A, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(b))));
    EXPECT_FALSE(sameVectorBits(*fromNull, *solver.Solve(A, b, start(RealVector(6)))));
}

TYPED_TEST(GradientFamily, WorksInTheVectorThatItIsGiven) {
    TypeParam solver(3, 1e-12);
    auto u = start(RealVector(6));
    const RealVector* const given = u.get();

    u = solver.Solve(diffusionLine(6, 1.0F), wavyVector(6), std::move(u));

    EXPECT_EQ(u.get(), given);
}

TYPED_TEST(GradientFamily, ReturnsTheStartWithoutIterations) {
    const FTriDiagonalMatrix A = diffusionLine(4, 1.0F);
    for (const int maxIter : {0, -3}) {
        TypeParam solver(maxIter, 0.0001);

        const auto given = solver.Solve(A, wavyVector(4), start(RealVector(4, 2.0F)));

        EXPECT_TRUE(sameVectorBits(*given, RealVector(4, 2.0F))) << maxIter;
        EXPECT_TRUE(sameVectorBits(*solver.Solve(A, wavyVector(4), nullptr), wavyVector(4)))
            << maxIter;
        EXPECT_FALSE(solver.converged()) << maxIter;
    }
}

TYPED_TEST(GradientFamily, ReplacesItsWorkVectorsWhenTheSizeChanges) {
    TypeParam solver(3, 1e-12);
    for (const int n : {5, 9, 1, 5}) {
        const FTriDiagonalMatrix A = diffusionLine(n, 1.0F);
        TypeParam fresh(3, 1e-12);

        const auto u = solver.Solve(A, wavyVector(n), start(RealVector(n)));

        const auto expected = fresh.Solve(A, wavyVector(n), start(RealVector(n)));
        EXPECT_TRUE(test::sameResult(*u, *expected)) << n;
    }
}

TYPED_TEST(GradientFamily, KeepsItsWorkVectorsBetweenSolvesOfOneSize) {
    const WatchingMatrix first(diffusionLine(9, 1.0F));
    const WatchingMatrix second(diffusionLine(9, 1.0F));
    TypeParam solver(8, 1e-12);
    (void)solver.Solve(first, wavyVector(9), start(RealVector(9)));

    (void)solver.Solve(second, wavyVector(9), start(RealVector(9)));

    EXPECT_EQ(second.targets(), first.targets());
    EXPECT_FALSE(first.targets().contains(nullptr));
}

TYPED_TEST(GradientFamily, GoesOnWhereASolveEndedWhenIteratedByHand) {
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);
    const RealVector b = wavyVector(9);
    TypeParam whole(5, 1e-12);
    const auto expected = whole.Solve(A, b, start(RealVector(9)));
    for (const int inSolve : {0, 1, 2, 5}) {
        TypeParam solver(inSolve, 1e-12);

        auto u = solver.Solve(A, b, start(RealVector(9)));
        for (int it = inSolve; it < 5; ++it) {
            u = solver.Iterate(A, b, std::move(u));
        }

        EXPECT_TRUE(sameVectorBits(*u, *expected)) << inSolve;
    }
}

TYPED_TEST(GradientFamily, CarriesNothingFromABreakdownIntoTheNextSolve) {
    // CGi is the exception, from its second iteration on: Quirk.CgiOldDirection.
    const int limit = std::is_same_v<TypeParam, CgiSolver> ? 1 : 6;
    const FTriDiagonalMatrix A = diffusionLine(9, 2.0F);
    RealVector spoilt = wavyVector(9);
    spoilt[4] = std::numeric_limits<float>::quiet_NaN();
    TypeParam solver(limit, 1e-12);
    TypeParam fresh(limit, 1e-12);
    const auto broken = solver.Solve(A, spoilt, nullptr);
    ASSERT_FALSE(test::isFinite(*broken));

    const auto u = solver.Solve(A, wavyVector(9), nullptr);

    EXPECT_TRUE(test::isFinite(*u));
    EXPECT_TRUE(sameVectorBits(*u, *fresh.Solve(A, wavyVector(9), nullptr)));
}

TYPED_TEST(GradientFamily, LowersConvergedAtTheStartOfEachSolve) {
    TypeParam solver(3, 0.5);
    const FullMatrix two(1, 2.0F);
    (void)solver.Solve(two, RealVector(1, 4.0F), start(RealVector(1)));
    ASSERT_TRUE(solver.converged());

    (void)solver.Solve(FullMatrix(1, 0.0F), RealVector(1, 4.0F), start(RealVector(1)));

    EXPECT_FALSE(solver.converged());
}

template <class Solver>
class GradientFamilyOfAStartTest : public testing::Test {};

using StartTested = testing::Types<DescentSolver, CgSolver, CgNeSolver, CgNrSolver, CgsLsSolver,
                                   CgsLsShiftedSolver>;
TYPED_TEST_SUITE(GradientFamilyOfAStartTest, StartTested);

TYPED_TEST(GradientFamilyOfAStartTest, ReturnsASolvedStartWithConvergedLow) {
    TypeParam solver(50, 0.5);
    for (const float value : {0.0F, 3.0F}) {
        const RealVector solution(5, value);
        (void)solver.Solve(FullMatrix(1, 2.0F), RealVector(1, 4.0F), start(RealVector(1)));
        ASSERT_TRUE(solver.converged());

        const auto u = solver.Solve(diffusionLine(5, 1.0F), solution, start(solution));

        EXPECT_TRUE(sameVectorBits(*u, solution)) << value;
        EXPECT_FALSE(solver.converged()) << value;
    }
}

TYPED_TEST(GradientFamilyOfAStartTest, IteratesFromAStartAtTheTolerance) {
    // The start residual is b; its square 1 + 2^-11 + 2^-24 is no float.
    const FullMatrix A(1, 2.0F);
    const RealVector b(1, 1.0F + 0x1p-12F);
    TypeParam at(1, 1.0 + 0x1p-12);
    TypeParam above(1, std::nextafter(1.0 + 0x1p-12, 2.0));

    const auto moved = at.Solve(A, b, start(RealVector(1)));
    const auto kept = above.Solve(A, b, start(RealVector(1)));

    EXPECT_NE((*moved)[0], 0.0F);
    EXPECT_EQ((*kept)[0], 0.0F);
}

TYPED_TEST(GradientFamily, HasNotConvergedWithAResidualAtTheTolerance) {
    // A = 2, b = 4: solved to the bit by one step; BB errs in its first one, and CBB tests at
    // the start of the next.
    const int steps =
        std::is_same_v<TypeParam, BbSolver> || std::is_same_v<TypeParam, CbbSolver> ? 2 : 1;
    const auto converges = [&](double tol) {
        TypeParam solver(steps, tol);
        if constexpr (std::is_same_v<TypeParam, CgsLsShiftedSolver>) {
            solver.SetShift(0.0);
        }
        (void)solver.Solve(FullMatrix(1, 2.0F), RealVector(1, 4.0F), start(RealVector(1)));
        return solver.converged();
    };

    EXPECT_FALSE(converges(0.0));
    EXPECT_TRUE(converges(std::numeric_limits<double>::denorm_min()));
}

TYPED_TEST(GradientFamily, RunsToItsLimitOnASingularMatrix) {
    const FullMatrix zero(3, 0.0F);
    const RealVector b(3, 4.0F);
    TypeParam solver(9, 0.0001);

    const auto u = solver.Solve(zero, b, start(RealVector(3)));

    EXPECT_FALSE(test::isFinite(*u));
    EXPECT_FALSE(solver.converged());
    const int upToEight = productsOf<TypeParam>(zero, b, RealVector(3), 8);
    EXPECT_GT(productsOf<TypeParam>(zero, b, RealVector(3), 9), upToEight);
}

TYPED_TEST(GradientFamily, NeverTakesNanForASmallResidual) {
    RealVector b = wavyVector(5);
    b[2] = std::numeric_limits<float>::quiet_NaN();
    TypeParam solver(4, 1e30);

    const auto u = solver.Solve(diffusionLine(5, 1.0F), b, start(RealVector(5)));

    EXPECT_FALSE(solver.converged());
    EXPECT_TRUE(std::isnan((*u)[2]));
}

TYPED_TEST(GradientFamily, MakesTheProductsOfItsMethodAndNoMore) {
    using Solver = TypeParam;
    const bool twoProducts =
        std::is_same_v<Solver, CbbSolver> || std::is_same_v<Solver, CgNeSolver> ||
        std::is_same_v<Solver, CgsLsSolver> || std::is_same_v<Solver, CgsLsShiftedSolver>;
    const int each = std::is_same_v<Solver, CgNrSolver> ? 3 : twoProducts ? 2 : 1;
    const FTriDiagonalMatrix A = diffusionLine(40, 2.0F);
    const RealVector zero(40);

    const int upToFour = productsOf<Solver>(A, wavyVector(40), zero, 4);

    EXPECT_EQ(productsOf<Solver>(A, wavyVector(40), zero, 9), upToFour + 5 * each);
}

}  // namespace
}  // namespace orv
