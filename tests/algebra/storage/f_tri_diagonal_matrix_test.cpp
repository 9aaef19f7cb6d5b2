#include "algebra/storage/f_tri_diagonal_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include "algebra/storage/band_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::denseProduct;
using test::elementsOf;
using test::expectNear;
using test::expectSameBits;
using test::PlainMatrix;
using test::randomise;
using test::randomVector;
using test::vectorOf;

FTriDiagonalMatrix randomLine(int n) {
    FTriDiagonalMatrix A(n, 0.0f);
    randomise(A, static_cast<unsigned>(n), 3.0f);
    return A;
}

// lower 1, 2; main 10, 20, 30; upper 5, 6.
FTriDiagonalMatrix small() {
    FTriDiagonalMatrix A(3, 0.0f);
    A.lower() = vectorOf({1, 2});
    A.main() = vectorOf({10, 20, 30});
    A.upper() = vectorOf({5, 6});
    return A;
}

TEST(FTriDiagonalMatrix, AddressesElementsByColumnAndRow) {
    const FTriDiagonalMatrix A = small();

    EXPECT_EQ(A.Get(0, 1), 1.0f);
    EXPECT_EQ(A.Get(1, 0), 5.0f);
    EXPECT_EQ(A.Get(2, 2), 30.0f);
    EXPECT_EQ(A.Get1(1, 2), 1.0f);
    EXPECT_EQ(A.Get1(3, 2), 6.0f);
}

TEST(FTriDiagonalMatrix, IgnoresPositionsOutsideThePattern) {
    FTriDiagonalMatrix A = small();

    A.Set(0, 2, 9);
    A.Set(2, 0, 9);
    A.Set(3, 3, 9);

    EXPECT_EQ(A.Get(0, 2), 0.0f);
    EXPECT_EQ(A.Get(2, 0), 0.0f);
    test::expectSameElements(A, small());
}

TEST(FTriDiagonalMatrix, OrderOneHasASingleElement) {
    FTriDiagonalMatrix A(1, 4.0f);

    EXPECT_EQ(A.Size(), 1);
    EXPECT_EQ(A.lower().size(), 0);
    EXPECT_EQ(A.upper().size(), 0);
    EXPECT_EQ((*A.Multiply(vectorOf({3}), nullptr))[0], 12.0f);
    EXPECT_EQ((*A.FactorLU()->SolveLU(vectorOf({8}), nullptr))[0], 2.0f);
    EXPECT_EQ((*A.GaussSeidelSweep(vectorOf({8}), nullptr))[0], 2.0f);
    EXPECT_EQ(A.ToStrictLower()->Size(), 0);
    EXPECT_EQ(A.Min(), 4.0);
    EXPECT_EQ(A.JacobiMatrix()->Get(0, 0), 0.0f);
}

TEST(FTriDiagonalMatrix, MeasuresRunOverTheThreeDiagonals) {
    const FTriDiagonalMatrix A = small();
    const double squares = 1 + 4 + 100 + 400 + 900 + 25 + 36;

    EXPECT_EQ(A.Size(), 7);
    EXPECT_EQ(A.Sum(), 74.0);
    EXPECT_EQ(A.Mean(), 74.0 / 7.0);
    EXPECT_EQ(A.Min(), 1.0);
    EXPECT_EQ(A.Max(), 30.0);
    EXPECT_EQ(A.FrobeniusNorm(), std::sqrt(squares));
    EXPECT_EQ(A.StdDev(), std::sqrt(squares / 7.0 - (74.0 / 7.0) * (74.0 / 7.0)));
}

TEST(FTriDiagonalMatrix, UpdatesChangeTheStoredElements) {
    FTriDiagonalMatrix A = small();

    A.AddScalar(2);
    A.SubtractScalar(1);
    A.Scale(6);
    A.Divide(3);
    EXPECT_EQ(A.Get(0, 1), 4.0f);
    EXPECT_EQ(A.Get(1, 0), 12.0f);
    EXPECT_EQ(A.Get(0, 0), 22.0f);
    EXPECT_EQ(A.Get(2, 0), 0.0f);
    A.AddMatrix(small());
    A.SubtractMatrix(A);
    EXPECT_EQ(A.Get(0, 0), 22.0f);
    A.Fill(1);
    EXPECT_EQ(A.Sum(), 7.0);
}

