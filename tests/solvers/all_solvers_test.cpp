// What every solver of the catalogue does on the three kinds of system.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "base/text_output.h"
#include "solvers/iterative_linear_solver.h"
#include "solvers/linear_solver_list.h"
#include "solvers/solver_catalogue.h"
#include "support/direct_solution.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::directSolution;
using test::largestError;
using test::residualNorm;
using test::sameVectorBits;
using test::start;
using test::wavyVector;
using test::windyPlane;

constexpr int kIlu0 = 41;

/// How a solver ends on a system: with the solution as far as floats hold it, near it, with
/// other finite numbers, or with samples that are no numbers.
enum class End { Exact, Near, Wrong, Lost };

struct Ends {
    End line;
    End plane;
    End windy;
};

constexpr Ends all(End end) {
    return {end, end, end};
}

// By id.
constexpr std::array<Ends, kSolverCount> kEnds = {{
    all(End::Exact),                       // Thomas
    all(End::Wrong),                       // Jacobi gives A b
    all(End::Exact),                       // GS
    all(End::Exact),                       // SOR
    all(End::Exact),                       // Descent
    all(End::Exact),                       // BB
    all(End::Near),                        // CBB stops by the squared norm
    all(End::Exact),                       // CG
    all(End::Exact),                       // CG-NE
    all(End::Exact),                       // CG-NR
    all(End::Exact),                       // CGS-LS
    all(End::Wrong),                       // CGS-LSsh solves the shifted system
    all(End::Wrong),                       // CGi
    all(End::Wrong),                       // MINRES loses the first vector
    all(End::Wrong),                       // MR adds to its start vector
    {End::Exact, End::Exact, End::Wrong},  // SYMMLQ needs symmetry
    all(End::Wrong),                       // QMR keeps its first directions
    all(End::Wrong),                       // TFQMR
    all(End::Exact),                       // BiCG
    all(End::Exact),                       // CGS
    all(End::Exact),                       // BiCGStab
    all(End::Lost),                        // QmrCGStab goes on beyond convergence
    all(End::Near),                        // QmrCGStab2
    all(End::Exact),                       // BiCGStab(2)
    all(End::Near),                        // GMRES(m) stops by the relative norm
    all(End::Exact),                       // GCR(m)
    all(End::Wrong),                       // MGCR(m)
    all(End::Exact),                       // GMRESR
    all(End::Exact),                       // GMRESRAlt
    all(End::Lost),                        // GMRES*-CBB
    all(End::Exact),                       // GMRES*-BiCGstab
    all(End::Wrong),                       // RRMR
    all(End::Wrong),                       // RRGMRES(m) gives its start vector back
    all(End::Exact),                       // SGS-BB
    all(End::Exact),                       // SGS-CG
    all(End::Exact),                       // SGS-BiCGStab
    all(End::Wrong),                       // SGS-BiCGStab(2)
    all(End::Exact),                       // SSOR-BB
    all(End::Exact),                       // SSOR-CG
    all(End::Exact),                       // SSOR-BiCGStab
    all(End::Wrong),                       // SSOR-BiCGStab(2)
    all(End::Exact),                       // ILU0-BiCGStab
}};

std::unique_ptr<LinearSolver> make(int id, int maxIter) {
    return LinearSolverList(50, 10).Create(id, maxIter, maxIter, 1e-4);
}

/// The incomplete factors need more than the three diagonals' own class.
bool takes(int id, const Matrix& A) {
    return id != kIlu0 || A.IncompleteLU0() != nullptr;
}

End endOf(const Matrix& A, const RealVector& b, const RealVector& u) {
    const double error = largestError(u, directSolution(A, b));
    if (!std::isfinite(error)) {
        return End::Lost;
    }
    // All eigenvalues are above 1, so an error is at most the residual: the tolerance 1e-4 and
    // the roundings of some 70 samples of up to 60.
    if (residualNorm(A, b, u) < 1e-3 && error < 1e-4) {
        return End::Exact;
    }
    return error < 0.01 ? End::Near : End::Wrong;
}

