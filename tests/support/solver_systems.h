#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "algebra/storage/band_matrix.h"
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

/// The system of one implicit diffusion step on a w x h plane, unknown x + w y: five diagonals,
/// symmetric, row sums 1. The links between pixels differ, from 0.2 tau to tau.
inline BandMatrix diffusionPlane(int w, int h, float tau) {
    const int n = w * h;
    const int center = n - 1;
    const int positions[] = {center - w, center - 1, center, center + 1, center + w};
    BandMatrix A(n, 5, positions);
    std::vector<double> diagonal(static_cast<std::size_t>(n), 1.0);
    const auto join = [&](int i, int j) {
        const int mixed = (5 * i + 3 * j) % 9;
        const float link = tau * (0.2F + 0.1F * static_cast<float>(mixed));
        A.Set(i, j, -link);
        A.Set(j, i, -link);
        diagonal[static_cast<std::size_t>(i)] += double{link};
        diagonal[static_cast<std::size_t>(j)] += double{link};
    };
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const int i = x + w * y;
            if (x + 1 < w) {
                join(i, i + 1);
            }
            if (y + 1 < h) {
                join(i, i + w);
            }
        }
    }
    for (int i = 0; i < n; ++i) {
        A.SetMain(i, static_cast<float>(diagonal[static_cast<std::size_t>(i)]));
    }
    return A;
}

/// `diffusionPlane` in a steady wind along x: upwind links differ from downwind ones, so the
/// matrix isn't symmetric; its rows are still dominated by the diagonal.
inline BandMatrix windyPlane(int w, int h, float tau) {
    BandMatrix A = diffusionPlane(w, h, tau);
    for (int y = 0; y < h; ++y) {
        for (int x = 1; x < w; ++x) {
            const int i = x + w * y;
            A.Set(i - 1, i, A.Get(i - 1, i) - 0.5F * tau);
            A.SetMain(i, A.GetMain(i) + 0.5F * tau);
        }
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