TEST(FTriDiagonalMatrix, PatternsYieldTheListTheyWereGiven) {
    auto list = std::make_unique<IndexList>(3);
    list->Append(5);
    const IndexList* address = list.get();

    list = small().RowPattern(0, std::move(list));
    list = small().ColumnPattern(0, std::move(list));
    list = small().RowPattern1(1, std::move(list));
    list = small().ColumnPattern1(1, std::move(list));

    EXPECT_EQ(list.get(), address);
    EXPECT_EQ(list->count, 1);
    EXPECT_EQ(list->items[0], 5);
}

TEST(FTriDiagonalMatrix, ProductsMatchTheDenseSum) {
    for (const int n : {1, 2, 3, 8, 31}) {
        const FTriDiagonalMatrix A = randomLine(n);
        const RealVector x = randomVector(n, 7);

        // Three terms below 4 rounded once: within a float's half unit at 16.
        expectNear(*A.Multiply(x, nullptr), denseProduct(A, x, false), 1e-6);
        expectNear(*A.MultiplyTransposed(x, nullptr), denseProduct(A, x, true), 1e-6);
    }
}

TEST(FTriDiagonalMatrix, ProductsKeepTheSignOfZero) {
    const FTriDiagonalMatrix A(5, 1.0f);
    const RealVector x(5, -0.0f);

    const auto y = A.Multiply(x, std::make_unique<RealVector>(5, 7.0f));
    const auto z = A.MultiplyTransposed(x, nullptr);

    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(std::signbit((*y)[i])) << i;
        EXPECT_TRUE(std::signbit((*z)[i])) << i;
    }
}

TEST(FTriDiagonalMatrix, ProductsLeaveTheRestOfALongerVector) {
    const auto given = [] { return std::make_unique<RealVector>(4, 9.0f); };
    const RealVector x = vectorOf({1, 2, 3});

    EXPECT_EQ(elementsOf(*small().Multiply(x, given())), (std::vector<float>{20, 59, 94, 9}));
    EXPECT_EQ(elementsOf(*small().MultiplyTransposed(x, given())),
              (std::vector<float>{12, 51, 102, 9}));
}

TEST(FTriDiagonalMatrix, RangeProductsWorkOnSlices) {
    const FTriDiagonalMatrix A = small();
    const RealVector x = vectorOf({9, 1, 2, 3, 9});

    EXPECT_EQ(elementsOf(*A.MultiplyRange(x, 1, 2, 0, nullptr)),
              (std::vector<float>{0, 0, 20, 59, 94}));
    EXPECT_EQ(elementsOf(*A.MultiplyRange(x, 1, 0, 1, std::make_unique<RealVector>(3, 1.0f))),
              (std::vector<float>{21, 60, 95}));
    EXPECT_EQ(elementsOf(*A.MultiplyTransposedRange(x, 1, 0, 0,
                                                    std::make_unique<RealVector>(3, 1.0f))),
              (std::vector<float>{12, 51, 102}));
    EXPECT_EQ(A.MultiplyRange(RealVector(2), 0, 0, 0, nullptr), nullptr);
    EXPECT_EQ(A.Multiply(RealVector(4), nullptr), nullptr);
}

TEST(FTriDiagonalMatrix, SolvesSweepsAndFactorsHaveTheBitsOfTheDefaults) {
    for (const int n : {1, 2, 3, 9, 40}) {
        const FTriDiagonalMatrix A = randomLine(n);
        const PlainMatrix plain(A);
        const RealVector b = randomVector(n, 11);
        const auto start = [&] { return std::make_unique<RealVector>(randomVector(n, 12)); };

        expectSameBits(*A.SolveUpper(b, nullptr), *plain.SolveUpper(b, nullptr));
        expectSameBits(*A.SolveUnitUpper(b, nullptr), *plain.SolveUnitUpper(b, nullptr));
        expectSameBits(*A.SolveLower(b, nullptr), *plain.SolveLower(b, nullptr));
        expectSameBits(*A.SolveUnitLower(b, nullptr), *plain.SolveUnitLower(b, nullptr));
        expectSameBits(*A.SorSweep(b, 1.3f, start()), *plain.SorSweep(b, 1.3f, start()));
        expectSameBits(*A.GaussSeidelSweep(b, start()), *plain.GaussSeidelSweep(b, start()));
        expectSameBits(*A.JacobiSweep(b, *start(), nullptr),
                       *plain.JacobiSweep(b, *start(), nullptr));
        test::expectSameElements(*A.FactorLU(), *plain.FactorLU());
        test::expectSameElements(*A.FactorLU1(), *plain.FactorLU1());
    }
}

