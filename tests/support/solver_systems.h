#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"
#include "algebra/storage/full_matrix.h"

namespace orv::test {

/// The system of one implicit diffusion line: 1 + 2 tau inside, 1 + tau at the ends, -tau
/// beside.
inline FTriDiagonalMatrix diffusionLine(int n, float tau) {
    FTriDiagonalMatrix A(n, 0.0F);
    for (int i = 0; i < n; ++i) {
        float diagonal = 1.0F;
        if (i > 0) {
            A.Set(i - 1, i, -tau);
            diagonal += tau;
        }
        if (i < n - 1) {
            A.Set(i + 1, i, -tau);
            diagonal += tau;
        }
        A.Set(i, i, diagonal);
    }
    return A;
}

/// A diagonally dominant dense matrix without symmetry.
inline FullMatrix dominantMatrix(int n) {
    FullMatrix A(n, 0.0F);
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            const int mixed = (7 * i + 13 * j + i * j) % 11;
            A.Set(i, j, i == j ? 11.0F * static_cast<float>(n) : static_cast<float>(mixed - 4));
        }
    }
    return A;
}

/// n samples with sign changes and no period below n.
inline RealVector wavyVector(int n) {
    RealVector b(n);
    for (int i = 0; i < n; ++i) {
        b[i] = static_cast<float>((37 * i * i + 11 * i + 5) % 101) - 40.0F;
    }
    return b;
}

/// The solution of A u = b by Gauss elimination with partial pivoting in double.
inline std::vector<double> denseSolve(const Matrix& A, const RealVector& b) {
    const int n = A.Rows();
    const std::size_t order = static_cast<std::size_t>(n);
    std::vector<std::vector<double>> rows(order, std::vector<double>(order + 1));
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            rows[static_cast<std::size_t>(j)][static_cast<std::size_t>(i)] = A.Get(i, j);
        }
        rows[static_cast<std::size_t>(j)][order] = b[j];
    }
    for (std::size_t k = 0; k < order; ++k) {
        std::size_t pivot = k;
        for (std::size_t j = k + 1; j < order; ++j) {
            pivot = std::abs(rows[j][k]) > std::abs(rows[pivot][k]) ? j : pivot;
        }
        std::swap(rows[k], rows[pivot]);
        for (std::size_t j = k + 1; j < order; ++j) {
            const double factor = rows[j][k] / rows[k][k];
            for (std::size_t i = k; i <= order; ++i) {
                rows[j][i] -= factor * rows[k][i];
            }
        }
    }
    std::vector<double> u(order);
    for (std::size_t k = order; k-- > 0;) {
        double sum = rows[k][order];
        for (std::size_t i = k + 1; i < order; ++i) {
            sum -= rows[k][i] * u[i];
        }
        u[k] = sum / rows[k][k];
    }
    return u;
}

/// The largest distance of u from the solution, infinity for NaN or another size.
inline double largestError(const RealVector& u, const std::vector<double>& solution) {
    if (static_cast<std::size_t>(u.size()) != solution.size()) {
        return HUGE_VAL;
    }
    double largest = 0.0;
    for (int i = 0; i < u.size(); ++i) {
        const double error =
            std::abs(static_cast<double>(u[i]) - solution[static_cast<std::size_t>(i)]);
        if (!(error <= largest)) {
            largest = std::isnan(error) ? HUGE_VAL : error;
        }
    }
    return largest;
}

/// The Euclidean norm of b - A u, with the product summed in double.
inline double residualNorm(const Matrix& A, const RealVector& b, const RealVector& u) {
    double squares = 0.0;
    for (int j = 0; j < b.size(); ++j) {
        double r = b[j];
        for (int i = 0; i < b.size(); ++i) {
            r -= static_cast<double>(A.Get(i, j)) * static_cast<double>(u[i]);
        }
        squares += r * r;
    }
    return std::sqrt(squares);
}

/// Whether two vectors hold the same bits.
inline bool sameVectorBits(const RealVector& a, const RealVector& b) {
    return a.size() == b.size() &&
           std::memcmp(a.data(), b.data(),
                       sizeof(float) * static_cast<std::size_t>(a.size())) == 0;
}

/// A copy on the heap, as an optional target or start vector.
inline std::unique_ptr<RealVector> start(const RealVector& u) {
    return std::make_unique<RealVector>(u);
}

}  // namespace orv::test
