#include "algebra/storage/diagonal_matrix.h"

#include <cmath>
#include <utility>

#include "algebra/kernels/vector_kernels.h"
#include "algebra/result_arguments.h"
#include "algebra/storage/stored_measures.h"

namespace orv {

DiagonalMatrix::DiagonalMatrix(int n, float value) : Matrix(n), length_(n), values_(n, value) {}

std::unique_ptr<Matrix> DiagonalMatrix::Clone() const {
    return std::make_unique<DiagonalMatrix>(*this);
}

std::unique_ptr<Matrix> DiagonalMatrix::CloneTransposed(std::unique_ptr<Matrix>) const {
    return Clone();
}

int DiagonalMatrix::Size() const {
    return length_;
}

void DiagonalMatrix::Set(int i, int j, float value) {
    if (i == j && i >= 0 && i < length_) {
        values_[i] = value;
    }
}

float DiagonalMatrix::Get(int i, int j) const {
    return i == j && i >= 0 && i < length_ ? values_[i] : 0.0f;
}

void DiagonalMatrix::Set1(int i, int j, float value) {
    Set(i - 1, j - 1, value);
}

float DiagonalMatrix::Get1(int i, int j) const {
    return Get(i - 1, j - 1);
}

void DiagonalMatrix::Fill(float value) {
    values_.Fill(value);
}

double DiagonalMatrix::DiagonalMeasure() const {
    // quirk: diagonal-measure-differs
    return values_.SumOfSquares();
}

double DiagonalMatrix::FrobeniusNorm() const {
    return std::sqrt(values_.SumOfSquares());
}

double DiagonalMatrix::Sum() const {
    return values_.Sum();
}

double DiagonalMatrix::Min() const {
    return values_.Min();
}

double DiagonalMatrix::Max() const {
    return values_.Max();
}

double DiagonalMatrix::StdDev() const {
    return standardDeviation(values_.Sum(), values_.SumOfSquares(), length_);
}

void DiagonalMatrix::AddMatrix(const Matrix&) {}

void DiagonalMatrix::AddScalar(float) {}

void DiagonalMatrix::SubtractMatrix(const Matrix&) {}

void DiagonalMatrix::SubtractScalar(float) {}

void DiagonalMatrix::Scale(float a) {
    values_.MultiplyScalar(a);
}

void DiagonalMatrix::Divide(float a) {
    values_.DivideScalar(a);
}

std::unique_ptr<RealVector> DiagonalMatrix::MultiplyRange(const RealVector& x, int xFrom,
                                                          int yFrom, unsigned char accumulate,
                                                          std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, length_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        vectorKernels().addProduct(y->data() + yFrom, values_.data(), x.data() + xFrom,
                                   length_);
    }
    return y;
}

std::unique_ptr<RealVector> DiagonalMatrix::Multiply(const RealVector& x,
                                                     std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), length_);
    if (x.size() != Rows() || y == nullptr) {
        return nullptr;
    }
    for (int k = 0; k < length_; ++k) {
        (*y)[k] = values_[k] * x[k];
    }
    return y;
}

std::unique_ptr<RealVector> DiagonalMatrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    return MultiplyRange(x, xFrom, yFrom, accumulate, std::move(y));
}

std::unique_ptr<RealVector> DiagonalMatrix::MultiplyTransposed(
    const RealVector& x, std::unique_ptr<RealVector> y) const {
    return Multiply(x, std::move(y));
}

void DiagonalMatrix::PrintTo(std::FILE* file) const {
    put(file, "Diagonal Matrix(%d,%d)\n", Rows(), Cols());
    putVector(file, "Diagonal: ", values_);
}

std::unique_ptr<RealVector> DiagonalMatrix::Solve(const RealVector& b,
                                                  std::unique_ptr<RealVector> x) const {
    if (x == nullptr) {
        x = b.Clone();
    }
    if (b.size() != length_ || x->size() < length_) {
        return nullptr;
    }
    for (int k = 0; k < length_; ++k) {
        (*x)[k] = b[k] / values_[k];
    }
    return x;
}

std::unique_ptr<Matrix> DiagonalMatrix::Inverse() const {
    auto inverse = std::make_unique<DiagonalMatrix>(length_, 0.0f);
    for (int i = 0; i < length_; ++i) {
        inverse->Set(i, i, 1.0f / Get(i, i));
    }
    return inverse;
}

}  // namespace orv
