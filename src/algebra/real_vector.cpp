#include "algebra/real_vector.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "algebra/kernels/vector_kernels.h"
#include "base/rounding.h"
#include "base/runtime_random.h"
#include "base/text_output.h"

namespace orv {

RealVector::RealVector(int n) : RealVector(n, 0.0f) {}

RealVector::RealVector(int n, float value) {
    allocate(n);
    Fill(value);
}

RealVector::RealVector(const RealVector& other) {
    allocate(other.size_);
    CopyFrom(other);
}

RealVector::RealVector(RealVector&& other) noexcept
    : size_(std::exchange(other.size_, 0)),
      data_(std::exchange(other.data_, nullptr)),
      data1_(std::exchange(other.data1_, nullptr)),
      storage_(std::move(other.storage_)) {}

RealVector& RealVector::operator=(const RealVector& other) {
    if (data_ == other.data_) {
        return *this;
    }
    if (size_ != other.size_) {
        allocate(other.size_);
    }
    CopyFrom(other);
    return *this;
}

RealVector& RealVector::operator=(RealVector&& other) noexcept {
    if (this != &other) {
        size_ = std::exchange(other.size_, 0);
        data_ = std::exchange(other.data_, nullptr);
        data1_ = std::exchange(other.data1_, nullptr);
        storage_ = std::move(other.storage_);
    }
    return *this;
}

std::unique_ptr<RealVector> RealVector::Clone() const {
    return std::make_unique<RealVector>(*this);
}

void RealVector::allocate(int n) {
    const std::size_t elements = static_cast<std::size_t>(std::max(n, 0));
    storage_ = std::make_unique_for_overwrite<float[]>(elements + 1);
    storage_[0] = 0.0f;
    size_ = n;
    data1_ = storage_.get();
    data_ = storage_.get() + 1;
}

void RealVector::Fill(float value) {
    vectorKernels().fill(data_, value, size_);
}

void RealVector::FillRange(int start, int count, float value) {
    vectorKernels().fill(data_ + start, value, count);
}

void RealVector::CopyFrom(const RealVector& other) {
    if (size_ == other.size_) {
        std::copy(other.data_, other.data_ + std::max(size_, 0), data_);
    }
}

void RealVector::SetScaled(float a, const RealVector& x) {
    if (size_ == x.size_) {
        vectorKernels().setScaled(data_, a, x.data_, size_);
    }
}

void RealVector::SetDifference(const RealVector& a, const RealVector& b) {
    vectorKernels().setDifference(data_, a.data_, b.data_, size_);
}

void RealVector::Randomize(float low, float high) {
    // The double nearest to 1 / 32767, the inverse of the generator's largest value.
    constexpr double kStep = 3.051850947599719e-05;
    const double span = double{high} - double{low};
    for (int i = 0; i < size_; ++i) {
        data_[i] = toFloat(runtimeRandom() * kStep * span + double{low});
    }
}

double RealVector::SumOfSquares() const {
    return vectorKernels().sumOfSquares(data_, size_);
}

double RealVector::Dot(const RealVector& other) const {
    return vectorKernels().dot(data_, other.data_, size_);
}

double RealVector::Sum() const {
    return vectorKernels().sum(data_, size_);
}

double RealVector::Min() const {
    float smallest = data_[0];
    for (int i = 1; i < size_; ++i) {
        smallest = data_[i] < smallest ? data_[i] : smallest;
    }
    return smallest;
}

double RealVector::Max() const {
    float largest = data_[0];
    for (int i = 1; i < size_; ++i) {
        largest = data_[i] > largest ? data_[i] : largest;
    }
    return largest;
}

double RealVector::MaxAbs() const {
    float largest = std::fabs(data_[0]);
    for (int i = 1; i < size_; ++i) {
        const float magnitude = std::fabs(data_[i]);
        largest = magnitude > largest ? magnitude : largest;
    }
    return largest;
}

void RealVector::AddScalar(float a) {
    vectorKernels().addScalar(data_, a, size_);
}

void RealVector::SubtractScalar(float a) {
    vectorKernels().addScalar(data_, -a, size_);
}

void RealVector::MultiplyScalar(float a) {
    vectorKernels().multiplyScalar(data_, a, size_);
}

void RealVector::DivideScalar(float a) {
    vectorKernels().divideScalar(data_, a, size_);
}

void RealVector::Add(const RealVector& x) {
    vectorKernels().add(data_, x.data_, size_);
}

void RealVector::AddScaled(float a, const RealVector& x) {
    vectorKernels().addScaled(data_, a, x.data_, size_);
}

double RealVector::AddScaledSumOfSquares(float a, const RealVector& x) {
    if (x.data_ == data_) {
        AddScaled(a, x);
        return SumOfSquares();
    }
    return vectorKernels().addScaledSumSquares(data_, a, x.data_, size_);
}

void RealVector::AddScaled2(float a, const RealVector& x, float b, const RealVector& y) {
    vectorKernels().addScaled2(data_, a, x.data_, b, y.data_, size_);
}

void RealVector::AddScaled3(float a, const RealVector& x, float b, const RealVector& y, float c,
                            const RealVector& z) {
    vectorKernels().addScaled3(data_, a, x.data_, b, y.data_, c, z.data_, size_);
}

void RealVector::ScaleAdd(float a, const RealVector& x) {
    vectorKernels().scaleAdd(data_, a, x.data_, size_);
}

void RealVector::ScaleAddScaled(float a, float b, const RealVector& x) {
    vectorKernels().scaleAddScaled(data_, a, b, x.data_, size_);
}

void RealVector::ScaleAddScaled2(float a, float b, const RealVector& x, float c,
                                 const RealVector& y) {
    vectorKernels().scaleAddScaled2(data_, a, b, x.data_, c, y.data_, size_);
}

void RealVector::Print() const {
    printText("v(%d): [", size_);
    for (int i = 0; i < size_; ++i) {
        printText("%7.4f ", double{data_[i]});
    }
    printText("]\n");
}

void RealVector::PrintTo(std::FILE* file) const {
    printTextTo(file, "v(%d): [", size_);
    for (int i = 0; i < size_; ++i) {
        // quirk: vector-file-decimals
        printTextTo(file, "%7.3f ", double{data_[i]});
    }
    printTextTo(file, "]\n");
}

}  // namespace orv
