#include <gtest/gtest.h>

#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::elementsOf;
using test::PlainMatrix;
using test::randomise;
using test::randomVector;
using test::vectorOf;

// Columns by rows: row 0 is (1, 2), row 1 is (3, 4).
PlainMatrix oneToFour() {
    PlainMatrix A(2);
    A.Set(0, 0, 1);
    A.Set(1, 0, 2);
    A.Set(0, 1, 3);
    A.Set(1, 1, 4);
    return A;
}

TEST(Matrix, FirstIndexOfGetIsTheColumn) {
    const auto y = oneToFour().Multiply(vectorOf({10, 1}), nullptr);

    EXPECT_EQ(elementsOf(*y), (std::vector<float>{12, 34}));
    EXPECT_EQ(elementsOf(*oneToFour().MultiplyTransposed(vectorOf({10, 1}), nullptr)),
              (std::vector<float>{13, 24}));
    EXPECT_EQ(elementsOf(*oneToFour().MultiplyAdjoint(vectorOf({10, 1}), nullptr)),
              (std::vector<float>{13, 24}));
    EXPECT_EQ(elementsOf(*oneToFour().MultiplyConjugate(vectorOf({10, 1}), nullptr)),
              (std::vector<float>{12, 34}));
}

TEST(Matrix, ProductUsesTheGivenVectorAndClearsIt) {
    auto given = std::make_unique<RealVector>(2, 99.0f);
    const RealVector* address = given.get();

    const auto y = oneToFour().Multiply(vectorOf({10, 1}), std::move(given));

    EXPECT_EQ(y.get(), address);
    EXPECT_EQ(elementsOf(*y), (std::vector<float>{12, 34}));
}

TEST(Matrix, ProductZeroesAllOfALongerVector) {
    const auto given = [] { return std::make_unique<RealVector>(3, 99.0f); };
    const RealVector x = vectorOf({10, 1});

    EXPECT_EQ(elementsOf(*oneToFour().Multiply(x, given())), (std::vector<float>{12, 34, 0}));
    EXPECT_EQ(elementsOf(*oneToFour().MultiplyTransposed(x, given())),
              (std::vector<float>{13, 24, 0}));
}

TEST(Matrix, ProductOfAnotherSizeIsNull) {
    EXPECT_EQ(oneToFour().Multiply(RealVector(3), nullptr), nullptr);
    EXPECT_EQ(oneToFour().MultiplyTransposed(RealVector(1), nullptr), nullptr);
    EXPECT_EQ(oneToFour().Multiply(RealVector(2), std::make_unique<RealVector>(1)), nullptr);
    EXPECT_EQ(oneToFour().MultiplyRange(RealVector(1), 0, 0, 0, nullptr), nullptr);
}

TEST(Matrix, RangeProductWorksOnSlices) {
    const RealVector x = vectorOf({7, 10, 1, 7});

    const auto made = oneToFour().MultiplyRange(x, 1, 2, 0, nullptr);
    EXPECT_EQ(elementsOf(*made), (std::vector<float>{0, 0, 12, 34}));

    const auto zeroed =
        oneToFour().MultiplyRange(x, 1, 0, 0, std::make_unique<RealVector>(3, 5.0f));
    EXPECT_EQ(elementsOf(*zeroed), (std::vector<float>{12, 34, 5}));

    const auto added =
        oneToFour().MultiplyRange(x, 1, 0, 1, std::make_unique<RealVector>(3, 5.0f));
    EXPECT_EQ(elementsOf(*added), (std::vector<float>{17, 39, 5}));

    const auto transposed = oneToFour().MultiplyTransposedRange(x, 1, 2, 0, nullptr);
    EXPECT_EQ(elementsOf(*transposed), (std::vector<float>{0, 0, 13, 24}));
}

TEST(Matrix, AdjointAndConjugateRangesTakeTheStartInYFirst) {
    const RealVector x = vectorOf({7, 10, 1, 7});

    EXPECT_EQ(elementsOf(*oneToFour().MultiplyConjugateRange(x, 2, 1, 0, nullptr)),
              (std::vector<float>{0, 0, 12, 34}));
    EXPECT_EQ(elementsOf(*oneToFour().MultiplyAdjointRange(x, 2, 1, 0, nullptr)),
              (std::vector<float>{0, 0, 13, 24}));
}

