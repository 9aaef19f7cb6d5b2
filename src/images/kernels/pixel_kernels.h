#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// A rectangle of one channel of row-major interleaved samples.
///
/// Sample (x, y) is first[y * rowStride + x * pixelStride]; the strides are counted in samples.
template <class Sample>
struct SampleGrid {
    Sample* first;
    std::size_t pixelStride;
    std::size_t rowStride;
    int width;
    int height;
};

/// Conversions between bytes r, g, b and planes of T (float or double).
///
/// Pixels are interleaved with three bytes a pixel and `rowBytes` from row to row. A plane is
/// x-major: sample (x, y) is plane[x * columnStride + y].
///
/// To bytes, a sample is truncated toward zero and keeps its low byte; NaN and samples whose
/// truncation does not fit an int give 0.
///
/// Cost:    one pass in tiles of 64 x 64, so that both orders of memory stay in cache.
template <class T>
struct RgbKernels {
    /// planes[c](x, y) = byte c of pixel (x, y).
    void (*readRgb)(const unsigned char* pixels, std::size_t rowBytes, int width, int height,
                    T* const* planes, std::size_t columnStride);
    /// plane(x, y) = byte `channel` (0 to 2) of pixel (x, y).
    void (*readChannel)(const unsigned char* pixels, std::size_t rowBytes, int width,
                        int height, int channel, T* plane, std::size_t columnStride);
    /// plane(x, y) = (587 byte 1 + 299 byte 0 + 114 byte 2) / 1000 in integers.
    void (*readLuminance)(const unsigned char* pixels, std::size_t rowBytes, int width,
                          int height, T* plane, std::size_t columnStride);
    /// Byte c of pixel (x, y) = the low byte of planes[c](x, y); columnStrides[c] is plane c's.
    void (*writeRgb)(const T* const* planes, const std::size_t* columnStrides,
                     unsigned char* pixels, std::size_t rowBytes, int width, int height);
    /// Byte `channel` (0 to 2) of pixel (x, y) = the low byte of plane(x, y).
    void (*writeChannel)(const T* plane, std::size_t columnStride, unsigned char* pixels,
                         std::size_t rowBytes, int width, int height, int channel);
};

/// Conversions between one channel of interleaved samples and one float plane.
///
/// read:    plane(x, y) = float(sample(x, y)) * factor.
/// write:   sample(x, y) = plane(x, y) * factor, clamped to 0..maxValue and, for integer
///          samples, rounded to the nearest integer (halves upward); NaN gives 0.
template <class Sample>
struct ChannelKernels {
    void (*read)(const SampleGrid<const Sample>& grid, float factor, float* plane,
                 std::size_t columnStride);
    void (*write)(const float* plane, std::size_t columnStride, float factor, float maxValue,
                  const SampleGrid<Sample>& grid);
};

/// Pixels to planes and back. Every target gives the same bits.
struct PixelKernels {
    RgbKernels<float> rgbFloat;
    RgbKernels<double> rgbDouble;
    ChannelKernels<unsigned char> bytes;
    ChannelKernels<unsigned short> words;
    ChannelKernels<float> floats;
};

/// The kernels of the fastest target that is allowed.
const PixelKernels& pixelKernels();

/// The kernels of the fastest target up to `highest`.
const PixelKernels& pixelKernels(KernelTarget highest);

}  // namespace orv
