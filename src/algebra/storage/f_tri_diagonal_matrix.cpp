#include "algebra/storage/f_tri_diagonal_matrix.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "algebra/kernels/vector_kernels.h"
#include "algebra/result_arguments.h"
#include "algebra/storage/band_matrix.h"
#include "algebra/storage/lower_bi_diagonal_matrix.h"
#include "algebra/storage/stored_measures.h"
#include "algebra/storage/unit_lower_bi_diagonal_matrix.h"
#include "algebra/storage/unit_upper_bi_diagonal_matrix.h"
#include "algebra/storage/upper_bi_diagonal_matrix.h"
#include "base/rounding.h"

namespace orv {

namespace {

double term(float element, float x) {
    return double{element} * double{x};
}

// y += the product with the diagonals below, main and above; the end rows have two terms.
void addLineProduct(int n, const float* below, const float* main, const float* above,
                    const float* x, float* y) {
    if (n == 1) {
        y[0] = toFloat(double{y[0]} + term(main[0], x[0]));
    }
    if (n < 2) {
        return;
    }
    const int m = n - 1;
    y[0] = toFloat(double{y[0]} + (term(main[0], x[0]) + term(above[0], x[1])));
    vectorKernels().addTridiagonalProduct(y, below, main, above, x, n);
    y[m] = toFloat(double{y[m]} + (term(below[m - 1], x[m - 1]) + term(main[m], x[m])));
}

// y = the same product.
void setLineProduct(int n, const float* below, const float* main, const float* above,
                    const float* x, float* y) {
    if (n == 1) {
        y[0] = toFloat(term(main[0], x[0]));
    }
    if (n < 2) {
        return;
    }
    const int m = n - 1;
    y[0] = toFloat(term(main[0], x[0]) + term(above[0], x[1]));
    vectorKernels().setTridiagonalProduct(y, below, main, above, x, n);
    y[m] = toFloat(term(below[m - 1], x[m - 1]) + term(main[m], x[m]));
}

std::unique_ptr<Matrix> singleDiagonal(int n, int position, const RealVector& values) {
    auto band = std::make_unique<BandMatrix>(n, 1, &position);
    if (band->diagonal(position) != nullptr) {
        band->SetDiagonal(position, values);
    }
    return band;
}

}  // namespace

FTriDiagonalMatrix::FTriDiagonalMatrix(int n, float value)
    : Matrix(n),
      length_(n),
      lower_(std::max(n - 1, 0), value),
      main_(n, value),
      upper_(std::max(n - 1, 0), value) {}

std::unique_ptr<Matrix> FTriDiagonalMatrix::Clone() const {
    return std::make_unique<FTriDiagonalMatrix>(*this);
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::CloneTransposed(std::unique_ptr<Matrix>) const {
    return nullptr;
}

int FTriDiagonalMatrix::Size() const {
    return 3 * length_ - 2;
}

void FTriDiagonalMatrix::Set(int i, int j, float value) {
    if (std::min(i, j) < 0 || std::max(i, j) >= length_) {
        return;
    }
    if (i == j) {
        main_[i] = value;
    } else if (i == j + 1) {
        upper_[j] = value;
    } else if (j == i + 1) {
        lower_[i] = value;
    }
}

float FTriDiagonalMatrix::Get(int i, int j) const {
    if (std::min(i, j) < 0 || std::max(i, j) >= length_) {
        return 0.0f;
    }
    if (i == j) {
        return main_[i];
    }
    if (i == j + 1) {
        return upper_[j];
    }
    return j == i + 1 ? lower_[i] : 0.0f;
}

std::unique_ptr<IndexList> FTriDiagonalMatrix::RowPattern(
    int, std::unique_ptr<IndexList> list) const {
    return list;
}

std::unique_ptr<IndexList> FTriDiagonalMatrix::ColumnPattern(
    int, std::unique_ptr<IndexList> list) const {
    return list;
}

void FTriDiagonalMatrix::Set1(int i, int j, float value) {
    Set(i - 1, j - 1, value);
}

float FTriDiagonalMatrix::Get1(int i, int j) const {
    return Get(i - 1, j - 1);
}

std::unique_ptr<IndexList> FTriDiagonalMatrix::RowPattern1(
    int, std::unique_ptr<IndexList> list) const {
    return list;
}

std::unique_ptr<IndexList> FTriDiagonalMatrix::ColumnPattern1(
    int, std::unique_ptr<IndexList> list) const {
    return list;
}

void FTriDiagonalMatrix::Fill(float value) {
    lower_.Fill(value);
    main_.Fill(value);
    upper_.Fill(value);
}

double FTriDiagonalMatrix::DiagonalMeasure() const {
    // quirk: diagonal-measure-differs
    return main_.SumOfSquares();
}

double FTriDiagonalMatrix::FrobeniusNorm() const {
    return std::sqrt(lower_.SumOfSquares() + main_.SumOfSquares() + upper_.SumOfSquares());
}

double FTriDiagonalMatrix::Sum() const {
    return lower_.Sum() + main_.Sum() + upper_.Sum();
}

double FTriDiagonalMatrix::Min() const {
    return smallestOf(main_[length_ - 1], {&lower_, &main_, &upper_});
}

double FTriDiagonalMatrix::Max() const {
    return largestOf(main_[length_ - 1], {&lower_, &main_, &upper_});
}

double FTriDiagonalMatrix::StdDev() const {
    const double squares = lower_.SumOfSquares() + main_.SumOfSquares() + upper_.SumOfSquares();
    return standardDeviation(Sum(), squares, Size());
}

void FTriDiagonalMatrix::AddMatrix(const Matrix&) {}

void FTriDiagonalMatrix::AddScalar(float a) {
    lower_.AddScalar(a);
    main_.AddScalar(a);
    upper_.AddScalar(a);
}

void FTriDiagonalMatrix::SubtractMatrix(const Matrix&) {}

void FTriDiagonalMatrix::SubtractScalar(float a) {
    lower_.SubtractScalar(a);
    main_.SubtractScalar(a);
    upper_.SubtractScalar(a);
}

void FTriDiagonalMatrix::Scale(float a) {
    lower_.MultiplyScalar(a);
    main_.MultiplyScalar(a);
    upper_.MultiplyScalar(a);
}

void FTriDiagonalMatrix::Divide(float a) {
    lower_.DivideScalar(a);
    main_.DivideScalar(a);
    upper_.DivideScalar(a);
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::MultiplyRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, length_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        addLineProduct(length_, lower_.data(), main_.data(), upper_.data(), x.data() + xFrom,
                       y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::Multiply(const RealVector& x,
                                                         std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), length_);
    if (x.size() != Rows() || y == nullptr) {
        return nullptr;
    }
    setLineProduct(length_, lower_.data(), main_.data(), upper_.data(), x.data(), y->data());
    return y;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, length_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        addLineProduct(length_, upper_.data(), main_.data(), lower_.data(), x.data() + xFrom,
                       y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> FTriDiagonalMatrix::MultiplyTransposed(
    const RealVector& x, std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), length_);
    if (x.size() != Rows() || y == nullptr) {
        return nullptr;
    }
    setLineProduct(length_, upper_.data(), main_.data(), lower_.data(), x.data(), y->data());
    return y;
}

void FTriDiagonalMatrix::PrintTo(std::FILE* file) const {
    put(file, "FTriDiagonalMatrix(%d,%d)\n", length_, length_);
    putVector(file, "L: ", lower_);
    putVector(file, "D: ", main_);
    putVector(file, "U: ", upper_);
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::ToStrictLower() const {
    // quirk: crossed-bidiagonal
    return singleDiagonal(length_, length_ - 2, upper_);
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::ToStrictUpper() const {
    return singleDiagonal(length_, length_, lower_);
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::ToLower() const {
    auto result = std::make_unique<LowerBiDiagonalMatrix>(length_);
    result->SetVector(0, main_);
    result->SetVector(1, upper_);
    return result;
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::ToUpper() const {
    auto result = std::make_unique<UpperBiDiagonalMatrix>(length_);
    result->SetVector(0, main_);
    result->SetVector(1, lower_);
    return result;
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::ToUnitLower() const {
    auto result = std::make_unique<UnitLowerBiDiagonalMatrix>(length_);
    result->offDiagonal().CopyFrom(upper_);
    return result;
}

std::unique_ptr<Matrix> FTriDiagonalMatrix::ToUnitUpper() const {
    auto result = std::make_unique<UnitUpperBiDiagonalMatrix>(length_);
    result->offDiagonal().CopyFrom(lower_);
    return result;
}

void FTriDiagonalMatrix::AssignFrom(const FTriDiagonalMatrix& other) {
    lower_.CopyFrom(other.lower_);
    main_.CopyFrom(other.main_);
    upper_.CopyFrom(other.upper_);
}

}  // namespace orv
