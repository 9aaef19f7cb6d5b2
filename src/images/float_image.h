#pragma once

#include <cstddef>
#include <memory>

#include "base/aligned_block.h"

namespace orv {

class DiscreteImage;

/// One plane of single-precision samples, built for stencils along y.
///
/// Samples lie x-major: row(x) is column x with y running fastest, columns follow each other
/// without a gap. rowNext(x)[y] is the sample (x, y + 1) and rowPrev(x)[y] the sample
/// (x, y - 1), so that a stencil is three pointers with one index. At the ends of a column they
/// read the neighbouring column, at the ends of the plane slack cells, which hold 0.
///
/// Shapes:  width x height; sizes below zero count as zero. data() is 16-byte aligned.
/// Owns:    the block of (width + 1) x height x 4 + 192 bytes and three tables of pointers.
/// Fails:   memory that can't be had throws std::bad_alloc, which the exports turn into null.
class FloatImage {
  public:
    /// Key of the constructor that leaves the samples as the memory holds them.
    class Uninitialised {
        explicit Uninitialised() = default;
        friend class FloatImage;
    };

    /// All samples zero.
    FloatImage(int width, int height);
    /// All samples `value`.
    FloatImage(int width, int height, float value);
    /// Each sample is image.value(x, y): a colour image gives its luminance.
    explicit FloatImage(const DiscreteImage& image);
    /// Channel 1 is red, 2 green, 3 blue, anything else grey; the number is kept in channel().
    FloatImage(const DiscreteImage& image, int channel);
    /// Sizes, flag and samples; channel() of the copy is 0.
    FloatImage(const FloatImage& other);
    FloatImage& operator=(const FloatImage&) = delete;
    ~FloatImage() = default;
    /// What uninitialised() calls.
    FloatImage(Uninitialised key, int width, int height);

    /// A plane whose samples hold anything, for code that writes all of them: touching fresh
    /// memory twice is dear. The slack cells are 0 as in every plane.
    static std::unique_ptr<FloatImage> uninitialised(int width, int height);

    /// A new plane by the copy constructor.
    std::unique_ptr<FloatImage> clone() const;

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
    float* row(int x) { return rows_[x]; }
    const float* row(int x) const { return rows_[x]; }
    /// Column x, one sample on: rowNext(x)[y] is (x, y + 1).
    float* rowNext(int x) { return rowsNext_[x]; }
    const float* rowNext(int x) const { return rowsNext_[x]; }
    /// Column x, one sample back: rowPrev(x)[y] is (x, y - 1).
    float* rowPrev(int x) { return rowsPrev_[x]; }
    const float* rowPrev(int x) const { return rowsPrev_[x]; }
    /// Sample (0, 0); all width x height samples follow.
    float* data() { return base_; }
    const float* data() const { return base_; }
    /// width x height.
    std::size_t sampleCount() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    }

    /// Does nothing: the iteration loops of the float schemes are built on that.
    ///
    /// Quirk:   float-assign
    void assign(const FloatImage& other);
    /// Copies the samples of a plane of equal size; another size leaves this plane as it is.
    void copyFrom(const FloatImage& other);
    /// Sets every sample.
    void fill(float value);
    /// Raises each sample to `lowest`; what then is at or above `highest` becomes `highest`.
    /// NaN stays NaN.
    void clamp(float lowest, float highest);

    /// Smooths in place by three weights, first along x, then along y.
    ///
    ///     out(i) = (c line(i + 1) + a line(i - 1) + b line(i)) / (|a| + |b| + |c|)
    ///
    /// Shapes:  i from 1 to n - 2 on each line of n samples; the ends keep their values.
    /// Cost:    one pass over the plane, a few columns of work memory.
    void smooth3(int a, int b, int c);
    /// Smooths in place by five weights, for line(i - 2) to line(i + 2) in this order.
    ///
    /// Shapes:  i from 2 to n - 3 on each line of n samples; the ends keep their values.
    void smooth5(int a, int b, int c, int d, int e);
    /// Smooths in place by seven weights, for line(i - 3) to line(i + 3) in this order.
    ///
    /// Shapes:  i from 3 to n - 4 on each line of n samples; a line below 7 stays as it is.
    void smooth7(int a, int b, int c, int d, int e, int f, int g);

  private:
    unsigned char flag_ = 0;
    int width_;
    int height_;
    int channel_ = 0;
    AlignedBlock block_;
    float* base_ = nullptr;
    std::unique_ptr<float*[]> rows_;
    float* baseNext_ = nullptr;
    std::unique_ptr<float*[]> rowsNext_;
    float* basePrev_ = nullptr;
    std::unique_ptr<float*[]> rowsPrev_;
    double pi_;
};

}  // namespace orv
