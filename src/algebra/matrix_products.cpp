// Products with vectors, and sums and products of matrices.
#include <utility>

#include "algebra/matrix.h"
#include "algebra/result_arguments.h"
#include "algebra/storage/full_matrix.h"
#include "base/rounding.h"

namespace orv {

namespace {

bool fitsSum(const Matrix& a, const Matrix& b, int transposeA, int transposeB) {
    if (transposeA == transposeB) {
        return a.Rows() == b.Rows() && a.Cols() == b.Cols();
    }
    return a.Rows() == b.Cols() && a.Cols() == b.Rows();
}

float element(const Matrix& a, int i, int j, int transposed) {
    return transposed == 0 ? a.Get(i, j) : a.Get(j, i);
}

bool isFlag(int transposed) {
    return transposed == 0 || transposed == 1;
}

// The common frame of Add, Subtract and SubtractFrom: result = combine(a, b).
template <class Combine>
std::unique_ptr<Matrix> combineInto(const Matrix& a, const Matrix& b, int transposeA,
                                    int transposeB, std::unique_ptr<Matrix> result,
                                    Combine combine) {
    if (!fitsSum(a, b, transposeA, transposeB)) {
        return nullptr;
    }
    if (result == nullptr && transposeA == 0) {
        result = a.Clone();
    } else if (result == nullptr && transposeA == 1) {
        result = a.CloneTransposed(nullptr);
    }
    if (result == nullptr || !isFlag(transposeA) || !isFlag(transposeB)) {
        return result;
    }
    for (int j = 0; j < a.Rows(); ++j) {
        for (int i = 0; i < a.Cols(); ++i) {
            result->Set(i, j,
                        combine(element(a, i, j, transposeA), element(b, i, j, transposeB)));
        }
    }
    return result;
}

// The common frame of Sum2, Difference2, Product and their mirrors: result(i, j) = value(i, j).
template <class Value>
std::unique_ptr<Matrix> evaluateInto(const Matrix& a, const Matrix& b,
                                     std::unique_ptr<Matrix> result, Value value) {
    const int n = a.Rows();
    if (b.Rows() != n || b.Cols() != a.Cols()) {
        return nullptr;
    }
    if (result == nullptr) {
        result = std::make_unique<FullMatrix>(n);
    }
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            result->Set(i, j, value(i, j));
        }
    }
    return result;
}

// y[yFrom + j] += sum over i of A(i, j) x[xFrom + i], or of A(j, i) if `transposed`.
void addProduct(const Matrix& A, const float* x, bool transposed, float* y) {
    const int n = A.Rows();
    for (int j = 0; j < n; ++j) {
        double sum = 0.0;
        for (int i = 0; i < n; ++i) {
            sum += double{transposed ? A.Get(j, i) : A.Get(i, j)} * double{x[i]};
        }
        y[j] = toFloat(double{y[j]} + sum);
    }
}

}  // namespace

std::unique_ptr<RealVector> Matrix::MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                                  unsigned char accumulate,
                                                  std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        addProduct(*this, x.data() + xFrom, /*transposed=*/false, y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> Matrix::Multiply(const RealVector& x,
                                             std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), n_);
    if (x.size() != Rows() || y == nullptr) {
        return nullptr;
    }
    y->Fill(0.0f);
    return MultiplyRange(x, 0, 0, /*accumulate=*/1, std::move(y));
}

std::unique_ptr<RealVector> Matrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        addProduct(*this, x.data() + xFrom, /*transposed=*/true, y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> Matrix::MultiplyTransposed(const RealVector& x,
                                                       std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), n_);
    if (x.size() != Rows() || y == nullptr) {
        return nullptr;
    }
    y->Fill(0.0f);
    return MultiplyTransposedRange(x, 0, 0, /*accumulate=*/1, std::move(y));
}

std::unique_ptr<RealVector> Matrix::MultiplyAdjointRange(const RealVector& x, int yFrom,
                                                         int xFrom, unsigned char accumulate,
                                                         std::unique_ptr<RealVector> y) const {
    return MultiplyTransposedRange(x, xFrom, yFrom, accumulate, std::move(y));
}

