#include "algebra/storage/bi_diagonal_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "algebra/storage/lower_bi_diagonal_matrix.h"
#include "algebra/storage/unit_lower_bi_diagonal_matrix.h"
#include "algebra/storage/unit_upper_bi_diagonal_matrix.h"
#include "algebra/storage/upper_bi_diagonal_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::denseProduct;
using test::expectNear;
using test::randomise;
using test::randomVector;
using test::vectorOf;

template <class T>
class BiDiagonal : public testing::Test {};
using All = testing::Types<LowerBiDiagonalMatrix, UnitLowerBiDiagonalMatrix,
                           UpperBiDiagonalMatrix, UnitUpperBiDiagonalMatrix>;
TYPED_TEST_SUITE(BiDiagonal, All);

TYPED_TEST(BiDiagonal, SizeCountsBothDiagonals) {
    EXPECT_EQ(TypeParam(4).Size(), 7);
    EXPECT_EQ(TypeParam(1).Size(), 1);
}

TYPED_TEST(BiDiagonal, ProductsMatchTheDenseSum) {
    for (const int n : {1, 2, 7}) {
        TypeParam A(n);
        randomise(A, 3, 2);
        const RealVector x = randomVector(n, 4);

        expectNear(*A.Multiply(x, nullptr), denseProduct(A, x, false), 1e-6);
        expectNear(*A.MultiplyTransposed(x, nullptr), denseProduct(A, x, true), 1e-6);
    }
    EXPECT_EQ(TypeParam(3).Multiply(RealVector(2), nullptr), nullptr);
}

TYPED_TEST(BiDiagonal, RangeProductsAddToTheSlice) {
    TypeParam A(2);
    A.Fill(2.0f);
    const auto whole = A.Multiply(vectorOf({1, 2}), nullptr);

    const auto y =
        A.MultiplyRange(vectorOf({9, 1, 2}), 1, 1, 1, std::make_unique<RealVector>(3, 10.0f));

    EXPECT_EQ((*y)[0], 10.0f);
    EXPECT_EQ((*y)[1], 10.0f + (*whole)[0]);
    EXPECT_EQ((*y)[2], 10.0f + (*whole)[1]);
}

TYPED_TEST(BiDiagonal, SolveAndInverseUndoTheProduct) {
    for (const int n : {1, 2, 6}) {
        TypeParam A(n);
        randomise(A, 3, 3);
        const RealVector x = randomVector(n, 4);
        const auto b = A.Multiply(x, nullptr);
        const std::vector<double> expected(x.data(), x.data() + x.size());

        expectNear(*A.Solve(*b, nullptr), expected, 1e-5);
        expectNear(*A.Inverse()->Multiply(*b, nullptr), expected, 1e-5);
    }
    EXPECT_EQ(TypeParam(3).Solve(RealVector(2), nullptr), nullptr);
}

TYPED_TEST(BiDiagonal, SubstitutionsEqualTheDenseOnesToTheBit) {
    for (const int n : {1, 2, 3, 9}) {
        for (const bool withInfinity : {false, true}) {
            TypeParam A(n);
            randomise(A, 5, 2);
            RealVector b = randomVector(n, 8);
            if (withInfinity) {
                b[n / 2] = HUGE_VALF;
            }
            const test::PlainMatrix dense(A);
            // NaN compares equal to NaN here, whatever its bits.
            const auto expectSame = [n](const RealVector& x, const RealVector& y) {
                for (int i = 0; i < n; ++i) {
                    EXPECT_TRUE(x[i] == y[i] || (std::isnan(x[i]) && std::isnan(y[i]))) << i;
                }
            };

            expectSame(*A.SolveLower(b, nullptr), *dense.SolveLower(b, nullptr));
            expectSame(*A.SolveUpper(b, nullptr), *dense.SolveUpper(b, nullptr));
        }
    }
    EXPECT_EQ(TypeParam(3).SolveLower(RealVector(2), nullptr), nullptr);
    EXPECT_EQ(TypeParam(3).SolveUpper(RealVector(2), nullptr), nullptr);
}

TYPED_TEST(BiDiagonal, ScalesTheStoredElements) {
    TypeParam A(3, 2.0f);

    A.Scale(6);
    A.Divide(3);

    EXPECT_EQ(A.offDiagonal()[1], 4.0f);
    EXPECT_EQ(A.Max(), 4.0);
    EXPECT_EQ(A.Min(), 4.0);
    A.Fill(1);
    EXPECT_EQ(A.GetOffDiagonal(0), 1.0f);
}

