// Stationary sweeps and the iterations built on them.
#include <limits>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/result_arguments.h"
#include "algebra/storage/full_matrix.h"
#include "base/rounding.h"

namespace orv {

namespace {

// b[i] - l - u, with l and u the sums of A(k, i) x[k] over k below and above i.
float residualWithoutDiagonal(const Matrix& A, const RealVector& b, const float* x, int i) {
    double below = 0.0;
    for (int k = 0; k < i; ++k) {
        below += double{A.Get(k, i)} * double{x[k]};
    }
    double above = 0.0;
    for (int k = i + 1; k < A.Rows(); ++k) {
        above += double{A.Get(k, i)} * double{x[k]};
    }
    return b[i] - toFloat(below) - toFloat(above);
}

}  // namespace

std::unique_ptr<Matrix> Matrix::JacobiMatrix() const {
    auto result = std::make_unique<FullMatrix>(n_);
    for (int j = 0; j < n_; ++j) {
        const float diagonal = Get(j, j);
        for (int i = 0; i < n_; ++i) {
            if (i != j) {
                result->Set(i, j, -(Get(i, j) / diagonal));
            }
        }
    }
    return result;
}

std::unique_ptr<RealVector> Matrix::JacobiVector(const RealVector& b) const {
    if (b.size() != n_) {
        return nullptr;
    }
    auto result = std::make_unique<RealVector>(b);
    for (int i = 0; i < n_; ++i) {
        (*result)[i] = b[i] / Get(i, i);
    }
    return result;
}

std::unique_ptr<RealVector> Matrix::SorSweep(const RealVector& b, float omega,
                                             std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    float* u = x->data();
    for (int i = 0; i < n_; ++i) {
        const float rest = residualWithoutDiagonal(*this, b, u, i);
        u[i] = (1.0f - omega) * u[i] + omega * rest / Get(i, i);
    }
    return x;
}

void Matrix::ReservedSweep() {}

std::unique_ptr<RealVector> Matrix::GaussSeidelSweep(const RealVector& b,
                                                     std::unique_ptr<RealVector> x) const {
    x = solutionVector(b, n_, std::move(x));
    if (x == nullptr) {
        return nullptr;
    }
    float* u = x->data();
    for (int i = 0; i < n_; ++i) {
        u[i] = residualWithoutDiagonal(*this, b, u, i) / Get(i, i);
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::JacobiSweep(const RealVector& b, const RealVector& x,
                                                std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), n_);
    if (b.size() != n_ || x.size() != n_ || y == nullptr) {
        return nullptr;
    }
    for (int i = 0; i < n_; ++i) {
        (*y)[i] = residualWithoutDiagonal(*this, b, x.data(), i) / Get(i, i);
    }
    return y;
}

std::unique_ptr<RealVector> Matrix::GaussSeidelIterate(int count, const RealVector& b,
                                                       std::unique_ptr<RealVector> x) const {
    x = resultVector(std::move(x), n_);
    for (int step = 0; step < count && x != nullptr; ++step) {
        x = GaussSeidelSweep(b, std::move(x));
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::JacobiIterate(int count, const RealVector& b,
                                                  std::unique_ptr<RealVector> x) const {
    x = resultVector(std::move(x), n_);
    if (x == nullptr) {
        return nullptr;
    }
    auto y = std::make_unique<RealVector>(x->size());
    for (int step = 0; step < count; ++step) {
        y = JacobiSweep(b, *x, std::move(y));
        if (y == nullptr) {
            return nullptr;
        }
        x->CopyFrom(*y);
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::SorIterate(int count, const RealVector& b, float omega,
                                               std::unique_ptr<RealVector> x) const {
    x = resultVector(std::move(x), n_);
    for (int step = 0; step < count && x != nullptr; ++step) {
        x = SorSweep(b, omega, std::move(x));
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::PowerIteration(int count, std::unique_ptr<RealVector> x,
                                                   double& eigenvalue) const {
    x = resultVector(std::move(x), n_);
    std::unique_ptr<RealVector> y;
    for (int step = 0; step < count && x != nullptr; ++step) {
        y = Multiply(*x, std::move(y));
        if (y == nullptr) {
            return nullptr;
        }
        eigenvalue = y->MaxAbs();
        y->DivideScalar(toFloat(eigenvalue));
        x->CopyFrom(*y);
    }
    return x;
}

std::unique_ptr<RealVector> Matrix::ReservedIteration(const RealVector*, const RealVector*,
                                                      const RealVector*,
                                                      const RealVector*) const {
    return nullptr;
}

double Matrix::RayleighQuotient(const RealVector& x) const {
    const auto y = Multiply(x, nullptr);
    return y == nullptr ? std::numeric_limits<double>::quiet_NaN()
                        : x.Dot(*y) / x.SumOfSquares();
}

}  // namespace orv
