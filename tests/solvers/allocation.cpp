#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "base/text_output.h"
#include "solvers/linear_solver_list.h"
#include "solvers/solver_catalogue.h"
#include "support/solver_systems.h"

namespace {

// Blocks handed out since the program began.
constinit long blocks = 0;

void* allocate(std::size_t bytes, std::size_t alignment) {
    const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
    void* block = std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++blocks;
    return block;
}

constexpr std::size_t kDefaultAlignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

}  // namespace

void* operator new(std::size_t bytes) {
    return allocate(bytes, kDefaultAlignment);
}
void* operator new[](std::size_t bytes) {
    return allocate(bytes, kDefaultAlignment);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
    return allocate(bytes, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
    return allocate(bytes, static_cast<std::size_t>(alignment));
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}

namespace orv {
namespace {

// From here on every `Solve` makes its preconditioner anew.
constexpr int kFirstPreconditionedId = 33;

struct System {
    std::string name;
    std::unique_ptr<Matrix> A;
};

// All that the schemes and the methods of the engine hand to a solver.
std::vector<System> systems() {
    std::vector<System> all;
    all.push_back(
        {"line", std::make_unique<FTriDiagonalMatrix>(test::diffusionLine(37, 2.0F))});
    all.push_back({"plane", std::make_unique<BandMatrix>(test::diffusionPlane(9, 7, 2.0F))});
    all.push_back({"windy", std::make_unique<BandMatrix>(test::windyPlane(9, 7, 2.0F))});
    all.push_back({"dense", std::make_unique<FullMatrix>(test::dominantMatrix(11))});
    return all;
}

std::unique_ptr<LinearSolver> makeSolver(int id, int maxIter = 7) {
    return LinearSolverList(50, 10).Create(id, maxIter, /*m=*/3, /*tol=*/1e-12);
}

// Blocks that one more `Solve` from b asks for.
long blocksOfSolve(LinearSolver& solver, const Matrix& A, const RealVector& b,
                   std::unique_ptr<RealVector>& u) {
    u->CopyFrom(b);
    const long before = blocks;
    u = solver.Solve(A, b, std::move(u));
    return blocks - before;
}

class SolverAllocation : public testing::TestWithParam<int> {};

TEST_P(SolverAllocation, EndsWithTheFirstSolveOfASize) {
    const int id = GetParam();
    for (const System& system : systems()) {
        SCOPED_TRACE(system.name);
        const std::unique_ptr<LinearSolver> solver = makeSolver(id);
        const RealVector b = test::wavyVector(system.A->Rows());
        std::unique_ptr<RealVector> u = test::start(b);
        blocksOfSolve(*solver, *system.A, b, u);
        for (int repeat = 0; repeat < 3; ++repeat) {
            EXPECT_EQ(blocksOfSolve(*solver, *system.A, b, u), 0);
        }
    }
}

TEST_P(SolverAllocation, HoldsForOtherRightSidesAndStartVectors) {
    const int id = GetParam();
    for (const System& system : systems()) {
        SCOPED_TRACE(system.name);
        const std::unique_ptr<LinearSolver> solver = makeSolver(id);
        const int n = system.A->Rows();
        const RealVector b = test::wavyVector(n);
        RealVector lost = b;
        lost[n / 2] = std::nanf("");
        std::unique_ptr<RealVector> u = test::start(b);
        blocksOfSolve(*solver, *system.A, b, u);

        // A solved start, a breakdown, and two that iterate.
        for (const RealVector& other : {RealVector(n), lost, RealVector(n, 3.0F), b}) {
            EXPECT_EQ(blocksOfSolve(*solver, *system.A, other, u), 0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Ids, SolverAllocation, testing::Range(0, kFirstPreconditionedId));

// What a `Solve` with a preconditioner asks for is the preconditioner, whatever follows.
TEST(SolverAllocation, IsThatOfThePreconditionerWhereThereIsOne) {
    const SilencedOutput silence;
    const BandMatrix A = test::windyPlane(9, 7, 2.0F);
    const RealVector b = test::wavyVector(63);
    for (int id = kFirstPreconditionedId; id < kSolverCount; ++id) {
        SCOPED_TRACE(kSolvers[id].name);
        std::vector<long> asked;
        for (const int maxIter : {1, 2, 7}) {
            const std::unique_ptr<LinearSolver> solver = makeSolver(id, maxIter);
            std::unique_ptr<RealVector> u = test::start(b);
            blocksOfSolve(*solver, A, b, u);
            asked.push_back(blocksOfSolve(*solver, A, b, u));
        }

        EXPECT_GT(asked[0], 0);
        EXPECT_EQ(asked[1], asked[0]);
        EXPECT_EQ(asked[2], asked[0]);
    }
}

TEST(SolverAllocation, IsSeenByThisProgram) {
    const std::unique_ptr<LinearSolver> solver = makeSolver(/*id=*/6);
    const FTriDiagonalMatrix A = test::diffusionLine(37, 2.0F);
    const RealVector b = test::wavyVector(37);
    std::unique_ptr<RealVector> u = test::start(b);

    EXPECT_GT(blocksOfSolve(*solver, A, b, u), 0);
}

}  // namespace
}  // namespace orv