TEST(Matrix, AddFollowsTheFourFlagCombinations) {
    PlainMatrix A(3);
    PlainMatrix B(3);
    randomise(A, 1, 0);
    randomise(B, 2, 0);

    for (int flags = 0; flags < 4; ++flags) {
        const int first = flags & 1;
        const int second = flags >> 1;
        const auto given = [] { return std::make_unique<PlainMatrix>(3); };
        const auto sum = A.Add(B, first, second, given());
        const auto difference = A.Subtract(B, first, second, given());
        const auto from = A.SubtractFrom(B, first, second, given());
        const auto reversed = A.AddReversed(B, first, second, given());
        for (int j = 0; j < 3; ++j) {
            for (int i = 0; i < 3; ++i) {
                const float a = first == 0 ? A.Get(i, j) : A.Get(j, i);
                const float b = second == 0 ? B.Get(i, j) : B.Get(j, i);
                EXPECT_EQ(sum->Get(i, j), a + b);
                EXPECT_EQ(difference->Get(i, j), a - b);
                EXPECT_EQ(from->Get(i, j), b - a);
                // Through B's Add the flags stay in place, so they change operands.
                const float thisPart = second == 0 ? A.Get(i, j) : A.Get(j, i);
                const float otherPart = first == 0 ? B.Get(i, j) : B.Get(j, i);
                EXPECT_EQ(reversed->Get(i, j), otherPart + thisPart);
            }
        }
    }
}

TEST(Matrix, AddTransposedWithoutTransposedCloneNeedsAGivenResult) {
    const PlainMatrix A = oneToFour();

    EXPECT_EQ(A.Add(A, 1, 0, nullptr), nullptr);
    EXPECT_NE(A.Add(A, 1, 0, std::make_unique<FullMatrix>(2)), nullptr);
    EXPECT_NE(A.ToFull()->Add(A, 1, 0, nullptr), nullptr);
    EXPECT_NE(A.Add(A, 0, 0, nullptr), nullptr);
}

TEST(Matrix, AddWithAnUnknownFlagLeavesTheResult) {
    const PlainMatrix A = oneToFour();

    const auto result = A.Add(A, 0, 2, std::make_unique<FullMatrix>(2, 7.0f));

    test::expectSameElements(*result, FullMatrix(2, 7.0f));
    EXPECT_EQ(A.Add(A, 5, 0, nullptr), nullptr);
}

TEST(Matrix, SumsOfAnotherSizeAreNull) {
    const PlainMatrix A = oneToFour();
    const PlainMatrix B(3);

    EXPECT_EQ(A.Add(B, 0, 0, nullptr), nullptr);
    EXPECT_EQ(A.Subtract(B, 0, 1, nullptr), nullptr);
    EXPECT_EQ(A.Sum2(B, nullptr), nullptr);
    EXPECT_EQ(A.Sum2Reversed(B, nullptr), nullptr);
    EXPECT_EQ(A.Difference2(B, nullptr), nullptr);
    EXPECT_EQ(A.DifferenceFrom2(B, nullptr), nullptr);
    EXPECT_EQ(A.Product(B, nullptr), nullptr);
    EXPECT_EQ(A.ProductReversed(B, nullptr), nullptr);
}

TEST(Matrix, SecondSumFamilyWritesToTheGivenResult) {
    const PlainMatrix A = oneToFour();
    PlainMatrix B(2);
    B.Fill(1);

    EXPECT_EQ(A.Sum2(B, std::make_unique<PlainMatrix>(2))->Get(1, 0), 3.0f);
    EXPECT_EQ(A.Sum2Reversed(B, nullptr)->Get(0, 1), 4.0f);
    EXPECT_EQ(A.Difference2(B, nullptr)->Get(1, 1), 3.0f);
    EXPECT_EQ(A.DifferenceFrom2(B, nullptr)->Get(1, 1), -3.0f);
}

TEST(Quirk, ProductTransposed) {
    const PlainMatrix A = oneToFour();
    PlainMatrix B(2);
    B.Set(1, 0, 1);
    B.Set(0, 1, 10);

    // A B has the rows (20, 1) and (40, 3), B A the rows (3, 4) and (10, 20).
    const auto product = A.Product(B, nullptr);
    const auto reversed = A.ProductReversed(B, nullptr);

    EXPECT_EQ(product->Get(0, 0), 20.0f);
    EXPECT_EQ(product->Get(1, 0), 40.0f);
    EXPECT_EQ(product->Get(0, 1), 1.0f);
    EXPECT_EQ(product->Get(1, 1), 3.0f);
    EXPECT_EQ(reversed->Get(1, 0), 10.0f);
    EXPECT_EQ(reversed->Get(0, 1), 4.0f);
}

}  // namespace
}  // namespace orv
