// Elements, measures, element-wise updates and conversions to other storage.
#include "algebra/matrix.h"
#include "algebra/storage/diagonal_matrix.h"
#include "algebra/storage/full_matrix.h"
#include "algebra/storage/lower_triangular_matrix.h"
#include "algebra/storage/upper_triangular_matrix.h"

namespace orv {

namespace {

// Writes change(i, j) to every position of `target`; positions outside the pattern ignore it.
template <class Change>
void setEach(Matrix& target, Change change) {
    const int n = target.Rows();
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            target.Set(i, j, change(i, j));
        }
    }
}

// The elements of `source` with i - j from `first` to `last`, and ones on the diagonal if `unit`.
template <class Target>
std::unique_ptr<Matrix> partOf(const Matrix& source, int first, int last, bool unit) {
    auto part = std::make_unique<Target>(source.Rows());
    setEach(*part, [&](int i, int j) {
        if (unit && i == j) {
            return 1.0f;
        }
        return i - j >= first && i - j <= last ? source.Get(i, j) : 0.0f;
    });
    return part;
}

bool sameOrder(const Matrix& a, const Matrix& b) {
    return a.Rows() == b.Rows() && a.Cols() == b.Cols();
}

}  // namespace

int Matrix::Size() const {
    return Rows() * Cols();
}

int Matrix::Rows() const {
    return n_;
}

int Matrix::Cols() const {
    return n_;
}

std::unique_ptr<IndexList> Matrix::RowPattern(int, std::unique_ptr<IndexList>) const {
    return nullptr;
}

std::unique_ptr<IndexList> Matrix::ColumnPattern(int, std::unique_ptr<IndexList>) const {
    return nullptr;
}

std::unique_ptr<IndexList> Matrix::RowPattern1(int, std::unique_ptr<IndexList>) const {
    return nullptr;
}

std::unique_ptr<IndexList> Matrix::ColumnPattern1(int, std::unique_ptr<IndexList>) const {
    return nullptr;
}

void Matrix::Fill(float value) {
    setEach(*this, [value](int, int) { return value; });
}

void Matrix::Assign(const Matrix& other, int transposed) {
    // quirk: assign-unknown-flag
    if ((transposed == 0 || transposed == 1) && !sameOrder(*this, other)) {
        return;
    }
    if (transposed == 0) {
        setEach(*this, [&other](int i, int j) { return other.Get(i, j); });
    } else {
        setEach(*this, [&other](int i, int j) { return other.Get(j, i); });
    }
}

double Matrix::ReservedMeasure() const {
    return 0.0;
}

double Matrix::DiagonalMeasure() const {
    return 0.0;
}

double Matrix::FrobeniusNorm() const {
    return 0.0;
}

double Matrix::Sum() const {
    return 0.0;
}

double Matrix::Min() const {
    return 0.0;
}

double Matrix::Max() const {
    return 0.0;
}

double Matrix::Mean() const {
    return Sum() / Size();
}

double Matrix::StdDev() const {
    return 0.0;
}

void Matrix::AddMatrix(const Matrix& other) {
    if (sameOrder(*this, other)) {
        setEach(*this, [&](int i, int j) { return Get(i, j) + other.Get(i, j); });
    }
}

void Matrix::AddScalar(float a) {
    setEach(*this, [this, a](int i, int j) { return Get(i, j) + a; });
}

void Matrix::SubtractMatrix(const Matrix& other) {
    if (sameOrder(*this, other)) {
        setEach(*this, [&](int i, int j) { return Get(i, j) - other.Get(i, j); });
    }
}

void Matrix::SubtractScalar(float a) {
    setEach(*this, [this, a](int i, int j) { return Get(i, j) - a; });
}

void Matrix::Scale(float a) {
    setEach(*this, [this, a](int i, int j) { return Get(i, j) * a; });
}

void Matrix::Divide(float a) {
    setEach(*this, [this, a](int i, int j) { return Get(i, j) / a; });
}

std::unique_ptr<Matrix> Matrix::Duplicate() const {
    return nullptr;
}

std::unique_ptr<Matrix> Matrix::ToFull() const {
    auto full = std::make_unique<FullMatrix>(n_);
    setEach(*full, [this](int i, int j) { return Get(i, j); });
    return full;
}

std::unique_ptr<Matrix> Matrix::ToDiagonal() const {
    auto diagonal = std::make_unique<DiagonalMatrix>(n_, 0.0f);
    for (int i = 0; i < n_; ++i) {
        diagonal->Set(i, i, Get(i, i));
    }
    return diagonal;
}

std::unique_ptr<Matrix> Matrix::ToStrictLower() const {
    return partOf<LowerTriangularMatrix>(*this, -n_, -1, /*unit=*/false);
}

std::unique_ptr<Matrix> Matrix::ToStrictUpper() const {
    return partOf<UpperTriangularMatrix>(*this, 1, n_, /*unit=*/false);
}

std::unique_ptr<Matrix> Matrix::ToLower() const {
    return partOf<LowerTriangularMatrix>(*this, -n_, 0, /*unit=*/false);
}

std::unique_ptr<Matrix> Matrix::ToUpper() const {
    return partOf<UpperTriangularMatrix>(*this, 0, n_, /*unit=*/false);
}

std::unique_ptr<Matrix> Matrix::ToUnitLower() const {
    return partOf<LowerTriangularMatrix>(*this, -n_, -1, /*unit=*/true);
}

std::unique_ptr<Matrix> Matrix::ToUnitUpper() const {
    return partOf<UpperTriangularMatrix>(*this, 1, n_, /*unit=*/true);
}

}  // namespace orv
