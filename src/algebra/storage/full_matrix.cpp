#include "algebra/storage/full_matrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algebra/result_arguments.h"
#include "algebra/storage/stored_measures.h"
#include "base/byte_count.h"
#include "base/rounding.h"

namespace orv {

namespace {

std::size_t elementCount(int n) {
    return boundedProduct(static_cast<std::size_t>(n), static_cast<std::size_t>(n));
}

}  // namespace

FullMatrix::FullMatrix(int n, float value) : Matrix(n), elements_(elementCount(n), value) {}

std::unique_ptr<Matrix> FullMatrix::Clone() const {
    return std::make_unique<FullMatrix>(*this);
}

std::unique_ptr<Matrix> FullMatrix::CloneTransposed(std::unique_ptr<Matrix> result) const {
    if (result == nullptr) {
        result = std::make_unique<FullMatrix>(n_);
    }
    if (result->Rows() != n_) {
        return nullptr;
    }
    result->Assign(*this, 1);
    return result;
}

float* FullMatrix::column(int i) {
    return elements_.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(n_);
}

const float* FullMatrix::column(int i) const {
    return elements_.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(n_);
}

void FullMatrix::Set(int i, int j, float value) {
    if (std::min(i, j) >= 0 && std::max(i, j) < n_) {
        column(i)[j] = value;
    }
}

float FullMatrix::Get(int i, int j) const {
    return std::min(i, j) >= 0 && std::max(i, j) < n_ ? column(i)[j] : 0.0f;
}

void FullMatrix::Set1(int i, int j, float value) {
    Set(i - 1, j - 1, value);
}

float FullMatrix::Get1(int i, int j) const {
    return Get(i - 1, j - 1);
}

void FullMatrix::Fill(float value) {
    std::fill(elements_.begin(), elements_.end(), value);
}

double FullMatrix::Sum() const {
    double sum = 0.0;
    for (const float a : elements_) {
        sum += double{a};
    }
    return sum;
}

double FullMatrix::Min() const {
    return elements_.empty() ? 0.0 : *std::min_element(elements_.begin(), elements_.end());
}

double FullMatrix::Max() const {
    return elements_.empty() ? 0.0 : *std::max_element(elements_.begin(), elements_.end());
}

double FullMatrix::StdDev() const {
    return standardDeviation(Sum(), SumOfSquares(), Size());
}

void FullMatrix::AddScalar(float a) {
    for (float& element : elements_) {
        element += a;
    }
}

void FullMatrix::SubtractScalar(float a) {
    for (float& element : elements_) {
        element -= a;
    }
}

void FullMatrix::Scale(float a) {
    for (float& element : elements_) {
        element *= a;
    }
}

void FullMatrix::Divide(float a) {
    for (float& element : elements_) {
        element /= a;
    }
}

std::unique_ptr<RealVector> FullMatrix::MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                                      unsigned char accumulate,
                                                      std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    for (int j = 0; y != nullptr && j < n_; ++j) {
        double sum = 0.0;
        for (int i = 0; i < n_; ++i) {
            sum += double{column(i)[j]} * double{x[xFrom + i]};
        }
        (*y)[yFrom + j] = toFloat(double{(*y)[yFrom + j]} + sum);
    }
    return y;
}

std::unique_ptr<RealVector> FullMatrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    for (int i = 0; y != nullptr && i < n_; ++i) {
        const float* values = column(i);
        double sum = 0.0;
        for (int j = 0; j < n_; ++j) {
            sum += double{values[j]} * double{x[xFrom + j]};
        }
        (*y)[yFrom + i] = toFloat(double{(*y)[yFrom + i]} + sum);
    }
    return y;
}

void FullMatrix::PrintTo(std::FILE* file) const {
    put(file, "%s", "Full ");
    Matrix::PrintTo(file);
}

std::unique_ptr<Matrix> FullMatrix::Duplicate() const {
    return Clone();
}

std::unique_ptr<Matrix> FullMatrix::IncompleteLU0() const {
    auto R = std::make_unique<FullMatrix>(*this);
    for (int j = 1; j < n_; ++j) {
        for (int k = 0; k < j; ++k) {
            if (Get(k, j) == 0.0f) {
                continue;
            }
            const float factor = R->Get(k, j) / R->Get(k, k);
            R->Set(k, j, factor);
            for (int i = k + 1; i < n_; ++i) {
                if (Get(i, j) != 0.0f) {
                    R->Set(i, j, R->Get(i, j) - factor * R->Get(i, k));
                }
            }
        }
    }
    return R;
}

double FullMatrix::FrobeniusNorm2() const {
    return std::sqrt(SumOfSquares());
}

double FullMatrix::MaxColumnSum() const {
    // quirk: max-sum-names
    double largest = 0.0;
    for (int j = 0; j < n_; ++j) {
        double sum = 0.0;
        for (int i = 0; i < n_; ++i) {
            sum += std::fabs(double{column(i)[j]});
        }
        largest = std::max(largest, sum);
    }
    return largest;
}

double FullMatrix::MaxRowSum() const {
    // quirk: max-sum-names
    double largest = 0.0;
    for (int i = 0; i < n_; ++i) {
        double sum = 0.0;
        for (int j = 0; j < n_; ++j) {
            sum += std::fabs(double{column(i)[j]});
        }
        largest = std::max(largest, sum);
    }
    return largest;
}

double FullMatrix::SumOfSquares() const {
    double sum = 0.0;
    for (const float a : elements_) {
        sum += double{a} * double{a};
    }
    return sum;
}

}  // namespace orv
