#include "algebra/storage/triangular_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/result_arguments.h"
#include "algebra/storage/stored_measures.h"
#include "base/rounding.h"

namespace orv {

TriangularMatrix::TriangularMatrix(int n, Part part, float value) : Matrix(n), part_(part) {
    rows_.reserve(static_cast<std::size_t>(n));
    for (int j = 0; j < n; ++j) {
        const int length = part == Part::Lower ? j + 1 : n - j;
        rows_.emplace_back(static_cast<std::size_t>(length), value);
    }
}

bool TriangularMatrix::holds(int i, int j) const {
    return std::min(i, j) >= 0 && std::max(i, j) < n_ &&
           (part_ == Part::Lower ? i <= j : i >= j);
}

float& TriangularMatrix::at(int i, int j) {
    return rows_[static_cast<std::size_t>(j)][static_cast<std::size_t>(i - firstColumn(j))];
}

const float& TriangularMatrix::at(int i, int j) const {
    return rows_[static_cast<std::size_t>(j)][static_cast<std::size_t>(i - firstColumn(j))];
}

template <class Change>
void TriangularMatrix::changeEach(Change change) {
    for (int j = 0; j < n_; ++j) {
        for (int i = 0; i < n_; ++i) {
            if (holds(i, j)) {
                at(i, j) = change(at(i, j), i, j);
            }
        }
    }
}

void TriangularMatrix::Set(int i, int j, float value) {
    if (holds(i, j)) {
        at(i, j) = value;
    }
}

float TriangularMatrix::Get(int i, int j) const {
    return holds(i, j) ? at(i, j) : 0.0f;
}

void TriangularMatrix::Set1(int i, int j, float value) {
    Set(i - 1, j - 1, value);
}

float TriangularMatrix::Get1(int i, int j) const {
    return Get(i - 1, j - 1);
}

void TriangularMatrix::Fill(float value) {
    changeEach([value](float, int, int) { return value; });
}

double TriangularMatrix::Sum() const {
    double sum = 0.0;
    for (const auto& row : rows_) {
        for (const float a : row) {
            sum += double{a};
        }
    }
    return sum;
}

double TriangularMatrix::Min() const {
    double smallest = Get(0, 0);
    for (const auto& row : rows_) {
        smallest = std::min(smallest, double{*std::min_element(row.begin(), row.end())});
    }
    return smallest;
}

double TriangularMatrix::Max() const {
    double largest = Get(0, 0);
    for (const auto& row : rows_) {
        largest = std::max(largest, double{*std::max_element(row.begin(), row.end())});
    }
    return largest;
}

double TriangularMatrix::StdDev() const {
    return standardDeviation(Sum(), SumOfSquares(), Size());
}

void TriangularMatrix::AddMatrix(const Matrix& other) {
    if (other.Rows() == n_ && other.Cols() == n_) {
        changeEach([&other](float a, int i, int j) { return a + other.Get(i, j); });
    }
}

void TriangularMatrix::AddScalar(float a) {
    changeEach([a](float element, int, int) { return element + a; });
}

void TriangularMatrix::SubtractMatrix(const Matrix& other) {
    if (other.Rows() == n_ && other.Cols() == n_) {
        changeEach([&other](float a, int i, int j) { return a - other.Get(i, j); });
    }
}

void TriangularMatrix::SubtractScalar(float a) {
    changeEach([a](float element, int, int) { return element - a; });
}

void TriangularMatrix::Scale(float a) {
    changeEach([a](float element, int, int) { return element * a; });
}

void TriangularMatrix::Divide(float a) {
    changeEach([a](float element, int, int) { return element / a; });
}

std::unique_ptr<RealVector> TriangularMatrix::MultiplyRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    for (int j = 0; y != nullptr && j < n_; ++j) {
        double sum = 0.0;
        int i = firstColumn(j);
        for (const float a : rows_[static_cast<std::size_t>(j)]) {
            sum += double{a} * double{x[xFrom + i]};
            ++i;
        }
        (*y)[yFrom + j] = toFloat(double{(*y)[yFrom + j]} + sum);
    }
    return y;
}

std::unique_ptr<RealVector> TriangularMatrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    for (int i = 0; y != nullptr && i < n_; ++i) {
        const int from = part_ == Part::Lower ? i : 0;
        const int to = part_ == Part::Lower ? n_ : i + 1;
        double sum = 0.0;
        for (int j = from; j < to; ++j) {
            sum += double{at(i, j)} * double{x[xFrom + j]};
        }
        (*y)[yFrom + i] = toFloat(double{(*y)[yFrom + i]} + sum);
    }
    return y;
}

std::unique_ptr<Matrix> TriangularMatrix::Duplicate() const {
    return Clone();
}

double TriangularMatrix::FrobeniusNorm2() const {
    return std::sqrt(SumOfSquares());
}

double TriangularMatrix::MaxRowSum() const {
    double largest = 0.0;
    for (const auto& row : rows_) {
        double sum = 0.0;
        for (const float a : row) {
            sum += std::fabs(double{a});
        }
        largest = std::max(largest, sum);
    }
    return largest;
}

double TriangularMatrix::MaxRowSum2() const {
    return MaxRowSum();
}

double TriangularMatrix::SumOfSquares() const {
    double sum = 0.0;
    for (const auto& row : rows_) {
        for (const float a : row) {
            sum += double{a} * double{a};
        }
    }
    return sum;
}

}  // namespace orv