TEST(AllSolvers, EndAsTheirPagesSay) {
    const SilencedOutput silence;
    const FTriDiagonalMatrix line = diffusionLine(60, 2.0F);
    const BandMatrix plane = diffusionPlane(9, 8, 1.5F);
    const BandMatrix windy = windyPlane(9, 8, 1.5F);
    for (int id = 0; id < kSolverCount; ++id) {
        SCOPED_TRACE(kSolvers[id].name);
        const Ends& ends = kEnds[static_cast<std::size_t>(id)];
        const auto endOn = [&](const Matrix& A) {
            const RealVector b = wavyVector(A.Rows());
            return endOf(A, b, *make(id, 200)->Solve(A, b, nullptr));
        };

        if (takes(id, line)) {
            EXPECT_EQ(endOn(line), ends.line);
        }
        EXPECT_EQ(endOn(plane), ends.plane);
        EXPECT_EQ(endOn(windy), ends.windy);
    }
}

TEST(AllSolvers, GiveTheSameBitsAgain) {
    const SilencedOutput silence;
    const BandMatrix A = windyPlane(7, 5, 1.0F);
    const RealVector b = wavyVector(35);
    for (int id = 0; id < kSolverCount; ++id) {
        EXPECT_TRUE(sameVectorBits(*make(id, 9)->Solve(A, b, nullptr),
                                   *make(id, 9)->Solve(A, b, nullptr)))
            << kSolvers[id].name;
    }
}

TEST(AllSolvers, StartFromTheRightSideWhenNoStartIsGiven) {
    const SilencedOutput silence;
    const BandMatrix A = diffusionPlane(6, 5, 1.0F);
    const RealVector b = wavyVector(30);
    for (int id = 0; id < kSolverCount; ++id) {
        // The sweeps make their own start, zero.
        const bool sweeps = id == 2 || id == 3;
        EXPECT_TRUE(
            sameVectorBits(*make(id, 4)->Solve(A, b, nullptr),
                           *make(id, 4)->Solve(A, b, start(sweeps ? RealVector(30) : b))))
            << kSolvers[id].name;
    }
}

TEST(AllSolvers, LeaveTheStartWithoutIterations) {
    const SilencedOutput silence;
    const BandMatrix A = diffusionPlane(4, 4, 1.0F);
    const RealVector b = wavyVector(16);
    const RealVector u(16, 3.0F);
    for (int id = 1; id < kSolverCount; ++id) {
        // BiCG throws the start away before it begins.
        const RealVector expected = id == 18 ? RealVector(16) : u;
        for (const int limit : {0, -1}) {
            EXPECT_TRUE(sameVectorBits(*make(id, limit)->Solve(A, b, start(u)), expected))
                << kSolvers[id].name;
        }
    }
}

TEST(AllSolvers, SolveSystemsOfAnySizeOneAfterTheOther) {
    const SilencedOutput silence;
    for (int id = 0; id < kSolverCount; ++id) {
        SCOPED_TRACE(kSolvers[id].name);
        const auto solver = make(id, 5);
        for (const int n : {7, 1, 2, 3, 40, 7}) {
            const FTriDiagonalMatrix A = diffusionLine(n, 1.0F);
            if (takes(id, A)) {
                solver->Reset();
                EXPECT_EQ(solver->Solve(A, wavyVector(n), nullptr)->size(), n);
            }
        }
    }
}

TEST(AllSolvers, LetSamplesThatAreNoNumbersThrough) {
    const SilencedOutput silence;
    const BandMatrix A = diffusionPlane(4, 3, 1.0F);
    RealVector b = wavyVector(12);
    b[5] = std::nanf("");
    for (int id = 0; id < kSolverCount; ++id) {
        SCOPED_TRACE(kSolvers[id].name);
        const auto solver = make(id, 8);

        const auto u = solver->Solve(A, b, nullptr);

        EXPECT_TRUE(std::isnan((*u)[5]));
        const auto* const iterative = dynamic_cast<const IterativeLinearSolver*>(solver.get());
        EXPECT_FALSE(iterative != nullptr && iterative->converged());
    }
}

}  // namespace
}  // namespace orv
