#include "operators/colour/column_slabs.h"

#include <algorithm>

#include "images/kernels/pixel_kernels.h"
#include "operators/colour/plane_samples.h"

namespace orv {

namespace {

/// What the buffer may take: it should stay in the second cache, next to what passes through.
constexpr int kBufferBytes = 768 * 1024;
constexpr int kLeastColumns = 8;
constexpr int kMostColumns = 64;

/// A multiple of 8 columns keeps every sample in its lane.
int slabColumnsFor(int height) {
    const int fitting = kBufferBytes / 24 / std::max(height, 1);
    return std::clamp(fitting / 8 * 8, kLeastColumns, kMostColumns);
}

std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

}  // namespace

ColumnSlabs::ColumnSlabs(int width, int height)
    : width_(width),
      height_(height),
      slabColumns_(slabColumnsFor(height)),
      count_(sizeOf((width + slabColumns_ - 1) / slabColumns_)),
      buffer_(RealImage3::withoutPlanes(slabColumns_, height)) {
    for (int c = 0; c < 3; ++c) {
        buffer_->setPlane(c, RealImage::uninitialised(slabColumns_, height));
    }
}

int ColumnSlabs::firstColumn(std::size_t i) const {
    return static_cast<int>(i) * slabColumns_;
}

int ColumnSlabs::columns(std::size_t i) const {
    return std::min(slabColumns_, width_ - firstColumn(i));
}

std::size_t ColumnSlabs::sampleCount(std::size_t i) const {
    return sizeOf(columns(i)) * sizeOf(height_);
}

void ColumnSlabs::read(const unsigned char* pixels, std::size_t i) {
    pixelKernels().rgbDouble.readRgb(pixels + 3 * sizeOf(firstColumn(i)), 3 * sizeOf(width_),
                                     columns(i), height_, samples().data(), sizeOf(height_));
}

void ColumnSlabs::write(unsigned char* pixels, std::size_t i) const {
    const RealImage3& buffer = *buffer_;
    const std::array<const double*, 3> from = samplesOf(buffer);
    const std::array<std::size_t, 3> strides = {sizeOf(height_), sizeOf(height_),
                                                sizeOf(height_)};
    pixelKernels().rgbDouble.writeRgb(from.data(), strides.data(),
                                      pixels + 3 * sizeOf(firstColumn(i)), 3 * sizeOf(width_),
                                      columns(i), height_);
}

std::array<double*, 3> ColumnSlabs::samples() {
    return samplesOf(*buffer_);
}

}  // namespace orv