TYPED_TEST(BiDiagonal, AccessorsReachTheVectors) {
    TypeParam A(4);

    A.SetOffDiagonal(0, 5);
    A.SetOffDiagonal1(3, 7);

    EXPECT_EQ(A.GetOffDiagonal1(1), 5.0f);
    EXPECT_EQ(A.GetOffDiagonal(2), 7.0f);
    EXPECT_EQ(A.offDiagonal()[2], 7.0f);
    test::expectSameElements(*A.Clone(), A);
    EXPECT_EQ(A.CloneTransposed(nullptr), nullptr);
}

TEST(UnitLowerBiDiagonalMatrix, DiagonalIsOneAndCannotBeSet) {
    UnitLowerBiDiagonalMatrix A(3);

    A.Set(1, 1, 9);
    A.Set(0, 1, 4);
    A.Set(1, 0, 4);

    EXPECT_EQ(A.Get(1, 1), 1.0f);
    EXPECT_EQ(A.Get1(2, 2), 1.0f);
    EXPECT_EQ(A.Get(0, 1), 4.0f);
    EXPECT_EQ(A.Get(1, 0), 0.0f);
    EXPECT_EQ(A.Sum(), 4.0);
}

TEST(LowerBiDiagonalMatrix, VectorsAreCopiedInByNumber) {
    LowerBiDiagonalMatrix A(3);

    A.SetVector(0, vectorOf({1, 2, 3}));
    A.SetVector(1, vectorOf({4, 5}));
    A.SetVector(1, vectorOf({7, 7, 7}));
    A.SetVector(2, vectorOf({8, 8}));

    EXPECT_EQ(A.Get(1, 1), 2.0f);
    EXPECT_EQ(A.Get(1, 2), 5.0f);
    EXPECT_EQ(A.Get(2, 1), 0.0f);
    EXPECT_EQ(A.GetMain1(3), 3.0f);
    A.SetMain(0, 6);
    A.SetMain1(2, 8);
    EXPECT_EQ(A.Get(0, 0), 6.0f);
    EXPECT_EQ(A.GetMain(1), 8.0f);
    EXPECT_EQ(A.Mean(), (6.0 + 8 + 3 + 4 + 5) / 5);
    EXPECT_EQ(A.StdDev(), std::sqrt((36.0 + 64 + 9 + 16 + 25) / 5 - 5.2 * 5.2));
}

TEST(UpperBiDiagonalMatrix, OffDiagonalLiesRightOfTheMainOne) {
    UpperBiDiagonalMatrix A(2);

    A.Set(1, 0, 3);
    A.Set(0, 1, 3);

    EXPECT_EQ(A.Get(1, 0), 3.0f);
    EXPECT_EQ(A.Get(0, 1), 0.0f);
}

TEST(Quirk, SharedPrintNames) {
    LowerBiDiagonalMatrix lower(2);
    lower.SetVector(0, vectorOf({1, 2}));
    lower.SetVector(1, vectorOf({3}));
    UnitLowerBiDiagonalMatrix unitLower(2, 3.0f);
    UpperBiDiagonalMatrix upper(2);
    upper.SetVector(0, vectorOf({1, 2}));
    upper.SetVector(1, vectorOf({3}));
    UnitUpperBiDiagonalMatrix unitUpper(2, 3.0f);

    EXPECT_EQ(test::standardOutputOf([&] { lower.Print(); }),
              "Lower BiDiagonal(2)\nD: v(2): [ 1.0000  2.0000 ]\nL1:v(1): [ 3.0000 ]\n"
              "   1.0000   0.0000\n   3.0000   2.0000\n\n");
    EXPECT_EQ(test::standardOutputOf([&] { unitLower.Print(); }),
              "Lower BiDiagonal(2)\nL1:v(1): [ 3.0000 ]\n"
              "   1.0000   0.0000\n   3.0000   1.0000\n\n");
    EXPECT_EQ(test::fileOutputOf([&](std::FILE* f) { upper.PrintTo(f); }),
              "Upper BiDiagonal(2)\nD: v(2): [  1.000   2.000 ]\nU1:v(1): [  3.000 ]\n"
              "   1.0000   3.0000\n   0.0000   2.0000\n\n");
    EXPECT_EQ(test::standardOutputOf([&] { unitUpper.Print(); }),
              "Upper BiDiagonal(2)\nU1:v(1): [ 3.0000 ]\n"
              "   1.0000   3.0000\n   0.0000   1.0000\n\n");
    // A matrix that is not symmetric prints the name all the same.
    EXPECT_EQ(test::standardOutputOf([&] { lower.ToUpper()->Print(); }).substr(0, 22),
              "Symmetric Matrix(2,2)\n");
}

}  // namespace
}  // namespace orv
