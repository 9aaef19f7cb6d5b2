#include <gtest/gtest.h>

#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "algebra/storage/lower_bi_diagonal_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::PlainMatrix;
using test::randomise;

TEST(Matrix, DefaultsOfTheTableYieldNothing) {
    PlainMatrix A(3);
    randomise(A, 1, 2);

    EXPECT_EQ(A.Size(), 9);
    EXPECT_EQ(A.ReservedMeasure(), 0.0);
    EXPECT_EQ(A.DiagonalMeasure(), 0.0);
    EXPECT_EQ(A.FrobeniusNorm(), 0.0);
    EXPECT_EQ(A.Sum(), 0.0);
    EXPECT_EQ(A.Min(), 0.0);
    EXPECT_EQ(A.Max(), 0.0);
    EXPECT_EQ(A.Mean(), 0.0);
    EXPECT_EQ(A.StdDev(), 0.0);
    EXPECT_EQ(A.RowPattern(0, std::make_unique<IndexList>(2)), nullptr);
    EXPECT_EQ(A.ColumnPattern(0, nullptr), nullptr);
    EXPECT_EQ(A.RowPattern1(1, nullptr), nullptr);
    EXPECT_EQ(A.ColumnPattern1(1, nullptr), nullptr);
    EXPECT_EQ(A.Duplicate(), nullptr);
    EXPECT_EQ(A.Solve(RealVector(3), nullptr), nullptr);
    EXPECT_EQ(A.Inverse(), nullptr);
    EXPECT_EQ(A.IncompleteLU0(), nullptr);
    EXPECT_EQ(A.IncompleteFactor1(), nullptr);
    EXPECT_EQ(A.IncompleteFactor2(), nullptr);
    EXPECT_EQ(A.IncompleteFactor3(0.1), nullptr);
    EXPECT_EQ(A.IncompleteFactor4(), nullptr);
    EXPECT_EQ(A.IncompleteFactor5(), nullptr);
    EXPECT_EQ(A.IncompleteFactor6(), nullptr);
    EXPECT_EQ(A.FullOnlyFactor(), nullptr);
    EXPECT_EQ(A.ReservedIteration(nullptr, nullptr, nullptr, nullptr), nullptr);
}

TEST(Matrix, AssignCopiesOrTransposesOfTheSameOrder) {
    PlainMatrix A(3);
    randomise(A, 1, 0);
    PlainMatrix same(3);
    PlainMatrix transposed(3);
    PlainMatrix larger(4);

    same.Assign(A, 0);
    transposed.Assign(A, 1);
    larger.Assign(A, 0);
    larger.Assign(A, 1);

    test::expectSameElements(same, A);
    EXPECT_EQ(transposed.Get(2, 0), A.Get(0, 2));
    EXPECT_EQ(transposed.Get(0, 1), A.Get(1, 0));
    test::expectSameElements(larger, PlainMatrix(4));
}

TEST(Quirk, AssignUnknownFlag) {
    PlainMatrix larger(3);
    randomise(larger, 1, 0);
    PlainMatrix A(2);

    A.Assign(larger, 7);

    EXPECT_EQ(A.Get(0, 1), larger.Get(1, 0));
    EXPECT_EQ(A.Get(1, 0), larger.Get(0, 1));
}

TEST(Matrix, ElementwiseUpdatesChangeEveryPosition) {
    PlainMatrix A(2);
    PlainMatrix B(2);
    A.Fill(6.0f);
    B.Fill(2.0f);

    A.AddMatrix(B);
    EXPECT_EQ(A.Get(1, 0), 8.0f);
    A.SubtractMatrix(B);
    A.SubtractMatrix(B);
    EXPECT_EQ(A.Get(0, 1), 4.0f);
    A.AddScalar(3);
    A.SubtractScalar(1);
    EXPECT_EQ(A.Get(1, 1), 6.0f);
    A.Scale(5);
    A.Divide(3);
    EXPECT_EQ(A.Get(0, 0), 10.0f);
    A.AddMatrix(PlainMatrix(3));
    A.SubtractMatrix(PlainMatrix(3));
    EXPECT_EQ(A.Get(0, 0), 10.0f);
}

TEST(Matrix, PartsKeepTheirTriangle) {
    PlainMatrix A(4);
    randomise(A, 3, 2);
    const auto strictLower = A.ToStrictLower();
    const auto strictUpper = A.ToStrictUpper();
    const auto lower = A.ToLower();
    const auto upper = A.ToUpper();
    const auto unitLower = A.ToUnitLower();
    const auto unitUpper = A.ToUnitUpper();
    const auto diagonal = A.ToDiagonal();

    for (int j = 0; j < 4; ++j) {
        for (int i = 0; i < 4; ++i) {
            const float a = A.Get(i, j);
            EXPECT_EQ(strictLower->Get(i, j), i < j ? a : 0.0f);
            EXPECT_EQ(strictUpper->Get(i, j), i > j ? a : 0.0f);
            EXPECT_EQ(lower->Get(i, j), i <= j ? a : 0.0f);
            EXPECT_EQ(upper->Get(i, j), i >= j ? a : 0.0f);
            EXPECT_EQ(unitLower->Get(i, j), i < j ? a : i == j ? 1.0f : 0.0f);
            EXPECT_EQ(unitUpper->Get(i, j), i > j ? a : i == j ? 1.0f : 0.0f);
            EXPECT_EQ(diagonal->Get(i, j), i == j ? a : 0.0f);
        }
    }
    test::expectSameElements(*A.ToFull(), A);
}

TEST(Matrix, MeanCountsTheStoredElements) {
    FTriDiagonalMatrix tridiagonal(4, 1.0f);
    LowerBiDiagonalMatrix bidiagonal(4, 1.0f);
    tridiagonal.Set(0, 0, 11.0f);
    bidiagonal.Set(0, 0, 8.0f);

    EXPECT_EQ(tridiagonal.Mean(), 20.0 / 10.0);
    EXPECT_EQ(bidiagonal.Mean(), 14.0 / 7.0);
}

TEST(Matrix, PrintsTheGeneralForm) {
    PlainMatrix A(2);
    A.Set(1, 0, 1.5f);
    A.Set(0, 1, -12.25f);
    const std::string text =
        "Symmetric Matrix(2,2)\n   0.0000   1.5000\n -12.2500   0.0000\n\n";

    EXPECT_EQ(test::standardOutputOf([&] { A.Print(); }), text);
    EXPECT_EQ(test::fileOutputOf([&](std::FILE* f) { A.PrintTo(f); }), text);
}

}  // namespace
}  // namespace orv
