// Factors, substitutions and sweeps of the tridiagonal matrix.
#include <utility>

#include "algebra/result_arguments.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"

namespace orv {

namespace {

// The diagonals of a line system and its right-hand side, for loops without calls.
struct Line {
    Line(const FTriDiagonalMatrix& A, const RealVector& rightSide)
        : n(A.Rows()),
          below(A.lower().data()),
          main(A.main().data()),
          above(A.upper().data()),
          b(rightSide.data()) {}

    // b[i] - l - u; a neighbour beyond the ends counts as 0.
    float withoutDiagonal(const float* x, int i) const {
        const float l = i > 0 ? below[i - 1] * x[i - 1] : 0.0f;
        const float u = i + 1 < n ? above[i] * x[i + 1] : 0.0f;
        return b[i] - l - u;
    }

    int n;
    const float* below;
    const float* main;
    const float* above;
    const float* b;
};

}  // namespace

std::unique_ptr<Matrix> FTriDiagonalMatrix::JacobiMatrix() const {
    auto result = std::make_unique<FTriDiagonalMatrix>(*this);
    for (int i = 0; i < length_; ++i) {
        const float f = -1.0f / main_[i];
        if (i > 0) {
            result->upper_[i - 1] = upper_[i - 1] * f;
        }
        if (i < length_ - 1) {
            // quirk: jacobi-shifted-lower
            // data1 counts from 1, so data1()[i] is lower_[i - 1] and, at i = 0, the spare 0.
            result->lower_[i] = lower_.data1()[i] * f;
        }
        result->main_[i] = 0.0f;
    }
    return result;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::SolveUpper(
    const RealVector& b, std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, length_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const Line A(*this, b);
    float* u = x->data();
    u[A.n - 1] = A.b[A.n - 1] / A.main[A.n - 1];
    for (int i = A.n - 2; i >= 0; --i) {
        u[i] = (A.b[i] - A.above[i] * u[i + 1]) / A.main[i];
    }
    return x;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::SolveUnitUpper(
    const RealVector& b, std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, length_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const Line A(*this, b);
    float* u = x->data();
    u[A.n - 1] = A.b[A.n - 1];
    for (int i = A.n - 2; i >= 0; --i) {
        u[i] = A.b[i] - A.above[i] * u[i + 1];
    }
    return x;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::SolveLower(
    const RealVector& b, std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, length_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const Line A(*this, b);
    float* u = x->data();
    u[0] = A.b[0] / A.main[0];
    for (int i = 1; i < A.n; ++i) {
        u[i] = (A.b[i] - A.below[i - 1] * u[i - 1]) / A.main[i];
    }
    return x;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::SolveUnitLower(
    const RealVector& b, std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, length_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const Line A(*this, b);
    float* u = x->data();
    u[0] = A.b[0];
    for (int i = 1; i < A.n; ++i) {
        u[i] = A.b[i] - A.below[i - 1] * u[i - 1];
    }
    return x;
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::FactorLU() const {
    auto F = std::make_unique<FTriDiagonalMatrix>(*this);
    float* below = F->lower_.data();
    float* pivot = F->main_.data();
    for (int i = 1; i < length_; ++i) {
        below[i - 1] = below[i - 1] / pivot[i - 1];
        pivot[i] = pivot[i] - below[i - 1] * upper_[i - 1];
    }
    return F;
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::FactorLU1() const {
    // Crout's triple loop: inside the band each of its sums has one term at most.
    auto F = std::make_unique<FTriDiagonalMatrix>(*this);
    float* above = F->upper_.data();
    float* pivot = F->main_.data();
    for (int i = 1; i < length_; ++i) {
        above[i - 1] = above[i - 1] / pivot[i - 1];
        pivot[i] = pivot[i] - lower_[i - 1] * above[i - 1];
    }
    return F;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::SorSweep(const RealVector& b, float omega,
                                                         std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, length_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const Line A(*this, b);
    float* u = x->data();
    for (int i = 0; i < A.n; ++i) {
        u[i] = (1.0f - omega) * u[i] + omega * A.withoutDiagonal(u, i) / A.main[i];
    }
    return x;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::GaussSeidelSweep(
    const RealVector& b, std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, length_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    const Line A(*this, b);
    float* u = x->data();
    for (int i = 0; i < A.n; ++i) {
        u[i] = A.withoutDiagonal(u, i) / A.main[i];
    }
    return x;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::JacobiSweep(
    const RealVector& b, const RealVector& x, std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), length_);
    if (b.size() != length_ || x.size() != length_ || y == nullptr) {
        return nullptr;
    }
    const Line A(*this, b);
    float* result = y->data();
    for (int i = 0; i < A.n; ++i) {
        result[i] = A.withoutDiagonal(x.data(), i) / A.main[i];
    }
    return y;
}

}  // namespace orv
