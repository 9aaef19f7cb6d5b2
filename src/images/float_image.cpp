#include "images/float_image.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/byte_count.h"
#include "base/elementary.h"
#include "images/plane_reader.h"

namespace orv {

namespace {

constexpr std::size_t kSlackBytes = 192;
constexpr std::size_t kAlignment = 16;
// Leaves at least one sample in front of the first one after rounding down.
constexpr std::size_t kLead = 20;

std::size_t blockBytes(int width, int height) {
    const std::size_t samples =
        boundedProduct(static_cast<std::size_t>(width) + 1, static_cast<std::size_t>(height));
    return boundedProduct(samples, sizeof(float)) + kSlackBytes;
}

float* alignedBase(void* block) {
    char* const start = static_cast<char*>(block);
    const std::size_t address = reinterpret_cast<std::uintptr_t>(start);
    const std::size_t base = (address + kLead) / kAlignment * kAlignment;
    return reinterpret_cast<float*>(start + (base - address));
}

std::unique_ptr<float* []> columnTable(float* first, int width, int height) {
    // A table of no entries is still a valid one.
    auto table = std::make_unique<float*[]>(static_cast<std::size_t>(std::max(width, 1)));
    for (int x = 0; x < width; ++x) {
        table[static_cast<std::size_t>(x)] =
            first + static_cast<std::size_t>(x) * static_cast<std::size_t>(height);
    }
    return table;
}

}  // namespace

FloatImage::FloatImage(Uninitialised /*key*/, int width, int height)
    : width_(std::max(width, 0)),
      height_(std::max(height, 0)),
      block_(blockBytes(width_, height_), kAlignment),
      base_(alignedBase(block_.data())),
      rows_(columnTable(base_, width_, height_)),
      baseNext_(base_ + 1),
      rowsNext_(columnTable(baseNext_, width_, height_)),
      basePrev_(base_ - 1),
      rowsPrev_(columnTable(basePrev_, width_, height_)),
      pi_(4.0 * elementaryAtan(1.0)) {
    char* const start = static_cast<char*>(block_.data());
    char* const first = reinterpret_cast<char*>(base_);
    char* const last = reinterpret_cast<char*>(base_ + sampleCount());
    std::memset(start, 0, static_cast<std::size_t>(first - start));
    std::memset(last, 0, static_cast<std::size_t>(start + block_.bytes() - last));
}

FloatImage::FloatImage(int width, int height) : FloatImage(width, height, 0.0f) {}

FloatImage::FloatImage(int width, int height, float value)
    : FloatImage(Uninitialised(), width, height) {
    fill(value);
}

FloatImage::FloatImage(const DiscreteImage& image)
    : FloatImage(Uninitialised(), imageWidth(image), imageHeight(image)) {
    readValue(image, *this);
}

FloatImage::FloatImage(const DiscreteImage& image, int channel)
    : FloatImage(Uninitialised(), imageWidth(image), imageHeight(image)) {
    channel_ = channel;
    readChannel(image, channel, *this);
}

FloatImage::FloatImage(const FloatImage& other)
    : FloatImage(Uninitialised(), other.width_, other.height_) {
    flag_ = other.flag_;
    copyFrom(other);
}

std::unique_ptr<FloatImage> FloatImage::uninitialised(int width, int height) {
    return std::make_unique<FloatImage>(Uninitialised(), width, height);
}

std::unique_ptr<FloatImage> FloatImage::clone() const {
    return std::make_unique<FloatImage>(*this);
}

void FloatImage::assign(const FloatImage& /*other*/) {
    // quirk: float-assign
}

void FloatImage::copyFrom(const FloatImage& other) {
    if (other.width_ == width_ && other.height_ == height_ && &other != this) {
        std::memcpy(base_, other.base_, sampleCount() * sizeof(float));
    }
}

void FloatImage::fill(float value) {
    std::fill_n(base_, sampleCount(), value);
}

void FloatImage::clamp(float lowest, float highest) {
    const std::size_t count = sampleCount();
    for (std::size_t i = 0; i < count; ++i) {
        const float raised = base_[i] < lowest ? lowest : base_[i];
        base_[i] = raised >= highest ? highest : raised;
    }
}

}  // namespace orv
