#include "algebra/storage/band_matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/matrix_support.h"

namespace orv {
namespace {

using test::denseProduct;
using test::elementsOf;
using test::expectNear;
using test::expectSameBits;
using test::expectSameElements;
using test::PlainMatrix;
using test::randomise;
using test::randomVector;
using test::vectorOf;

// The diagonals at the given offsets, all elements random, the main diagonal dominant.
BandMatrix randomBand(int n, const std::vector<int>& offsets) {
    std::vector<int> positions;
    for (const int offset : offsets) {
        positions.push_back(n - 1 + offset);
    }
    BandMatrix A(n, static_cast<int>(positions.size()), positions.data());
    randomise(A, static_cast<unsigned>(n), 5.0f);
    return A;
}

BandMatrix stencil(int n, int width) {
    return randomBand(n, {-width, -1, 0, 1, width});
}

// Order 4: 1 2 3 below, 10 20 30 40 on, 7 8 two above the main diagonal.
BandMatrix small() {
    const int positions[] = {2, 3, 5};
    BandMatrix A(4, 3, positions);
    A.SetDiagonal(2, vectorOf({1, 2, 3}));
    A.SetDiagonal(3, vectorOf({10, 20, 30, 40}));
    A.SetDiagonal(5, vectorOf({7, 8}));
    return A;
}

TEST(BandMatrix, AddressesElementsByColumnAndRow) {
    const BandMatrix A = small();

    EXPECT_EQ(A.Get(1, 2), 2.0f);
    EXPECT_EQ(A.Get(3, 3), 40.0f);
    EXPECT_EQ(A.Get(3, 1), 8.0f);
    EXPECT_EQ(A.Get(1, 0), 0.0f);
    EXPECT_EQ(A.Get1(4, 2), 8.0f);
    EXPECT_EQ(A.Get(4, 4), 0.0f);
}

TEST(BandMatrix, WritesOnlyToStoredDiagonals) {
    BandMatrix A = small();

    A.Set(1, 0, 9);
    A.Set(3, 0, 9);
    A.SetUpper(1, 0, 9);
    A.SetLower(2, 0, 9);
    A.Set(0, 4, 9);

    expectSameElements(A, small());
    A.Set1(1, 2, 6);
    EXPECT_EQ(A.Get(0, 1), 6.0f);
}

TEST(BandMatrix, ASinglePositionYieldsOneDiagonal) {
    const int position = 1;
    BandMatrix A(4, 1, &position);
    A.Fill(3.0f);

    EXPECT_EQ(A.Size(), 2);
    EXPECT_EQ(A.DiagonalCount(), 1);
    EXPECT_EQ(A.LowerCount(), 1);
    EXPECT_EQ(A.MainCount(), 0);
    EXPECT_EQ(A.UpperCount(), 0);
    EXPECT_EQ(A.GetMain(0), 0.0f);
    A.SetMain(0, 5.0f);
    EXPECT_EQ(A.Sum(), 6.0);
    EXPECT_EQ(A.Get(0, 2), 3.0f);
}

TEST(BandMatrix, LeavesOutPositionsOutsideTheMatrix) {
    const int positions[] = {-1, 1, 3};
    const BandMatrix A(2, 3, positions);

    EXPECT_EQ(A.DiagonalCount(), 1);
    EXPECT_EQ(A.Position(0), 1);
}

TEST(BandMatrix, AccessorsReachTheDiagonalsFromBothBases) {
    BandMatrix A = small();

    EXPECT_EQ(A.GetLower(1, 2), 3.0f);
    EXPECT_EQ(A.GetLower1(1, 3), 3.0f);
    EXPECT_EQ(A.GetUpper(2, 1), 8.0f);
    EXPECT_EQ(A.GetUpper1(2, 2), 8.0f);
    EXPECT_EQ(A.GetMain1(1), 10.0f);
    A.SetLower1(1, 1, 4);
    A.SetUpper1(2, 1, 5);
    A.SetMain1(4, 6);
    EXPECT_EQ(A.Get(0, 1), 4.0f);
    EXPECT_EQ(A.Get(2, 0), 5.0f);
    EXPECT_EQ(A.Get(3, 3), 6.0f);
    EXPECT_EQ(A.GetUpper1(1, 1), 0.0f);
    EXPECT_EQ(A.GetLower1(3, 1), 0.0f);
}

TEST(BandMatrix, MeasuresRunOverTheStoredDiagonals) {
    const BandMatrix A = small();
    const double squares = 1 + 4 + 9 + 100 + 400 + 900 + 1600 + 49 + 64;

    EXPECT_EQ(A.Size(), 9);
    EXPECT_EQ(A.Sum(), 121.0);
    EXPECT_EQ(A.Min(), 1.0);
    EXPECT_EQ(A.Max(), 40.0);
    EXPECT_EQ(A.StdDev(), std::sqrt(squares / 9 - (121.0 / 9) * (121.0 / 9)));
    EXPECT_EQ(A.DiagonalMeasure(), 100.0);
}

TEST(BandMatrix, UpdatesChangeTheStoredDiagonals) {
    BandMatrix A = small();

    A.Scale(6);
    A.Divide(3);
    EXPECT_EQ(A.Get(3, 1), 16.0f);
    A.AddScalar(1);
    EXPECT_EQ(A.Get(3, 1), 17.0f);
    EXPECT_EQ(A.Get(1, 0), 0.0f);
    A.AddMatrix(small());
    EXPECT_EQ(A.Get(3, 1), 25.0f);
    A.Fill(2);
    EXPECT_EQ(A.Sum(), 18.0);
}

TEST(BandMatrix, RowPatternFollowsThePositions) {
    const BandMatrix A = small();

    auto list = A.RowPattern(1, nullptr);
    EXPECT_EQ(list->capacity, 3);
    ASSERT_EQ(list->count, 3);
    EXPECT_EQ(list->items[0], 0);
    EXPECT_EQ(list->items[1], 1);
    EXPECT_EQ(list->items[2], 3);

    list = A.RowPattern(0, std::move(list));
    ASSERT_EQ(list->count, 2);
    EXPECT_EQ(list->items[0], 0);
    EXPECT_EQ(list->items[1], 2);

    list = A.RowPattern1(4, std::move(list));
    ASSERT_EQ(list->count, 2);
    EXPECT_EQ(list->items[0], 3);
    EXPECT_EQ(list->items[1], 4);
    EXPECT_EQ(list->reserved, 0);

    const auto full = A.RowPattern(1, std::make_unique<IndexList>(2));
    EXPECT_EQ(full->count, 2);
}

TEST(Quirk, ColumnPatternEmpty) {
    const auto made = small().ColumnPattern(1, nullptr);
    auto filled = std::make_unique<IndexList>(2);
    filled->Append(1);

    EXPECT_EQ(made->count, 0);
    EXPECT_EQ(made->capacity, 4);
    EXPECT_EQ(small().ColumnPattern1(1, std::move(filled))->count, 0);
}

TEST(BandMatrix, ProductsMatchTheDenseSum) {
    for (const int n : {1, 2, 5, 40, 5000}) {
        const BandMatrix A = stencil(n, std::min(n - 1, 20));
        const RealVector x = randomVector(n, 7);

        // Five float operations on values below 16.
        if (n < 100) {
            expectNear(*A.Multiply(x, nullptr), denseProduct(A, x, false), 5e-6);
            expectNear(*A.MultiplyTransposed(x, nullptr), denseProduct(A, x, true), 5e-6);
        }
        RealVector expected(n);
        for (int k = 0; k < A.DiagonalCount(); ++k) {
            const int d = A.Position(k) - (n - 1);
            const RealVector& v = *A.diagonal(A.Position(k));
            for (int t = 0; t < v.size(); ++t) {
                expected[t + std::max(-d, 0)] += v[t] * x[t + std::max(d, 0)];
            }
        }
        expectSameBits(*A.Multiply(x, nullptr), expected);
    }
    EXPECT_EQ(small().Multiply(RealVector(3), nullptr), nullptr);
}

TEST(BandMatrix, TransposedProductRunsTheDiagonalsInReverse) {
    const int positions[] = {0, 1, 2};
    BandMatrix A(2, 3, positions);
    A.SetDiagonal(0, vectorOf({1}));
    A.SetDiagonal(1, vectorOf({0x1p30f, 0x1p30f}));
    A.SetDiagonal(2, vectorOf({-0x1p30f}));

    // Row 1 of the transpose: the diagonal above comes first, -2^30 + 2^30; row 0 adds 1 last.
    const auto y = A.MultiplyTransposed(vectorOf({1, 1}), nullptr);

    EXPECT_EQ((*y)[1], 0.0f);
    EXPECT_EQ((*y)[0], 0x1p30f);
}

TEST(BandMatrix, RangeProductsWorkOnSlices) {
    const RealVector x = vectorOf({9, 1, 2, 3, 4, 9});
    const auto whole = small().Multiply(vectorOf({1, 2, 3, 4}), nullptr);
    const auto transposed = small().MultiplyTransposed(vectorOf({1, 2, 3, 4}), nullptr);

    const auto y = small().MultiplyRange(x, 1, 2, 0, nullptr);
    const auto added =
        small().MultiplyTransposedRange(x, 1, 0, 1, std::make_unique<RealVector>(4, 1.0f));

    EXPECT_EQ(elementsOf(*whole), (std::vector<float>{31, 73, 94, 169}));
    EXPECT_EQ(elementsOf(*y), (std::vector<float>{0, 0, 31, 73, 94, 169}));
    EXPECT_EQ(elementsOf(*transposed), (std::vector<float>{12, 46, 109, 176}));
    EXPECT_EQ(elementsOf(*added), (std::vector<float>{13, 47, 110, 177}));
}

TEST(BandMatrix, SolvesAndSweepsHaveTheBitsOfTheDefaults) {
    for (const int n : {1, 2, 3, 30, 150}) {
        for (const BandMatrix& A : {stencil(n, std::min(n - 1, 12)),
                                    randomBand(n, {-4, -3, -2, -1, 0, 1, 2, 3, 4})}) {
            const PlainMatrix plain(A);
            const RealVector b = randomVector(n, 11);
            const auto start = [&] {
                return std::make_unique<RealVector>(randomVector(n, 12));
            };

            expectSameBits(*A.SolveUpper(b, nullptr), *plain.SolveUpper(b, nullptr));
            expectSameBits(*A.SolveUnitUpper(b, nullptr), *plain.SolveUnitUpper(b, nullptr));
            expectSameBits(*A.SolveLower(b, nullptr), *plain.SolveLower(b, nullptr));
            expectSameBits(*A.SolveUnitLower(b, nullptr), *plain.SolveUnitLower(b, nullptr));
            expectSameBits(*A.SorSweep(b, 1.3f, start()), *plain.SorSweep(b, 1.3f, start()));
            expectSameBits(*A.GaussSeidelSweep(b, start()),
                           *plain.GaussSeidelSweep(b, start()));
            expectSameBits(*A.JacobiSweep(b, *start(), nullptr),
                           *plain.JacobiSweep(b, *start(), nullptr));
            expectSameElements(*A.JacobiMatrix(), *plain.JacobiMatrix());
        }
    }
}

// Row 3 of the lower and row 0 of the upper part hold 1, 2^60, -2^60 with the column rising: summed in
// this order in double the 1 is lost, in the other it stays.
void fillForOrder(Matrix& A) {
    A.Fill(0.0f);
    for (int i = 0; i < 4; ++i) {
        A.Set(i, i, 1.0f);
    }
    const float terms[] = {1.0f, 0x1p60f, -0x1p60f};
    for (int k = 0; k < 3; ++k) {
        A.Set(k, 3, terms[k]);
        A.Set(k + 1, 0, terms[k]);
    }
}

TEST(BandMatrix, RowSumsRunWithTheColumnRisingAsInTheDefaults) {
    BandMatrix band = randomBand(4, {-3, -2, -1, 0, 1, 2, 3});
    PlainMatrix plain(4);
    fillForOrder(band);
    fillForOrder(plain);
    const RealVector ones(4, 1.0f);

    for (const Matrix* A :
         {static_cast<const Matrix*>(&band), static_cast<const Matrix*>(&plain)}) {
        EXPECT_EQ((*A->SolveLower(ones, nullptr))[3], 1.0f);
        EXPECT_EQ((*A->SolveUnitLower(ones, nullptr))[3], 1.0f);
        EXPECT_EQ((*A->SolveUpper(ones, nullptr))[0], 1.0f);
        EXPECT_EQ((*A->SolveUnitUpper(ones, nullptr))[0], 1.0f);
        EXPECT_EQ((*A->JacobiSweep(ones, ones, nullptr))[0], 1.0f);
        EXPECT_EQ((*A->JacobiSweep(ones, ones, nullptr))[3], 1.0f);
    }
}

TEST(BandMatrix, FactorsHaveTheElementsOfTheDefaults) {
    for (const int n : {1, 2, 3, 7, 16, 45}) {
        for (const int w : {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 44}) {
            const BandMatrix A = stencil(n, std::min(w, n - 1));
            const PlainMatrix plain(A);

            expectSameElements(*A.FactorLU(), *plain.FactorLU());
            expectSameElements(*A.FactorLU1(), *plain.FactorLU1());
        }
    }
}

TEST(BandMatrix, FactorsStoreTheBandAloneAndSolve) {
    const BandMatrix A = stencil(60, 8);
    const RealVector x = randomVector(60, 3);
    const auto b = A.Multiply(x, nullptr);
    const std::vector<double> expected(x.data(), x.data() + x.size());

    const auto doolittle = A.FactorLU();
    const auto crout = A.FactorLU1();

    const auto* band = dynamic_cast<const BandMatrix*>(doolittle.get());
    ASSERT_NE(band, nullptr);
    EXPECT_EQ(band->DiagonalCount(), 17);
    expectNear(*doolittle->SolveLU(*b, nullptr), expected, 1e-5);
    expectNear(*crout->SolveLU1(*b, nullptr), expected, 1e-5);
}

TEST(BandMatrix, SolvesOfAnotherSizeAreNull) {
    const RealVector b(3);

    EXPECT_EQ(small().SolveUpper(b, nullptr), nullptr);
    EXPECT_EQ(small().SolveUnitUpper(b, nullptr), nullptr);
    EXPECT_EQ(small().SolveLower(b, nullptr), nullptr);
    EXPECT_EQ(small().SolveUnitLower(b, nullptr), nullptr);
    EXPECT_EQ(small().GaussSeidelSweep(b, nullptr), nullptr);
    EXPECT_EQ(small().SorSweep(b, 1.0f, nullptr), nullptr);
    EXPECT_EQ(small().JacobiSweep(b, b, nullptr), nullptr);
}

TEST(BandMatrix, PartsAreBandsWithTheirPositions) {
    const BandMatrix A = small();
    const auto strictLower = A.ToStrictLower();
    const auto strictUpper = A.ToStrictUpper();
    const auto lower = A.ToLower();
    const auto upper = A.ToUpper();

    EXPECT_EQ(strictLower->Sum(), 6.0);
    EXPECT_EQ(strictUpper->Sum(), 15.0);
    EXPECT_EQ(lower->Sum(), 106.0);
    EXPECT_EQ(upper->Sum(), 115.0);
    EXPECT_EQ(lower->Get(1, 2), 2.0f);
    EXPECT_EQ(upper->Get(3, 1), 8.0f);
    EXPECT_NE(dynamic_cast<BandMatrix*>(upper.get()), nullptr);
    expectSameElements(*A.Clone(), A);
    EXPECT_EQ(A.CloneTransposed(nullptr), nullptr);
}

TEST(Quirk, UnitBandDiagonal) {
    const auto lower = small().ToUnitLower();
    const auto upper = small().ToUnitUpper();

    EXPECT_EQ(lower->Get(1, 1), 0.0f);
    EXPECT_EQ(upper->Get(1, 1), 0.0f);
    EXPECT_EQ(lower->Sum(), 6.0);
    EXPECT_EQ(upper->Sum(), 15.0);
    lower->Set(1, 1, 1.0f);
    EXPECT_EQ(lower->Get(1, 1), 1.0f);
}

TEST(BandMatrix, UnitPartsOfAStrictPartKeepTheOrderOfTheirPositions) {
    const RealVector b = vectorOf({1, 2, 3, 4});
    const auto strictUpper = small().ToStrictUpper();
    const auto strictLower = small().ToStrictLower();

    const auto upper = strictUpper->ToUnitUpper();
    const auto lower = strictLower->ToUnitLower();

    EXPECT_EQ(dynamic_cast<const BandMatrix&>(*upper).Position(0), 3);
    EXPECT_EQ(dynamic_cast<const BandMatrix&>(*lower).Position(1), 3);
    expectSameBits(*upper->SolveUnitUpper(b, nullptr), *small().SolveUnitUpper(b, nullptr));
    expectSameBits(*lower->SolveUnitLower(b, nullptr), *small().SolveUnitLower(b, nullptr));
}

TEST(BandMatrix, PrintsItsNameBeforeTheGeneralForm) {
    const int position = 1;
    BandMatrix A(2, 1, &position);
    A.Fill(1.5f);
    const std::string text =
        "Band(2) Symmetric Matrix(2,2)\n   1.5000   0.0000\n   0.0000   1.5000\n\n";

    EXPECT_EQ(test::standardOutputOf([&] { A.Print(); }), text);
    EXPECT_EQ(test::fileOutputOf([&](std::FILE* f) { A.PrintTo(f); }), text);
}

}  // namespace
}  // namespace orv