std::unique_ptr<RealVector> Matrix::MultiplyAdjoint(const RealVector& x,
                                                    std::unique_ptr<RealVector> y) const {
    return MultiplyTransposed(x, std::move(y));
}

std::unique_ptr<RealVector> Matrix::MultiplyConjugateRange(
    const RealVector& x, int yFrom, int xFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    return MultiplyRange(x, xFrom, yFrom, accumulate, std::move(y));
}

std::unique_ptr<RealVector> Matrix::MultiplyConjugate(const RealVector& x,
                                                      std::unique_ptr<RealVector> y) const {
    return Multiply(x, std::move(y));
}

std::unique_ptr<Matrix> Matrix::Add(const Matrix& other, int transposeThis, int transposeOther,
                                    std::unique_ptr<Matrix> result) const {
    return combineInto(*this, other, transposeThis, transposeOther, std::move(result),
                       [](float a, float b) { return a + b; });
}

std::unique_ptr<Matrix> Matrix::AddReversed(const Matrix& other, int transposeThis,
                                            int transposeOther,
                                            std::unique_ptr<Matrix> result) const {
    return other.Add(*this, transposeThis, transposeOther, std::move(result));
}

std::unique_ptr<Matrix> Matrix::Subtract(const Matrix& other, int transposeThis,
                                         int transposeOther,
                                         std::unique_ptr<Matrix> result) const {
    return combineInto(*this, other, transposeThis, transposeOther, std::move(result),
                       [](float a, float b) { return a - b; });
}

std::unique_ptr<Matrix> Matrix::SubtractFrom(const Matrix& other, int transposeThis,
                                             int transposeOther,
                                             std::unique_ptr<Matrix> result) const {
    return combineInto(*this, other, transposeThis, transposeOther, std::move(result),
                       [](float a, float b) { return b - a; });
}

void Matrix::ReservedProduct1() {}

void Matrix::ReservedProduct2() {}

std::unique_ptr<Matrix> Matrix::Sum2(const Matrix& other,
                                     std::unique_ptr<Matrix> result) const {
    return evaluateInto(*this, other, std::move(result),
                        [&](int i, int j) { return Get(i, j) + other.Get(i, j); });
}

std::unique_ptr<Matrix> Matrix::Sum2Reversed(const Matrix& other,
                                             std::unique_ptr<Matrix> result) const {
    return other.Sum2(*this, std::move(result));
}

std::unique_ptr<Matrix> Matrix::Difference2(const Matrix& other,
                                            std::unique_ptr<Matrix> result) const {
    return evaluateInto(*this, other, std::move(result),
                        [&](int i, int j) { return Get(i, j) - other.Get(i, j); });
}

std::unique_ptr<Matrix> Matrix::DifferenceFrom2(const Matrix& other,
                                                std::unique_ptr<Matrix> result) const {
    return evaluateInto(*this, other, std::move(result),
                        [&](int i, int j) { return other.Get(i, j) - Get(i, j); });
}

std::unique_ptr<Matrix> Matrix::Product(const Matrix& other,
                                        std::unique_ptr<Matrix> result) const {
    // quirk: product-transposed
    return evaluateInto(*this, other, std::move(result), [&](int j, int i) {
        double sum = 0.0;
        for (int k = 0; k < n_; ++k) {
            sum += double{other.Get(i, k)} * double{Get(k, j)};
        }
        return toFloat(sum);
    });
}

std::unique_ptr<Matrix> Matrix::ProductReversed(const Matrix& other,
                                                std::unique_ptr<Matrix> result) const {
    // quirk: product-transposed
    return evaluateInto(*this, other, std::move(result), [&](int j, int i) {
        double sum = 0.0;
        for (int k = 0; k < n_; ++k) {
            sum += double{other.Get(k, j)} * double{Get(i, k)};
        }
        return toFloat(sum);
    });
}

}  // namespace orv
