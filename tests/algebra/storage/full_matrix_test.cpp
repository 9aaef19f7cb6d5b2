#include "algebra/storage/full_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/matrix_support.h"

namespace orv {
namespace {

using test::denseProduct;
using test::elementsOf;
using test::expectNear;
using test::randomise;
using test::randomVector;
using test::vectorOf;

// Row 0 is (1, -2), row 1 is (3, 4).
FullMatrix small() {
    FullMatrix A(2);
    A.Set(0, 0, 1);
    A.Set(1, 0, -2);
    A.Set(0, 1, 3);
    A.Set1(2, 2, 4);
    return A;
}

TEST(FullMatrix, ColumnsAreTheFirstIndexOfTheStorage) {
    EXPECT_EQ(small().column(0)[1], 3.0f);
    EXPECT_EQ(small().column(1)[0], -2.0f);
    EXPECT_EQ(small().Get1(2, 1), -2.0f);
    EXPECT_EQ(small().Get(2, 0), 0.0f);
}

TEST(FullMatrix, MeasuresRunOverAllElements) {
    const FullMatrix A = small();

    EXPECT_EQ(A.Size(), 4);
    EXPECT_EQ(A.Sum(), 6.0);
    EXPECT_EQ(A.Mean(), 1.5);
    EXPECT_EQ(A.Min(), -2.0);
    EXPECT_EQ(A.Max(), 4.0);
    EXPECT_EQ(A.SumOfSquares(), 30.0);
    EXPECT_EQ(A.FrobeniusNorm2(), std::sqrt(30.0));
    EXPECT_EQ(A.StdDev(), std::sqrt(30.0 / 4 - 1.5 * 1.5));
}

TEST(Quirk, MaxSumNames) {
    EXPECT_EQ(small().MaxColumnSum(), 7.0);
    EXPECT_EQ(small().MaxRowSum(), 6.0);
}

TEST(FullMatrix, UpdatesChangeEveryElement) {
    FullMatrix A = small();

    A.AddMatrix(small());
    A.SubtractScalar(1);
    A.AddScalar(2);
    EXPECT_EQ(A.Get(1, 0), -3.0f);
    A.SubtractMatrix(small());
    A.Scale(6);
    A.Divide(2);
    EXPECT_EQ(A.Get(1, 1), 15.0f);
    A.Fill(2);
    EXPECT_EQ(A.Sum(), 8.0);
}

TEST(FullMatrix, ProductsMatchTheDenseSum) {
    FullMatrix A(9);
    randomise(A, 3, 2);
    const RealVector x = randomVector(9, 4);

    expectNear(*A.Multiply(x, nullptr), denseProduct(A, x, false), 1e-6);
    expectNear(*A.MultiplyTransposed(x, nullptr), denseProduct(A, x, true), 1e-6);
    EXPECT_EQ(elementsOf(*small().MultiplyRange(vectorOf({9, 1, 2}), 1, 0, 1,
                                                std::make_unique<RealVector>(3, 1.0f))),
              (std::vector<float>{-2, 12, 1}));
    EXPECT_EQ(
        elementsOf(*small().MultiplyTransposedRange(vectorOf({9, 1, 2}), 1, 1, 0, nullptr)),
        (std::vector<float>{0, 7, 6}));
    EXPECT_EQ(A.Multiply(RealVector(8), nullptr), nullptr);
}

TEST(FullMatrix, TransposedCloneUsesTheGivenMatrix) {
    const auto made = small().CloneTransposed(nullptr);
    const auto given = small().CloneTransposed(std::make_unique<FullMatrix>(2, 9.0f));

    EXPECT_EQ(made->Get(0, 1), -2.0f);
    test::expectSameElements(*given, *made);
    EXPECT_EQ(small().CloneTransposed(std::make_unique<FullMatrix>(3)), nullptr);
    test::expectSameElements(*small().Duplicate(), small());
}

TEST(FullMatrix, IncompleteLu0OfAFullPatternIsTheExactFactorisation) {
    FullMatrix A(5);
    randomise(A, 3, 6);
    const RealVector x = randomVector(5, 4);
    const auto b = A.Multiply(x, nullptr);

    const auto F = A.IncompleteLU0();

    expectNear(*F->SolveLU(*b, nullptr), std::vector<double>(x.data(), x.data() + x.size()),
               1e-5);
}

TEST(FullMatrix, IncompleteLu0KeepsZerosAndDropsFillIn) {
    // Rows (2, 1, 1), (4, 5, 0), (2, 0, 6): exact elimination would fill both zeros.
    FullMatrix A(3);
    A.Set(0, 0, 2);
    A.Set(1, 0, 1);
    A.Set(2, 0, 1);
    A.Set(0, 1, 4);
    A.Set(1, 1, 5);
    A.Set(0, 2, 2);
    A.Set(2, 2, 6);

    const auto F = A.IncompleteLU0();

    EXPECT_EQ(F->Get(0, 1), 2.0f);
    EXPECT_EQ(F->Get(1, 1), 3.0f);
    EXPECT_EQ(F->Get(2, 1), 0.0f);
    EXPECT_EQ(F->Get(0, 2), 1.0f);
    EXPECT_EQ(F->Get(1, 2), 0.0f);
    EXPECT_EQ(F->Get(2, 2), 5.0f);
}

TEST(FullMatrix, PrintsItsNameBeforeTheGeneralForm) {
    EXPECT_EQ(test::standardOutputOf([] { small().Print(); }),
              "Full Symmetric Matrix(2,2)\n   1.0000  -2.0000\n   3.0000   4.0000\n\n");
}

}  // namespace
}  // namespace orv
