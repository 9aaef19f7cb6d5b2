#include "algebra/preconditioners/compact_incomplete_lu0.h"

#include <gtest/gtest.h>

#include <memory>

#include "algebra/preconditioners/full_of.h"
#include "algebra/storage/band_matrix.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "base/text_output.h"
#include "support/matrix_support.h"
#include "support/solver_systems.h"

namespace orv {
namespace {

using test::denseSolve;
using test::expectNear;
using test::expectSameBits;
using test::wavyVector;
using test::windyPlane;

// Rows (4, 2), (2, 5), whose factors are 1, 0.5 and 4, 2, 4.
FullMatrix small() {
    return test::fullOf(4, 2, 2, 5);
}

TEST(CompactIncompleteLU0, SolvesWithTheFactorsThatItHolds) {
    // work = (8, 13 - 0.5 8) = (8, 9); x = ((8 - 2 2.25) / 4, 9 / 4).
    const FullMatrix A = small();

    const auto x = CompactIncompleteLU0(A).Solve(test::vectorOf({8, 13}), nullptr);

    EXPECT_EQ(test::elementsOf(*x), (std::vector<float>{0.875F, 2.25F}));
}

TEST(CompactIncompleteLU0, IsExactWhereThePatternLosesNothing) {
    const std::unique_ptr<Matrix> dense = test::spdMatrix(9).ToFull();
    // Silences the trace of the band.
    const SilencedOutput silence;
    const BandMatrix line = windyPlane(12, 1, 3.0F);

    expectNear(*CompactIncompleteLU0(*dense).Solve(wavyVector(9), nullptr),
               denseSolve(*dense, wavyVector(9)), 1e-5);
    expectNear(*CompactIncompleteLU0(line).Solve(wavyVector(12), nullptr),
               denseSolve(line, wavyVector(12)), 1e-4);
}

TEST(CompactIncompleteLU0, OnAPlaneSolvesTheIncompleteFactors) {
    const SilencedOutput silence;
    const BandMatrix A = windyPlane(5, 4, 2.0F);
    const RealVector b = wavyVector(20);
    const CompactIncompleteLU0 M(A);
    const auto lu = A.IncompleteLU0();

    const auto x = M.Solve(b, nullptr);
    const auto again = M.Solve(b, std::make_unique<RealVector>(20, 3.0F));

    expectSameBits(*x, *lu->SolveUpper(*lu->SolveUnitLower(b, nullptr), nullptr));
    expectSameBits(*again, *x);
    EXPECT_GT(test::largestError(*x, denseSolve(A, b)), 1e-3) << "fill-in was dropped";
}

TEST(CompactIncompleteLU0, OffersNoFactorsAndNoProducts) {
    const FullMatrix A = small();
    CompactIncompleteLU0 M(A);
    const RealVector x(2, 1.0F);

    M.SetFactor(0, A.Clone());

    EXPECT_EQ(M.FactorCount(), 2);
    EXPECT_EQ(M.GetFactor(0), nullptr);
    EXPECT_EQ(M.Multiply(x, nullptr), nullptr);
    EXPECT_EQ(M.MultiplyTransposed(x, nullptr), nullptr);
    EXPECT_EQ(M.MultiplyAdjoint(x, nullptr), nullptr);
    EXPECT_EQ(M.MultiplyConjugate(x, nullptr), nullptr);
    EXPECT_EQ(M.Inverse(), nullptr);
}

TEST(CompactIncompleteLU0, GivesNullForAMatrixWithoutIncompleteFactors) {
    const FTriDiagonalMatrix A = test::diffusionLine(4, 1.0F);

    const CompactIncompleteLU0 M(A);

    EXPECT_EQ(M.Solve(RealVector(4), nullptr), nullptr);
    EXPECT_EQ(M.Clone()->Solve(RealVector(4), nullptr), nullptr);
    EXPECT_EQ(test::standardOutputOf([&] { M.Print(); }),
              "Compact IncompleteLU0 for full matrices\n");
}

TEST(CompactIncompleteLU0, RefusesAnotherSizeAndGoesOn) {
    const FullMatrix A = small();
    const CompactIncompleteLU0 M(A);

    EXPECT_EQ(M.Solve(RealVector(3), nullptr), nullptr);
    EXPECT_EQ(M.Solve(RealVector(2), std::make_unique<RealVector>(1)), nullptr);
    EXPECT_NE(M.Solve(RealVector(2), nullptr), nullptr);
}

TEST(CompactIncompleteLU0, KnowsItsSourceAndClonesDeeply) {
    FullMatrix A = small();
    auto M = std::make_unique<CompactIncompleteLU0>(A);
    const auto before = M->Solve(RealVector(2, 1.0F), nullptr);
    const std::unique_ptr<Matrix> clone = M->Clone();
    M.reset();

    A.Set(0, 0, 9.0F);

    expectSameBits(*clone->Solve(RealVector(2, 1.0F), nullptr), *before);
    const auto* const copy = dynamic_cast<const PreconditionerMatrix*>(clone.get());
    ASSERT_NE(copy, nullptr);
    test::expectSameElements(*copy->SourceClone(), A);
}

TEST(CompactIncompleteLU0, PrintsItsNameAndTheFactors) {
    const FullMatrix A = small();

    EXPECT_EQ(test::standardOutputOf([&] { CompactIncompleteLU0(A).Print(); }),
              "Compact IncompleteLU0 for full matrices\n"
              "Full Symmetric Matrix(2,2)\n"
              "   4.0000   2.0000\n   0.5000   4.0000\n\n");
}

}  // namespace
}  // namespace orv
