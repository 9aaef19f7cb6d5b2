#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "algebra/storage/band_matrix.h"
#include "support/matrix_support.h"

namespace orv {
namespace {

using test::expectSameBits;
using test::FloatSource;
using test::randomVector;

// The diagonals at those of the offsets that a matrix of order n has, all elements random.
BandMatrix bandOf(int n, const std::vector<int>& offsets) {
    std::vector<int> positions;
    for (const int offset : offsets) {
        if (std::abs(offset) < n) {
            positions.push_back(n - 1 + offset);
        }
    }
    BandMatrix A(n, static_cast<int>(positions.size()), positions.data());
    FloatSource source(static_cast<unsigned>(n));
    for (const int position : positions) {
        RealVector& values = *A.diagonal(position);
        for (int t = 0; t < values.size(); ++t) {
            values[t] = source.next();
        }
    }
    return A;
}

// y[yFrom + j] += the product, one pass over the rows a diagonal: the definition.
void addByDiagonals(const BandMatrix& A, bool transposed, const RealVector& x, int xFrom,
                    int yFrom, RealVector& y) {
    for (int k = 0; k < A.DiagonalCount(); ++k) {
        const int position = A.Position(transposed ? A.DiagonalCount() - 1 - k : k);
        const int d = position - (A.Rows() - 1);
        const RealVector& v = *A.diagonal(position);
        for (int t = 0; t < v.size(); ++t) {
            const int row = t + std::max(-d, 0);
            const int column = t + std::max(d, 0);
            float& target = y[yFrom + (transposed ? column : row)];
            target = target + v[t] * x[xFrom + (transposed ? row : column)];
        }
    }
}

std::unique_ptr<RealVector> product(const BandMatrix& A, bool transposed, const RealVector& x,
                                    std::unique_ptr<RealVector> y) {
    return transposed ? A.MultiplyTransposed(x, std::move(y)) : A.Multiply(x, std::move(y));
}

std::unique_ptr<RealVector> rangeProduct(const BandMatrix& A, bool transposed,
                                         const RealVector& x, int xFrom, int yFrom,
                                         unsigned char accumulate,
                                         std::unique_ptr<RealVector> y) {
    return transposed ? A.MultiplyTransposedRange(x, xFrom, yFrom, accumulate, std::move(y))
                      : A.MultiplyRange(x, xFrom, yFrom, accumulate, std::move(y));
}

// All four products with the bits of the definition.
void expectProductsByDiagonals(const BandMatrix& A) {
    constexpr int kXFrom = 3;
    constexpr int kYFrom = 2;
    const int n = A.Rows();
    const RealVector x = randomVector(n, 7);
    const RealVector longX = randomVector(n + 5, 8);
    const RealVector given = randomVector(n + 4, 9);
    for (const bool transposed : {false, true}) {
        SCOPED_TRACE(transposed ? "transposed" : "plain");
        RealVector whole(n);
        addByDiagonals(A, transposed, x, 0, 0, whole);
        expectSameBits(*product(A, transposed, x, nullptr), whole);
        expectSameBits(*product(A, transposed, x, std::make_unique<RealVector>(n, NAN)), whole);

        // A longer result is zero beyond the product.
        RealVector extended(n + 4);
        std::copy(whole.data(), whole.data() + n, extended.data());
        expectSameBits(*product(A, transposed, x, given.Clone()), extended);

        for (const unsigned char accumulate : {0, 1}) {
            RealVector expected = given;
            if (accumulate == 0) {
                expected.FillRange(kYFrom, n, 0.0f);
            }
            addByDiagonals(A, transposed, longX, kXFrom, kYFrom, expected);
            expectSameBits(
                *rangeProduct(A, transposed, longX, kXFrom, kYFrom, accumulate, given.Clone()),
                expected);
        }
    }
}

TEST(BandProducts, HaveTheBitsOfOnePassADiagonal) {
    const std::vector<std::vector<int>> layouts = {
        {-5, -1, 0, 1, 5},
        {-39, -1, 0, 1, 39},
        {-2, -1, 1, 2},
        {3},
        {-4},
        {0},
        {},
        {4, -1, 0, -7, 2},
        {-6, -5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6},
        {-30, -20, -10, 0, 10, 20, 30},
    };
    for (const std::vector<int>& offsets : layouts) {
        for (int n = 1; n <= 40; ++n) {
            SCOPED_TRACE(testing::Message() << "n " << n << ", diagonals " << offsets.size());
            expectProductsByDiagonals(bandOf(n, offsets));
        }
    }
}

TEST(BandProducts, HaveTheBitsOfOnePassADiagonalOverManyBlocksOfRows) {
    for (const int n : {2047, 2048, 2049, 6151}) {
        SCOPED_TRACE(n);
        expectProductsByDiagonals(bandOf(n, {-79, -1, 0, 1, 79}));
        expectProductsByDiagonals(bandOf(n, {-2040, -80, -79, -1, 0, 1, 79, 80, 2040}));
    }
}

TEST(BandProducts, AddNoTermWhereADiagonalEnds) {
    // An infinite x reaches the rows that have an element in its column, and no other.
    const BandMatrix A = bandOf(12, {-3, 0, 3});
    RealVector x(12, 1.0f);
    x[0] = HUGE_VALF;
    x[11] = NAN;
    for (const bool transposed : {false, true}) {
        const auto y = product(A, transposed, x, nullptr);
        for (int j = 0; j < 12; ++j) {
            const bool reached = j == 0 || j == 3 || j == 8 || j == 11;
            EXPECT_EQ(std::isfinite((*y)[j]), !reached) << "row " << j;
        }
    }
}

TEST(BandProducts, StartFromPositiveZero) {
    BandMatrix A = bandOf(5, {-1, 0, 1});
    A.Fill(-0.0f);
    const RealVector x(5, 1.0f);

    const auto y = A.Multiply(x, nullptr);
    const auto added = A.MultiplyRange(x, 0, 0, 1, std::make_unique<RealVector>(5, -0.0f));

    for (int j = 0; j < 5; ++j) {
        EXPECT_FALSE(std::signbit((*y)[j])) << j;
        EXPECT_TRUE(std::signbit((*added)[j])) << j;
    }
}

TEST(BandProducts, OfAnotherSizeAreNull) {
    const BandMatrix A = bandOf(4, {0});
    for (const bool transposed : {false, true}) {
        EXPECT_EQ(product(A, transposed, RealVector(3), nullptr), nullptr);
        EXPECT_EQ(product(A, transposed, RealVector(5), nullptr), nullptr);
        EXPECT_EQ(product(A, transposed, RealVector(4), std::make_unique<RealVector>(3)),
                  nullptr);
    }
}

}  // namespace
}  // namespace orv
