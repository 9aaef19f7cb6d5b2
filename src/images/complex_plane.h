#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "base/byte_count.h"

namespace orv {

/// One complex sample, real part first.
struct ComplexSample {
    double real = 0.0;
    double imaginary = 0.0;
};

/// One plane of complex samples, stored x-major like every plane: element (x, y) is row(x)[y].
///
/// Shapes:  width x height samples, all zero at first; sizes below zero count as zero.
class ComplexPlane {
  public:
    /// A zero plane.
    ComplexPlane(int width, int height)
        : width_(width > 0 ? width : 0),
          height_(height > 0 ? height : 0),
          samples_(boundedProduct(static_cast<std::size_t>(width_),
                                  static_cast<std::size_t>(height_))) {}

    /// Samples in x.
    int width() const { return width_; }
    /// Samples in y.
    int height() const { return height_; }
    /// Column x: samples (x, 0) to (x, height - 1), y running fastest.
    ComplexSample* row(int x) { return samples_.data() + offset(x); }
    /// Column x, read only.
    const ComplexSample* row(int x) const { return samples_.data() + offset(x); }

  private:
    std::size_t offset(int x) const {
        return static_cast<std::size_t>(x) * static_cast<std::size_t>(height_);
    }

    int width_;
    int height_;
    std::vector<ComplexSample> samples_;
};

/// The three complex planes of a colour image: red, green, blue.
using ComplexPlane3 = std::array<ComplexPlane, 3>;

/// Which number a complex sample gives when it is written to an image.
inline constexpr int kRealPart = 0;
inline constexpr int kImaginaryPart = 1;
inline constexpr int kModulus = 2;

}  // namespace orv
