#include "algebra/storage/triangular_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algebra/storage/lower_triangular_matrix.h"
#include "algebra/storage/upper_triangular_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::denseProduct;
using test::elementsOf;
using test::expectNear;
using test::randomise;
using test::randomVector;
using test::vectorOf;

template <class T>
class Triangular : public testing::Test {};
using Both = testing::Types<LowerTriangularMatrix, UpperTriangularMatrix>;
TYPED_TEST_SUITE(Triangular, Both);

// 1 to 6 in the order of the rows.
template <class T>
T oneToSix() {
    T A(3);
    float value = 1.0f;
    for (int j = 0; j < 3; ++j) {
        for (int i = 0; i < 3; ++i) {
            A.Set(i, j, value);
            value += A.Get(i, j) == value ? 1.0f : 0.0f;
        }
    }
    return A;
}

TEST(LowerTriangularMatrix, StoresTheColumnsUpToTheRow) {
    const auto A = oneToSix<LowerTriangularMatrix>();

    EXPECT_EQ(A.Get(0, 2), 4.0f);
    EXPECT_EQ(A.Get(2, 2), 6.0f);
    EXPECT_EQ(A.Get(2, 0), 0.0f);
    EXPECT_EQ(A.Get1(1, 3), 4.0f);
    EXPECT_EQ(A.MaxRowSum(), 15.0);
}

TEST(UpperTriangularMatrix, StoresTheColumnsFromTheRowOn) {
    const auto A = oneToSix<UpperTriangularMatrix>();

    EXPECT_EQ(A.Get(2, 0), 3.0f);
    EXPECT_EQ(A.Get(2, 2), 6.0f);
    EXPECT_EQ(A.Get(0, 2), 0.0f);
    EXPECT_EQ(A.Get1(3, 1), 3.0f);
    EXPECT_EQ(A.MaxRowSum(), 9.0);
}

TYPED_TEST(Triangular, SizeAndMeanCountAllPositions) {
    const TypeParam A = oneToSix<TypeParam>();

    EXPECT_EQ(A.Size(), 9);
    EXPECT_EQ(A.Sum(), 21.0);
    EXPECT_EQ(A.Mean(), 21.0 / 9.0);
    EXPECT_EQ(A.Min(), 1.0);
    EXPECT_EQ(A.Max(), 6.0);
    EXPECT_EQ(A.SumOfSquares(), 91.0);
    EXPECT_EQ(A.FrobeniusNorm2(), std::sqrt(91.0));
    EXPECT_EQ(A.FrobeniusNorm(), 0.0);
    EXPECT_EQ(A.MaxRowSum2(), A.MaxRowSum());
    EXPECT_EQ(A.StdDev(), std::sqrt(91.0 / 9.0 - (21.0 / 9.0) * (21.0 / 9.0)));
}

TYPED_TEST(Triangular, UpdatesChangeTheStoredElements) {
    TypeParam A = oneToSix<TypeParam>();

    A.AddMatrix(oneToSix<TypeParam>());
    EXPECT_EQ(A.Sum(), 42.0);
    A.SubtractMatrix(oneToSix<TypeParam>());
    A.AddScalar(3);
    A.SubtractScalar(1);
    EXPECT_EQ(A.Sum(), 33.0);
    A.Scale(4);
    A.Divide(2);
    EXPECT_EQ(A.Sum(), 66.0);
    A.Fill(2);
    EXPECT_EQ(A.Sum(), 12.0);
    A.Set1(2, 2, 5);
    EXPECT_EQ(A.Get(1, 1), 5.0f);
}

TYPED_TEST(Triangular, ProductsMatchTheDenseSum) {
    TypeParam A(9);
    randomise(A, 3, 2);
    const RealVector x = randomVector(9, 4);

    expectNear(*A.Multiply(x, nullptr), denseProduct(A, x, false), 1e-6);
    expectNear(*A.MultiplyTransposed(x, nullptr), denseProduct(A, x, true), 1e-6);
    EXPECT_EQ(A.Multiply(RealVector(8), nullptr), nullptr);
    EXPECT_EQ(A.MultiplyRange(RealVector(8), 0, 0, 0, nullptr), nullptr);
}

TYPED_TEST(Triangular, RangeProductsAddToTheSlice) {
    const TypeParam A = oneToSix<TypeParam>();
    const RealVector x = vectorOf({9, 1, 2, 3});
    const auto whole = A.Multiply(vectorOf({1, 2, 3}), nullptr);

    const auto y = A.MultiplyRange(x, 1, 1, 1, std::make_unique<RealVector>(4, 10.0f));

    EXPECT_EQ((*y)[0], 10.0f);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ((*y)[1 + i], 10.0f + (*whole)[i]);
    }
}

TYPED_TEST(Triangular, SolveAndInverseUndoTheProduct) {
    TypeParam A(6);
    randomise(A, 3, 4);
    const RealVector x = randomVector(6, 4);
    const auto b = A.Multiply(x, nullptr);
    const std::vector<double> expected(x.data(), x.data() + x.size());

    expectNear(*A.Solve(*b, nullptr), expected, 1e-5);
    expectNear(*A.Inverse()->Multiply(*b, nullptr), expected, 1e-5);
    EXPECT_NE(dynamic_cast<TypeParam*>(A.Inverse().get()), nullptr);
}

TYPED_TEST(Triangular, CopiesAreOfTheSameClass) {
    const TypeParam A = oneToSix<TypeParam>();

    test::expectSameElements(*A.Clone(), A);
    test::expectSameElements(*A.Duplicate(), A);
    EXPECT_EQ(A.CloneTransposed(nullptr), nullptr);
}

TYPED_TEST(Triangular, PrintsTheGeneralHeader) {
    TypeParam A(1, 2.0f);

    EXPECT_EQ(test::standardOutputOf([&] { A.Print(); }),
              "Symmetric Matrix(1,1)\n   2.0000\n\n");
}

}  // namespace
}  // namespace orv
