#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

#include "solvers/lanczos/minres_solver.h"
#include "solvers/lanczos/mr_solver.h"
#include "solvers/lanczos/qmr_solver.h"
#include "solvers/lanczos/symmlq_solver.h"
#include "solvers/lanczos/tfqmr_solver.h"
#include "support/matrix_support.h"
#include "support/solver_runs.h"
#include "support/solver_systems.h"
#include "support/watching_matrix.h"

namespace orv {
namespace {

using test::diffusionLine;
using test::diffusionPlane;
using test::dominantMatrix;
using test::makeOf;
using test::sameVectorBits;
using test::start;
using test::wavyVector;

/// A member of the family and what the common laws need to know of it.
struct Member {
    std::string name;
    test::SolverMaker make;
    int startProducts;
    int products;
    bool keepsNan;
};

// The name that a failure shows.
void PrintTo(const Member& member, std::ostream* stream) {
    *stream << member.name;
}

class LanczosFamily : public testing::TestWithParam<Member> {
  protected:
    std::unique_ptr<IterativeLinearSolver> make(int maxIter, double tol) const {
        return GetParam().make(maxIter, tol);
    }
};

TEST_P(LanczosFamily, StartsFromTheRightHandSideWhenNoStartIsGiven) {
    const FTriDiagonalMatrix A = diffusionLine(12, 1.0F);
    const RealVector b = wavyVector(12);

    const auto fromNull = make(3, 1e-12)->Solve(A, b, nullptr);

    EXPECT_TRUE(sameVectorBits(*fromNull, *make(3, 1e-12)->Solve(A, b, start(b))));
    EXPECT_FALSE(
        sameVectorBits(*fromNull, *make(3, 1e-12)->Solve(A, b, start(RealVector(12)))));
}

TEST_P(LanczosFamily, ReturnsTheStartWithoutIterations) {
    for (const int maxIter : {0, -1, INT_MIN}) {
        const auto solver = make(maxIter, 0.0001);

        const auto u = solver->Solve(diffusionLine(4, 1.0F), wavyVector(4), nullptr);

        EXPECT_TRUE(sameVectorBits(*u, wavyVector(4))) << maxIter;
        EXPECT_FALSE(solver->converged()) << maxIter;
    }
}

TEST_P(LanczosFamily, LeavesConvergedLowWhenTheStartIsGoodEnough) {
    // The tolerance is below the norms of the data and of the start residual, and wide enough
    // for every member to raise the flag in its first solve.
    const auto solver = make(50, 100.0);
    const FullMatrix A = dominantMatrix(12);
    (void)solver->Solve(A, wavyVector(12), start(RealVector(12, 1.0F)));
    ASSERT_TRUE(solver->converged());

    const auto u = solver->Solve(A, RealVector(12), start(RealVector(12)));

    EXPECT_TRUE(sameVectorBits(*u, RealVector(12)));
    EXPECT_FALSE(solver->converged());
}

TEST_P(LanczosFamily, UsedSolverGivesTheBitsOfANewOneAfterAChangeOfSize) {
    const auto used = make(6, 1e-9);
    for (const int n : {9, 20, 9, 4, 30}) {
        const FullMatrix A = dominantMatrix(n);

        const auto expected = make(6, 1e-9)->Solve(A, wavyVector(n), nullptr);

        EXPECT_TRUE(sameVectorBits(*used->Solve(A, wavyVector(n), nullptr), *expected)) << n;
        EXPECT_EQ(expected->size(), n);
    }
}

TEST_P(LanczosFamily, FillsWithNanAndStaysUnconvergedWhenTheDataAreNan) {
    const auto solver = make(4, 0.0001);
    const FTriDiagonalMatrix A = diffusionLine(6, 1.0F);
    RealVector b = wavyVector(6);
    b[2] = std::numeric_limits<float>::quiet_NaN();

    const auto u = solver->Solve(A, b, start(wavyVector(6)));

    for (int i = 0; i < 6; ++i) {
        EXPECT_TRUE(std::isnan((*u)[i])) << i;
    }
    EXPECT_FALSE(solver->converged());
}

TEST_P(LanczosFamily, ForgetsNanDataUnlessItIsKnownToKeepThem) {
    const auto used = make(5, 1e-9);
    const FTriDiagonalMatrix A = diffusionLine(8, 1.0F);
    const RealVector nan(8, std::numeric_limits<float>::quiet_NaN());
    (void)used->Solve(A, nan, nullptr);

    const auto u = used->Solve(A, wavyVector(8), nullptr);

    EXPECT_EQ(std::isnan((*u)[0]), GetParam().keepsNan);
    EXPECT_EQ(sameVectorBits(*u, *make(5, 1e-9)->Solve(A, wavyVector(8), nullptr)),
              !GetParam().keepsNan);
}

TEST_P(LanczosFamily, NeverConvergesWithAToleranceOfZeroOrNan) {
    for (const double tol : {0.0, std::numeric_limits<double>::quiet_NaN()}) {
        const auto solver = make(9, tol);

        (void)solver->Solve(diffusionPlane(6, 5, 1.0F), wavyVector(30), nullptr);

        EXPECT_FALSE(solver->converged()) << tol;
    }
}

TEST_P(LanczosFamily, EndsAtTheStartTestWithAToleranceAboveEveryNorm) {
    const auto solver = make(9, std::numeric_limits<double>::max());
    const RealVector u0(30, 3.0F);

    const auto u = solver->Solve(diffusionPlane(6, 5, 1.0F), wavyVector(30), start(u0));

    EXPECT_TRUE(sameVectorBits(*u, u0));
    EXPECT_FALSE(solver->converged());
}

TEST_P(LanczosFamily, IteratesFromAStartAtTheTolerance) {
    // b, A b and the start residual (0, -5) have the norm 5.
    const auto productsOf = [&](double tol) {
        const test::WatchingMatrix A(test::diagonal({1.0F, 1.0F}));
        (void)make(1, tol)->Solve(A, test::vectorOf({5.0F, 0.0F}), start(RealVector(2, 5.0F)));
        return A.products();
    };

    EXPECT_GT(productsOf(5.0), GetParam().startProducts);
    EXPECT_LE(productsOf(std::nextafter(5.0, 6.0)), GetParam().startProducts);
}

TEST_P(LanczosFamily, MakesTheStatedProductsInMemoryThatItKeeps) {
    const test::WatchingMatrix A(diffusionLine(15, 1.0F));
    const auto solver = make(3, 1e-12);
    (void)solver->Solve(A, wavyVector(15), nullptr);
    const auto targets = A.targets();
    const int products = A.products();

    (void)solver->Solve(A, wavyVector(15), nullptr);

    EXPECT_EQ(products, GetParam().startProducts + 3 * GetParam().products);
    EXPECT_EQ(targets.count(nullptr), 0U);
    EXPECT_EQ(A.targets(), targets);
}

std::unique_ptr<IterativeLinearSolver> makeMr(int maxIter, double tol) {
    return std::make_unique<MrSolver>(maxIter, tol, /*rangeRestricted=*/false);
}

std::unique_ptr<IterativeLinearSolver> makeRrmr(int maxIter, double tol) {
    return std::make_unique<MrSolver>(maxIter, tol, /*rangeRestricted=*/true);
}

INSTANTIATE_TEST_SUITE_P(, LanczosFamily,
                         testing::Values(Member{"Minres", makeOf<MinresSolver>, 1, 1, true},
                                         Member{"Mr", makeMr, 0, 1, false},
                                         Member{"Rrmr", makeRrmr, 1, 1, false},
                                         Member{"Symmlq", makeOf<SymmlqSolver>, 1, 1, true},
                                         Member{"Qmr", makeOf<QmrSolver>, 1, 2, false},
                                         Member{"Tfqmr", makeOf<TfqmrSolver>, 2, 2, false}),
                         [](const testing::TestParamInfo<Member>& tested) {
                             return tested.param.name;
                         });

}  // namespace
}  // namespace orv
