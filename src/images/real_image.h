#pragma once

#include <cstddef>
#include <memory>

#include "base/aligned_block.h"

namespace orv {

class DiscreteImage;

/// One plane of double-precision samples, stored x-major like FloatImage.
///
/// Shapes:  width x height; sizes below zero count as zero.
/// Owns:    the block of width x height doubles and the table of pointers.
/// Fails:   memory that can't be had throws std::bad_alloc, which the exports turn into null.
class RealImage {
  public:
    /// Key of the constructor that leaves the samples as the memory holds them.
    class Uninitialised {
        explicit Uninitialised() = default;
        friend class RealImage;
    };

    /// All samples zero.
    RealImage(int width, int height);
    /// All samples `value`.
    RealImage(int width, int height, double value);
    /// Each sample is image.value(x, y): a colour image gives its luminance.
    explicit RealImage(const DiscreteImage& image);
    /// Channel 1 is red, 2 green, 3 blue, anything else grey; the number is kept in channel().
    RealImage(const DiscreteImage& image, int channel);
    /// Sizes, flag and samples; channel() of the copy is 0.
    RealImage(const RealImage& other);
    RealImage& operator=(const RealImage&) = delete;
    ~RealImage() = default;
    /// What uninitialised() calls.
    RealImage(Uninitialised key, int width, int height);

    /// A plane whose samples hold anything, for code that writes all of them.
    static std::unique_ptr<RealImage> uninitialised(int width, int height);

    /// A new plane by the copy constructor.
    std::unique_ptr<RealImage> clone() const;

    /// Samples in x.
    int width() const { return width_; }
    /// Samples in y.
    int height() const { return height_; }
    /// The channel that the plane was read from; 0 unless it was built from one.
    int channel() const { return channel_; }
    /// Sets the number of channel(), for code that reads a channel into the plane.
    void setChannel(int channel) { channel_ = channel; }
    /// A byte that copies along and that nothing reads.
    unsigned char flag() const { return flag_; }
    /// Sets the byte of flag().
    void setFlag(unsigned char flag) { flag_ = flag; }
    /// 4 atan(1).
    double pi() const { return pi_; }

    /// Column x: samples (x, 0) to (x, height - 1).
    double* row(int x) { return rows_[x]; }
    const double* row(int x) const { return rows_[x]; }
    /// Sample (0, 0); all width x height samples follow.
    double* data() { return data_; }
    const double* data() const { return data_; }
    /// width x height.
    std::size_t sampleCount() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    }

    /// Sets every sample.
    void fill(double value);
    /// Copies this plane's count of samples from `other`, which must hold at least as many;
    /// widths and heights are not compared.
    void assign(const RealImage& other);
    /// Copies the samples at (xs[i], ys[i]), i from 0 to count - 1, from `source`.
    void copyRegion(const RealImage& source, int count, const int* xs, const int* ys);
    /// sample + value.
    void add(double value);
    /// sample x value.
    void scale(double value);
    /// sample / value.
    void divide(double value);
    /// sample - the sample of `other`, which must hold at least as many.
    void subtract(const RealImage& other);
    /// Natural logarithm of (sample + c); a sample of -c gives minus infinity.
    void logOf(double c);
    /// e to the sample.
    void expOf();
    /// Square root of the sample.
    void sqrtOf();

  private:
    unsigned char flag_ = 0;
    int width_;
    int height_;
    int channel_ = 0;
    AlignedBlock block_;
    double* data_ = nullptr;
    std::unique_ptr<double*[]> rows_;
    double pi_;
};

}  // namespace orv
