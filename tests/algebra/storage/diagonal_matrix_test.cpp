#include "algebra/storage/diagonal_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algebra/storage/band_matrix.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::elementsOf;
using test::vectorOf;

DiagonalMatrix oneTwoThree() {
    DiagonalMatrix A(3, 0.0f);
    A.values() = vectorOf({1, 2, 3});
    return A;
}

TEST(DiagonalMatrix, StoresTheDiagonalAlone) {
    DiagonalMatrix A = oneTwoThree();

    A.Set(0, 1, 9);
    A.Set1(2, 2, 7);

    EXPECT_EQ(A.Get(0, 1), 0.0f);
    EXPECT_EQ(A.Get(1, 1), 7.0f);
    EXPECT_EQ(A.Get1(3, 3), 3.0f);
    EXPECT_EQ(A.Size(), 3);
}

TEST(DiagonalMatrix, MeasuresRunOverTheDiagonal) {
    const DiagonalMatrix A = oneTwoThree();

    EXPECT_EQ(A.Sum(), 6.0);
    EXPECT_EQ(A.Mean(), 2.0);
    EXPECT_EQ(A.Min(), 1.0);
    EXPECT_EQ(A.Max(), 3.0);
    EXPECT_EQ(A.FrobeniusNorm(), std::sqrt(14.0));
    EXPECT_EQ(A.StdDev(), std::sqrt(14.0 / 3.0 - 4.0));
}

TEST(Quirk, DiagonalMeasureDiffers) {
    const int center = 2;
    BandMatrix band(3, 1, &center);
    band.SetDiagonal(center, vectorOf({1, 2, 3}));
    FTriDiagonalMatrix line(3, 5.0f);
    line.main() = vectorOf({1, 2, 3});

    EXPECT_EQ(oneTwoThree().DiagonalMeasure(), 14.0);
    EXPECT_EQ(line.DiagonalMeasure(), 14.0);
    EXPECT_EQ(band.DiagonalMeasure(), 6.0);
}

TEST(DiagonalMatrix, AdditionsDoNothing) {
    DiagonalMatrix A = oneTwoThree();

    A.AddMatrix(oneTwoThree());
    A.AddScalar(4);
    A.SubtractMatrix(oneTwoThree());
    A.SubtractScalar(1);

    test::expectSameElements(A, oneTwoThree());
}

TEST(DiagonalMatrix, ScalesAndFills) {
    DiagonalMatrix A = oneTwoThree();

    A.Scale(6);
    A.Divide(3);
    EXPECT_EQ(elementsOf(A.values()), (std::vector<float>{2, 4, 6}));
    A.Fill(1);
    EXPECT_EQ(elementsOf(A.values()), (std::vector<float>{1, 1, 1}));
}

TEST(DiagonalMatrix, ProductsMultiplyElementByElement) {
    const DiagonalMatrix A = oneTwoThree();
    const RealVector x = vectorOf({10, 20, 30});

    EXPECT_EQ(elementsOf(*A.Multiply(x, nullptr)), (std::vector<float>{10, 40, 90}));
    EXPECT_EQ(elementsOf(*A.MultiplyTransposed(x, std::make_unique<RealVector>(3, 8.0f))),
              (std::vector<float>{10, 40, 90}));
    EXPECT_EQ(A.Multiply(RealVector(2), nullptr), nullptr);
    EXPECT_EQ(elementsOf(*A.MultiplyRange(vectorOf({0, 10, 20, 30}), 1, 0, 1,
                                          std::make_unique<RealVector>(4, 1.0f))),
              (std::vector<float>{11, 41, 91, 1}));
    EXPECT_EQ(elementsOf(*A.MultiplyTransposedRange(x, 0, 0, 0,
                                                    std::make_unique<RealVector>(3, 1.0f))),
              (std::vector<float>{10, 40, 90}));
}

TEST(DiagonalMatrix, SolveMakesOrUsesTheResult) {
    const DiagonalMatrix A = oneTwoThree();
    const RealVector b = vectorOf({1, 4, 9});
    auto given = std::make_unique<RealVector>(3);
    const RealVector* address = given.get();

    const auto made = A.Solve(b, nullptr);
    const auto used = A.Solve(b, std::move(given));

    EXPECT_EQ(elementsOf(*made), (std::vector<float>{1, 2, 3}));
    EXPECT_EQ(used.get(), address);
    EXPECT_EQ(elementsOf(*used), (std::vector<float>{1, 2, 3}));
    EXPECT_EQ(A.Solve(RealVector(2), nullptr), nullptr);
}

TEST(DiagonalMatrix, InverseAndTransposeAreDiagonal) {
    EXPECT_EQ(oneTwoThree().Inverse()->Get(1, 1), 0.5f);
    test::expectSameElements(*oneTwoThree().CloneTransposed(nullptr), oneTwoThree());
}

TEST(DiagonalMatrix, PrintsItsHeaderAndVector) {
    EXPECT_EQ(test::standardOutputOf([] { oneTwoThree().Print(); }),
              "Diagonal Matrix(3,3)\nDiagonal: v(3): [ 1.0000  2.0000  3.0000 ]\n");
    EXPECT_EQ(test::fileOutputOf([](std::FILE* f) { oneTwoThree().PrintTo(f); }),
              "Diagonal Matrix(3,3)\nDiagonal: v(3): [  1.000   2.000   3.000 ]\n");
}

}  // namespace
}  // namespace orv
