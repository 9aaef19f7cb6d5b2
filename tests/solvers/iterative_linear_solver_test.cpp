#include "solvers/iterative_linear_solver.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::sameVectorBits;
using test::start;
using test::wavyVector;

/// Adds b to u at each iteration and converges at the one it is told.
class AddingSolver : public IterativeLinearSolver {
  public:
    AddingSolver(int maxIter, int convergesAt)
        : IterativeLinearSolver(maxIter, 0.5), convergesAt_(convergesAt) {}

    std::unique_ptr<RealVector> Iterate(const Matrix& /*A*/, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override {
        ++iterations;
        u->Add(b);
        converged_ = iterations == convergesAt_;
        return u;
    }

    using IterativeLinearSolver::PrepareWork;
    using IterativeLinearSolver::StartVector;
    int iterations = 0;

  private:
    int convergesAt_;
};

TEST(IterativeLinearSolver, IteratesUpToTheLimit) {
    AddingSolver solver(4, /*convergesAt=*/100);

    const auto u =
        solver.Solve(diffusionLine(3, 1.0F), RealVector(3, 1.0F), start(RealVector(3, 10.0F)));

    EXPECT_EQ(solver.iterations, 4);
    EXPECT_TRUE(sameVectorBits(*u, RealVector(3, 14.0F)));
    EXPECT_FALSE(solver.converged());
}

TEST(IterativeLinearSolver, StopsAsSoonAsConvergedIsRaised) {
    AddingSolver solver(9, /*convergesAt=*/2);

    const auto u =
        solver.Solve(diffusionLine(3, 1.0F), RealVector(3, 1.0F), start(RealVector(3)));

    EXPECT_EQ(solver.iterations, 2);
    EXPECT_TRUE(sameVectorBits(*u, RealVector(3, 2.0F)));
    EXPECT_TRUE(solver.converged());
}

TEST(IterativeLinearSolver, LowersConvergedAtTheStartOfEachSolve) {
    AddingSolver solver(3, /*convergesAt=*/1);
    (void)solver.Solve(diffusionLine(3, 1.0F), RealVector(3), start(RealVector(3)));
    ASSERT_TRUE(solver.converged());

    (void)solver.Solve(diffusionLine(3, 1.0F), RealVector(3), start(RealVector(3)));

    EXPECT_EQ(solver.iterations, 4);
    EXPECT_FALSE(solver.converged());
}

TEST(IterativeLinearSolver, DropsTheRebuildFlag) {
    AddingSolver solver(2, /*convergesAt=*/100);

    const auto u = solver.Solve(diffusionLine(3, 1.0F), RealVector(3, 1.0F), /*rebuild=*/true,
                                start(RealVector(3)));

    EXPECT_TRUE(sameVectorBits(*u, RealVector(3, 2.0F)));
}

TEST(IterativeLinearSolver, ResetChangesNothing) {
    AddingSolver solver(2, /*convergesAt=*/1);
    (void)solver.Solve(diffusionLine(3, 1.0F), RealVector(3), start(RealVector(3)));

    solver.Reset();

    EXPECT_TRUE(solver.converged());
    EXPECT_EQ(solver.maxIter(), 2);
    EXPECT_EQ(solver.tol(), 0.5);
}

TEST(IterativeLinearSolver, StartsFromACopyOfTheRightHandSide) {
    const RealVector b = wavyVector(5);
    auto given = start(RealVector(5));
    const RealVector* const address = given.get();

    EXPECT_TRUE(sameVectorBits(*AddingSolver::StartVector(b, nullptr), b));
    EXPECT_EQ(AddingSolver::StartVector(b, std::move(given)).get(), address);
}

TEST(IterativeLinearSolver, KeepsWorkVectorsOfTheRightSizeWithTheirContents) {
    std::unique_ptr<RealVector> r;
    std::unique_ptr<RealVector> q;
    AddingSolver::PrepareWork(4, {&r, &q});
    ASSERT_TRUE(sameVectorBits(*r, RealVector(4)));
    ASSERT_TRUE(sameVectorBits(*q, RealVector(4)));
    q->Fill(7.0F);
    const RealVector* const address = q.get();

    AddingSolver::PrepareWork(4, {&r, &q});
    EXPECT_EQ(q.get(), address);
    EXPECT_TRUE(sameVectorBits(*q, RealVector(4, 7.0F)));

    AddingSolver::PrepareWork(6, {&r, &q});
    EXPECT_TRUE(sameVectorBits(*r, RealVector(6)));
    EXPECT_TRUE(sameVectorBits(*q, RealVector(6)));
}

}  // namespace
}  // namespace orv
