#include "solvers/preconditioned/preconditioned_solver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

#include "base/text_output.h"
#include "solvers/preconditioned/ilu0_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_bb_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"
#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"
#include "solvers/preconditioned/preconditioned_cg_solver.h"
#include "solvers/preconditioned/preconditioner_probe.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionPlane;
using test::makeCounted;
using test::makeSolver;
using test::PreconditionerCount;
using test::sameVectorBits;
using test::start;
using test::wavyVector;

bool allNaN(const RealVector& u) {
    return std::all_of(u.data(), u.data() + u.size(),
                       [](float value) { return std::isnan(value); });
}

// What holds for every solver with a preconditioner, whatever the method.
template <class Solver>
class Preconditioned : public testing::Test {
  protected:
    // Whether the start vector is tested.
    static constexpr bool kTestsStart = !std::is_same_v<Solver, PreconditionedBbSolver>;

  private:
    SilencedOutput silence_;
};
using Solvers =
    testing::Types<PreconditionedBbSolver, PreconditionedCgSolver, PreconditionedBicgStabSolver,
                   PreconditionedBicgStab2Solver, Ilu0BicgStabSolver>;
TYPED_TEST_SUITE(Preconditioned, Solvers);

TYPED_TEST(Preconditioned, MakesItsPreconditionerInEverySolveAndReleasesIt) {
    const BandMatrix A = diffusionPlane(5, 4, 1.0F);
    PreconditionerCount count;
    auto solver = makeCounted<TypeParam>(count, 3, 1e-30);

    for (int solve = 1; solve <= 3; ++solve) {
        const auto u = solver->Solve(A, wavyVector(20), nullptr);

        EXPECT_EQ(count.made, solve);
        EXPECT_EQ(count.live, 0);
    }
}

TYPED_TEST(Preconditioned, MakesItsPreconditionerWithoutIterationsToo) {
    const BandMatrix A = diffusionPlane(5, 4, 1.0F);
    for (const int maxIter : {0, -1}) {
        PreconditionerCount count;
        auto solver = makeCounted<TypeParam>(count, maxIter, 1e-4);
        const RealVector before(20, 3.0F);

        const auto u = solver->Solve(A, wavyVector(20), start(before));

        EXPECT_EQ(count.made, 1);
        EXPECT_EQ(count.live, 0);
        EXPECT_TRUE(sameVectorBits(*u, before));
        EXPECT_FALSE(solver->converged());
    }
}

TYPED_TEST(Preconditioned, KeepsItsPreconditionerOnlyAfterTheStartTest) {
    const BandMatrix A = diffusionPlane(5, 4, 1.0F);
    const RealVector solution = wavyVector(20);
    const RealVector b = *A.Multiply(solution, nullptr);
    PreconditionerCount count;
    auto solver = makeCounted<TypeParam>(count, 5, 1e-4);

    auto u = solver->Solve(A, b, start(solution));
    EXPECT_EQ(count.made, 1);
    EXPECT_EQ(count.live, this->kTestsStart ? 1 : 0);
    if (this->kTestsStart) {
        EXPECT_TRUE(sameVectorBits(*u, solution));
        EXPECT_FALSE(solver->converged()) << "the start test doesn't raise it";
    }

    u = solver->Solve(A, b, start(solution));
    EXPECT_EQ(count.made, 2);
    EXPECT_EQ(count.live, this->kTestsStart ? 1 : 0);

    u = solver->Solve(A, b, nullptr);
    EXPECT_EQ(count.live, 0);

    u = solver->Solve(A, b, start(solution));
    solver.reset();
    EXPECT_EQ(count.live, 0);
}

TYPED_TEST(Preconditioned, IsLoweredByASolveThatTheStartTestEnds) {
    const BandMatrix A = diffusionPlane(5, 4, 1.0F);
    const auto solver = makeSolver<TypeParam>(50, 1e-3);
    solver->Solve(A, wavyVector(20), nullptr);
    ASSERT_TRUE(solver->converged());

    const auto u = solver->Solve(A, RealVector(20), start(RealVector(20)));

    // BB goes into its loop and divides 0 by 0 only after the test on g.
    EXPECT_EQ(solver->converged(), !this->kTestsStart);
    EXPECT_TRUE(sameVectorBits(*u, RealVector(20)));
}

TYPED_TEST(Preconditioned, StartsFromTheRightHandSideWhenNoStartIsGiven) {
    const BandMatrix A = diffusionPlane(4, 3, 1.0F);
    const RealVector b = wavyVector(12);
    const auto solver = makeSolver<TypeParam>(2, 1e-12);

    const auto fromNull = solver->Solve(A, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*fromNull, *solver->Solve(A, b, start(b))));
    EXPECT_FALSE(sameVectorBits(*fromNull, *solver->Solve(A, b, start(RealVector(12)))));
    EXPECT_TRUE(sameVectorBits(*fromNull, *solver->Solve(A, b, /*rebuild=*/true, nullptr)));
}

TYPED_TEST(Preconditioned, FollowsTheSizeOfTheSystem) {
    const auto solver = makeSolver<TypeParam>(4, 1e-12);
    for (const int w : {3, 6, 2, 6}) {
        const BandMatrix A = diffusionPlane(w, 3, 2.0F);

        const auto u = solver->Solve(A, wavyVector(3 * w), nullptr);

        EXPECT_TRUE(sameVectorBits(
            *u, *makeSolver<TypeParam>(4, 1e-12)->Solve(A, wavyVector(3 * w), nullptr)))
            << w;
    }
}

TYPED_TEST(Preconditioned, KeepsItsWorkVectorsForSystemsOfOneSize) {
    const test::WatchedMatrix A(diffusionPlane(4, 3, 1.0F));
    const auto solver = makeSolver<TypeParam>(3, 1e-12);
    const auto first = solver->Solve(A, wavyVector(12), nullptr);
    const std::vector<const RealVector*> targets = A.targets;
    A.targets.clear();

    const auto second = solver->Solve(A, wavyVector(12), nullptr);

    EXPECT_EQ(A.targets, targets);
    EXPECT_EQ(std::count(targets.begin(), targets.end(), nullptr), 0);
    EXPECT_TRUE(sameVectorBits(*second, *first));
}

TYPED_TEST(Preconditioned, NotANumberTravelsOn) {
    const BandMatrix A = diffusionPlane(4, 3, 1.0F);
    RealVector b = wavyVector(12);
    b[5] = std::numeric_limits<float>::quiet_NaN();
    const auto solver = makeSolver<TypeParam>(3, 1e30);

    const auto u = solver->Solve(A, b, start(RealVector(12)));

    EXPECT_FALSE(solver->converged());
    EXPECT_TRUE(std::isnan((*u)[5]));
}

TYPED_TEST(Preconditioned, WithoutAPreconditionerBreaksDown) {
    const BandMatrix A = diffusionPlane(4, 3, 1.0F);
    const auto solver = makeSolver<test::Unpreconditioned<TypeParam>>(5, 1e-4);

    const auto u = solver->Solve(A, wavyVector(12), nullptr);

    EXPECT_FALSE(solver->converged());
    ASSERT_EQ(u->size(), 12);
    EXPECT_TRUE(allNaN(*u));
}

}  // namespace
}  // namespace orv
