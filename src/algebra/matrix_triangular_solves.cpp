// Substitutions on triangular parts and the solves on stored factors.
#include <utility>

#include "algebra/matrix.h"
#include "algebra/result_arguments.h"
#include "base/rounding.h"

namespace orv {

namespace {

enum class Diagonal { Divide, Unit };
enum class Access { Direct, Transposed };

// (b[i] - sum over k in [from, to) of A(k, i) x[k]) / A(i, i)
float substitute(const Matrix& A, float b, const float* x, int i, int from, int to,
                 Diagonal diagonal, Access access) {
    double sum = 0.0;
    for (int k = from; k < to; ++k) {
        const float a = access == Access::Direct ? A.Get(k, i) : A.Get(i, k);
        sum += double{a} * double{x[k]};
    }
    const float rest = b - toFloat(sum);
    return diagonal == Diagonal::Divide ? rest / A.Get(i, i) : rest;
}

// b and x may be the same array.
void substituteBack(const Matrix& A, int m, const float* b, Diagonal diagonal, Access access,
                    float* x) {
    for (int i = m - 1; i >= 0; --i) {
        x[i] = substitute(A, b[i], x, i, i + 1, m, diagonal, access);
    }
}

// b and x may be the same array.
void substituteForward(const Matrix& A, const float* b, Diagonal diagonal, Access access,
                       float* x) {
    for (int i = 0; i < A.Rows(); ++i) {
        x[i] = substitute(A, b[i], x, i, 0, i, diagonal, access);
    }
}

void divideByDiagonal(const Matrix& A, RealVector& x) {
    for (int i = 0; i < A.Rows(); ++i) {
        x[i] = x[i] / A.Get(i, i);
    }
}

}  // namespace

std::unique_ptr<RealVector> Matrix::SolveUpperTo(const RealVector& b, int m,
                                                 std::unique_ptr<RealVector> x) const {
    if (m > n_ || b.size() < m) {
        return nullptr;
    }
    if (x == nullptr) {
        x = std::make_unique<RealVector>(n_);
    }
    if (x->size() < m) {
        return nullptr;
    }
    substituteBack(*this, m, b.data(), Diagonal::Divide, Access::Direct, x->data());
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveUpper(const RealVector& b,
                                               std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substituteBack(*this, n_, b.data(), Diagonal::Divide, Access::Direct, x->data());
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveUnitUpper(const RealVector& b,
                                                   std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substituteBack(*this, n_, b.data(), Diagonal::Unit, Access::Direct, x->data());
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveLower(const RealVector& b,
                                               std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substituteForward(*this, b.data(), Diagonal::Divide, Access::Direct, x->data());
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveUnitLower(const RealVector& b,
                                                   std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    substituteForward(*this, b.data(), Diagonal::Unit, Access::Direct, x->data());
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveLU(const RealVector& b,
                                            std::unique_ptr<RealVector> x) const {
    const auto y = SolveUnitLower(b, nullptr);
    return y == nullptr ? nullptr : SolveUpper(*y, std::move(x));
}

std::unique_ptr<RealVector> Matrix::SolveLU1(const RealVector& b,
                                             std::unique_ptr<RealVector> x) const {
    const auto y = SolveLower(b, nullptr);
    return y == nullptr ? nullptr : SolveUnitUpper(*y, std::move(x));
}

std::unique_ptr<RealVector> Matrix::SolveCholeskyLower(const RealVector& b,
                                                       std::unique_ptr<RealVector> x) const {
    x = SolveLower(b, std::move(x));
    if (x != nullptr) {
        substituteBack(*this, n_, x->data(), Diagonal::Divide, Access::Transposed, x->data());
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveCholeskyUpper(const RealVector& b,
                                                       std::unique_ptr<RealVector> x) const {
    x = SolveUpper(b, std::move(x));
    if (x != nullptr) {
        substituteForward(*this, x->data(), Diagonal::Divide, Access::Transposed, x->data());
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveLdl(const RealVector& b,
                                             std::unique_ptr<RealVector> x) const {
    x = SolveUnitLower(b, std::move(x));
    if (x != nullptr) {
        divideByDiagonal(*this, *x);
        substituteBack(*this, n_, x->data(), Diagonal::Unit, Access::Transposed, x->data());
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::SolveUdu(const RealVector& b,
                                             std::unique_ptr<RealVector> x) const {
    x = SolveUnitUpper(b, std::move(x));
    if (x != nullptr) {
        divideByDiagonal(*this, *x);
        substituteForward(*this, x->data(), Diagonal::Unit, Access::Transposed, x->data());
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::Solve(const RealVector&,
                                          std::unique_ptr<RealVector>) const {
    return nullptr;
}

}  // namespace orv
