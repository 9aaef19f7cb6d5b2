#include "solvers/stationary/thomas_solver.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "solvers/linear_solver_list.h"
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

/// Counts the factorisations that go through the virtual operation.
class CountingThomasSolver : public ThomasSolver {
  public:
    using ThomasSolver::ThomasSolver;
    void Factorise(const Matrix& A) override {
        ++count;
        ThomasSolver::Factorise(A);
    }
    int count = 0;
};

// Elimination on these dominant systems loses a few units of the last place of values up to
// 100.
constexpr double kDirectError = 1e-4;

TEST(ThomasSolver, SolvesTridiagonalAndDenseSystemsByBothMethods) {
    for (const ThomasSolver::Method method :
         {ThomasSolver::Method::Doolittle, ThomasSolver::Method::Crout}) {
        for (const int n : {1, 2, 3, 8, 37}) {
            const RealVector b = wavyVector(n);
            const FTriDiagonalMatrix line = diffusionLine(n, 2.5F);
            const FullMatrix dense = dominantMatrix(n);
            for (const Matrix* const A :
                 {static_cast<const Matrix*>(&line), static_cast<const Matrix*>(&dense)}) {
                ThomasSolver solver(method);

                const auto u = solver.Solve(*A, b, nullptr);

                ASSERT_NE(u, nullptr);
                EXPECT_LT(largestError(*u, denseSolve(*A, b)), kDirectError)
                    << "order " << n << ", method " << static_cast<int>(method);
            }
        }
    }
}

TEST(ThomasSolver, SolvesTheOldSystemUntilReset) {
    const RealVector b = wavyVector(9);
    const FTriDiagonalMatrix before = diffusionLine(9, 1.0F);
    const FTriDiagonalMatrix after = diffusionLine(9, 4.0F);
    ThomasSolver solver;
    const auto first = solver.Solve(before, b, nullptr);

    const auto stale = solver.Solve(after, b, nullptr);
    solver.Reset();
    const auto fresh = solver.Solve(after, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*stale, *first));
    EXPECT_LT(largestError(*fresh, denseSolve(after, b)), kDirectError);
    EXPECT_FALSE(sameVectorBits(*fresh, *first));
}

TEST(ThomasSolver, RefactorisesForAnotherOrderWithoutReset) {
    CountingThomasSolver solver;
    (void)solver.Solve(diffusionLine(9, 1.0F), wavyVector(9), nullptr);
    const FTriDiagonalMatrix A = diffusionLine(14, 1.0F);

    const auto u = solver.Solve(A, wavyVector(14), false, nullptr);

    EXPECT_LT(largestError(*u, denseSolve(A, wavyVector(14))), kDirectError);
    EXPECT_TRUE(solver.hasFactors());
    EXPECT_EQ(solver.count, 2);
}

TEST(ThomasSolver, KeepsItsFactorsWithoutRebuild) {
    CountingThomasSolver solver;
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector b = wavyVector(5);

    for (int call = 0; call < 3; ++call) {
        (void)solver.Solve(A, b, false, nullptr);
    }

    EXPECT_EQ(solver.count, 1);
    EXPECT_TRUE(solver.hasFactors());
}

TEST(ThomasSolver, DropsItsFactorsWithRebuildAndMakesThemAtEachCall) {
    CountingThomasSolver solver;
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector b = wavyVector(5);

    for (int call = 1; call <= 3; ++call) {
        const auto u = solver.Solve(A, b, true, nullptr);
        EXPECT_EQ(solver.count, call);
        EXPECT_FALSE(solver.hasFactors());
        EXPECT_LT(largestError(*u, denseSolve(A, b)), kDirectError);
    }
}

TEST(ThomasSolver, LeavesStandingFactorsAloneWhenRebuildComesLate) {
    CountingThomasSolver solver;
    const FTriDiagonalMatrix A = diffusionLine(5, 1.0F);
    const RealVector b = wavyVector(5);
    (void)solver.Solve(A, b, false, nullptr);

    (void)solver.Solve(A, b, true, nullptr);

    EXPECT_EQ(solver.count, 1);
    EXPECT_TRUE(solver.hasFactors());
}

TEST(ThomasSolver, DropsTheFactorsOfAnotherOrderWithRebuild) {
    CountingThomasSolver solver;
    (void)solver.Solve(diffusionLine(5, 1.0F), wavyVector(5), false, nullptr);

    (void)solver.Solve(diffusionLine(6, 1.0F), wavyVector(6), true, nullptr);

    EXPECT_EQ(solver.count, 2);
    EXPECT_FALSE(solver.hasFactors());
}

TEST(ThomasSolver, WritesIntoTheVectorThatIsGiven) {
    ThomasSolver solver;
    auto target = start(RealVector(6, 1e30F));
    const RealVector* const address = target.get();
    const FTriDiagonalMatrix A = diffusionLine(6, 0.5F);

    target = solver.Solve(A, wavyVector(6), std::move(target));

    EXPECT_EQ(target.get(), address);
    EXPECT_LT(largestError(*target, denseSolve(A, wavyVector(6))), kDirectError);
}

TEST(ThomasSolver, LetsAZeroPivotThroughAsANonFiniteResult) {
    FullMatrix A(2, 1.0F);
    A.Set(0, 0, 0.0F);
    ThomasSolver solver;

    const auto u = solver.Solve(A, wavyVector(2), nullptr);

    EXPECT_FALSE(std::isfinite((*u)[0]) && std::isfinite((*u)[1]));
}

TEST(ThomasSolver, GivesNullForARightHandSideOfAnotherSizeAndWorksOn) {
    ThomasSolver solver;
    const FTriDiagonalMatrix A = diffusionLine(6, 0.5F);

    EXPECT_EQ(solver.Solve(A, wavyVector(5), nullptr), nullptr);

    const auto u = solver.Solve(A, wavyVector(6), nullptr);
    EXPECT_LT(largestError(*u, denseSolve(A, wavyVector(6))), kDirectError);
}

TEST(ThomasSolver, DropsItsFactorsWithRebuildEvenWhenTheSizesDontFit) {
    ThomasSolver solver;

    EXPECT_EQ(solver.Solve(diffusionLine(6, 0.5F), wavyVector(5), /*rebuild=*/true, nullptr),
              nullptr);

    EXPECT_FALSE(solver.hasFactors());
}

TEST(ThomasSolver, IgnoresTheSettingsOfCreate) {
    LinearSolverList list(50, 10);
    const FTriDiagonalMatrix A = diffusionLine(12, 3.0F);
    const RealVector b = wavyVector(12);

    const auto plain = list.Create(0, 0, 0, 0.0)->Solve(A, b, nullptr);
    const auto other = list.Create(0, 1000, 77, 123.0)->Solve(A, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*plain, *other));
    EXPECT_LT(largestError(*plain, denseSolve(A, b)), kDirectError);
}

}  // namespace
}  // namespace orv