TEST(FTriDiagonalMatrix, SolvesOfAnotherSizeAreNull) {
    const RealVector b(2);

    EXPECT_EQ(small().SolveUpper(b, nullptr), nullptr);
    EXPECT_EQ(small().SolveUnitLower(b, nullptr), nullptr);
    EXPECT_EQ(small().SorSweep(b, 1.0f, nullptr), nullptr);
    EXPECT_EQ(small().JacobiSweep(b, b, nullptr), nullptr);
}

TEST(FTriDiagonalMatrix, HasNoTransposedClone) {
    EXPECT_EQ(small().CloneTransposed(nullptr), nullptr);
    test::expectSameElements(*small().Clone(), small());
}

TEST(FTriDiagonalMatrix, AssignFromCopiesDiagonalsOfTheSameLength) {
    FTriDiagonalMatrix A(3, 0.0f);
    FTriDiagonalMatrix other(4, 7.0f);

    A.AssignFrom(small());
    other.AssignFrom(small());

    test::expectSameElements(A, small());
    test::expectSameElements(other, FTriDiagonalMatrix(4, 7.0f));
}

TEST(Quirk, JacobiShiftedLower) {
    const auto J = small().JacobiMatrix();

    // The upper elements are divided by the diagonal of the row below their own, and each lower
    // element is the one above it over its column's diagonal; the first reads the spare 0.
    EXPECT_EQ(J->Get(1, 0), 5.0f * (-1.0f / 20.0f));
    EXPECT_EQ(J->Get(2, 1), 6.0f * (-1.0f / 30.0f));
    EXPECT_EQ(J->Get(0, 1), 0.0f);
    EXPECT_EQ(J->Get(1, 2), 1.0f * (-1.0f / 20.0f));
    EXPECT_EQ(J->Get(1, 1), 0.0f);
}

TEST(Quirk, CrossedBidiagonal) {
    const FTriDiagonalMatrix A = small();

    const auto lower = A.ToLower();
    const auto upper = A.ToUpper();
    EXPECT_EQ(lower->Get(0, 1), A.Get(1, 0));
    EXPECT_EQ(lower->Get(1, 1), 20.0f);
    EXPECT_EQ(upper->Get(1, 0), A.Get(0, 1));
    EXPECT_EQ(A.ToUnitLower()->Get(1, 2), A.Get(2, 1));
    EXPECT_EQ(A.ToUnitLower()->Get(1, 1), 1.0f);
    EXPECT_EQ(A.ToUnitUpper()->Get(2, 1), A.Get(1, 2));
    EXPECT_EQ(A.ToStrictLower()->Get(0, 1), A.Get(1, 0));
    EXPECT_EQ(A.ToStrictUpper()->Get(1, 0), A.Get(0, 1));
    EXPECT_NE(dynamic_cast<BandMatrix*>(A.ToStrictUpper().get()), nullptr);
}

TEST(FTriDiagonalMatrix, PrintsItsThreeVectors) {
    EXPECT_EQ(test::standardOutputOf([] { small().Print(); }),
              "FTriDiagonalMatrix(3,3)\n"
              "L: v(2): [ 1.0000  2.0000 ]\n"
              "D: v(3): [10.0000 20.0000 30.0000 ]\n"
              "U: v(2): [ 5.0000  6.0000 ]\n");
    EXPECT_EQ(test::fileOutputOf([](std::FILE* f) { small().PrintTo(f); }),
              "FTriDiagonalMatrix(3,3)\n"
              "L: v(2): [  1.000   2.000 ]\n"
              "D: v(3): [ 10.000  20.000  30.000 ]\n"
              "U: v(2): [  5.000   6.000 ]\n");
}

}  // namespace
}  // namespace orv
