#include "images/real_image.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/byte_count.h"
#include "base/elementary.h"
#include "base/kernels/elementary_kernels.h"
#include "images/plane_reader.h"

namespace orv {

namespace {

std::size_t blockBytes(int width, int height) {
    const std::size_t samples =
        boundedProduct(static_cast<std::size_t>(width), static_cast<std::size_t>(height));
    return boundedProduct(samples, sizeof(double));
}

template <class Change>
void changeEach(double* samples, std::size_t count, Change change) {
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = change(samples[i]);
    }
}

}  // namespace

RealImage::RealImage(Uninitialised /*key*/, int width, int height)
    : width_(std::max(width, 0)),
      height_(std::max(height, 0)),
      block_(blockBytes(width_, height_), alignof(double)),
      data_(static_cast<double*>(block_.data())),
      rows_(std::make_unique<double*[]>(static_cast<std::size_t>(std::max(width_, 1)))),
      pi_(4.0 * elementaryAtan(1.0)) {
    for (int x = 0; x < width_; ++x) {
        rows_[static_cast<std::size_t>(x)] =
            data_ + static_cast<std::size_t>(x) * static_cast<std::size_t>(height_);
    }
}

RealImage::RealImage(int width, int height) : RealImage(width, height, 0.0) {}

RealImage::RealImage(int width, int height, double value)
    : RealImage(Uninitialised(), width, height) {
    fill(value);
}

RealImage::RealImage(const DiscreteImage& image)
    : RealImage(Uninitialised(), imageWidth(image), imageHeight(image)) {
    readValue(image, *this);
}

RealImage::RealImage(const DiscreteImage& image, int channel)
    : RealImage(Uninitialised(), imageWidth(image), imageHeight(image)) {
    channel_ = channel;
    readChannel(image, channel, *this);
}

RealImage::RealImage(const RealImage& other)
    : RealImage(Uninitialised(), other.width_, other.height_) {
    flag_ = other.flag_;
    assign(other);
}

std::unique_ptr<RealImage> RealImage::uninitialised(int width, int height) {
    return std::make_unique<RealImage>(Uninitialised(), width, height);
}

std::unique_ptr<RealImage> RealImage::clone() const {
    return std::make_unique<RealImage>(*this);
}

void RealImage::fill(double value) {
    std::fill_n(data_, sampleCount(), value);
}

void RealImage::assign(const RealImage& other) {
    if (&other != this && sampleCount() > 0) {
        std::memcpy(data_, other.data_, sampleCount() * sizeof(double));
    }
}

void RealImage::copyRegion(const RealImage& source, int count, const int* xs, const int* ys) {
    for (int i = 0; i < count; ++i) {
        row(xs[i])[ys[i]] = source.row(xs[i])[ys[i]];
    }
}

void RealImage::add(double value) {
    changeEach(data_, sampleCount(), [value](double sample) { return sample + value; });
}

void RealImage::scale(double value) {
    changeEach(data_, sampleCount(), [value](double sample) { return sample * value; });
}

void RealImage::divide(double value) {
    changeEach(data_, sampleCount(), [value](double sample) { return sample / value; });
}

void RealImage::subtract(const RealImage& other) {
    const std::size_t count = sampleCount();
    for (std::size_t i = 0; i < count; ++i) {
        data_[i] -= other.data_[i];
    }
}

void RealImage::logOf(double c) {
    const ElementaryKernels& kernels = elementaryKernels();
    constexpr std::size_t kChunk = 512;  // 4 KiB, still in cache for the second pass
    const std::size_t count = sampleCount();
    for (std::size_t i = 0; i < count; i += kChunk) {
        const std::size_t size = std::min(kChunk, count - i);
        changeEach(data_ + i, size, [c](double sample) { return sample + c; });
        kernels.log(data_ + i, data_ + i, size);
    }
}

void RealImage::expOf() {
    elementaryKernels().exp(data_, data_, sampleCount());
}

void RealImage::sqrtOf() {
    changeEach(data_, sampleCount(), [](double sample) { return std::sqrt(sample); });
}

}  // namespace orv
