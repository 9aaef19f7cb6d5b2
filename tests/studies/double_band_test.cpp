#include "studies/double_band.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "algebra/real_vector.h"
#include "algebra/storage/band_matrix.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "support/plane_support.h"

namespace orv::test {
namespace {

// Element by element from Get(column, row).
std::vector<double> denseProduct(const Matrix& A, const std::vector<double>& x) {
    const int n = A.Rows();
    std::vector<double> y(x.size());
    for (int row = 0; row < n; ++row) {
        for (int column = 0; column < n; ++column) {
            y[static_cast<std::size_t>(row)] +=
                static_cast<double>(A.Get(column, row)) * x[static_cast<std::size_t>(column)];
        }
    }
    return y;
}

std::vector<double> noise(int n, unsigned seed) {
    Noise source(seed);
    std::vector<double> values(static_cast<std::size_t>(n));
    for (double& value : values) {
        value = source.between(-1.0, 1.0);
    }
    return values;
}

void fill(RealVector& vector, Noise& source) {
    for (int i = 0; i < vector.size(); ++i) {
        vector[i] = static_cast<float>(source.between(-2.0, 2.0));
    }
}

// The products of a few terms of about 1, in two orders.
constexpr double kRounding = 1e-14;

void expectActsLike(const DoubleBand& band, const Matrix& A) {
    const int n = A.Rows();
    const std::vector<double> x = noise(n, 7);
    const std::vector<double> expected = denseProduct(A, x);
    const std::vector<float> b(x.size(), 3.0f);

    std::vector<double> y(x.size(), 99.0);
    band.multiply(x.data(), y.data());
    std::vector<double> r(x.size(), 99.0);
    band.residual(b.data(), x.data(), r.data());

    ASSERT_EQ(band.size(), n);
    for (int i = 0; i < n; ++i) {
        const auto k = static_cast<std::size_t>(i);
        EXPECT_NEAR(y[k], expected[k], kRounding) << i;
        EXPECT_NEAR(r[k], 3.0 - expected[k], kRounding) << i;
        EXPECT_EQ(band.main(i), A.Get(i, i));
        for (int d = -n; d <= n; ++d) {
            const bool inside = i + d >= 0 && i + d < n;
            EXPECT_EQ(band.element(i, d), inside ? A.Get(i + d, i) : 0.0f) << i << " " << d;
        }
    }
}

TEST(DoubleBand, ActsLikeTheTriDiagonalMatrixItStandsFor) {
    for (const int n : {1, 2, 3, 9}) {
        SCOPED_TRACE(n);
        FTriDiagonalMatrix matrix(n, 0.0f);
        Noise source(static_cast<unsigned>(n));
        fill(matrix.lower(), source);
        fill(matrix.main(), source);
        fill(matrix.upper(), source);

        const DoubleBand band(matrix);

        EXPECT_TRUE(band.isTriDiagonal());
        expectActsLike(band, matrix);
    }
}

TEST(DoubleBand, ActsLikeTheBandMatrixItStandsFor) {
    for (const int n : {4, 6, 12}) {
        SCOPED_TRACE(n);
        const int centre = n - 1;
        const int positions[] = {centre - 3, centre - 1, centre, centre + 1, centre + 3};
        BandMatrix matrix(n, 5, positions);
        Noise source(static_cast<unsigned>(n));
        for (const int position : positions) {
            fill(*matrix.diagonal(position), source);
        }

        const DoubleBand band(matrix);

        EXPECT_FALSE(band.isTriDiagonal());
        expectActsLike(band, matrix);
    }
}

}  // namespace
}  // namespace orv::test
