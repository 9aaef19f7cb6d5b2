#pragma once

#include "images/float_image.h"
#include "images/kernels/pixel_kernels.h"

namespace orv {

/// The grid of one channel of a picture: `channels` samples a pixel, `rowStride` samples from
/// row to row.
template <class Sample>
SampleGrid<Sample> channelGrid(Sample* samples, int channels, std::size_t rowStride,
                               int channel, int width, int height) {
    return {samples + channel, static_cast<std::size_t>(channels), rowStride, width, height};
}

/// plane(x, y) = float(sample(x, y)) * factor, for the part that grid and plane both cover.
///
/// Units:   the factor brings samples to the range that a method works in; 255 / 65535 brings
///          16-bit samples to grey levels.
/// Cost:    one pass in cache-sized tiles.
void readInterleaved(const SampleGrid<const unsigned char>& grid, float factor,
                     FloatImage& plane);
void readInterleaved(const SampleGrid<const unsigned short>& grid, float factor,
                     FloatImage& plane);
void readInterleaved(const SampleGrid<const float>& grid, float factor, FloatImage& plane);

/// sample(x, y) = plane(x, y) * factor, clamped to 0..maxValue, for the part that grid and
/// plane both cover. Integer samples are rounded to the nearest, halves upward; NaN gives 0.
///
/// Domain:  maxValue at least 0 and within the sample's range; integer samples round to at
///          most a whole maxValue.
void writeInterleaved(const FloatImage& plane, float factor, float maxValue,
                      const SampleGrid<unsigned char>& grid);
void writeInterleaved(const FloatImage& plane, float factor, float maxValue,
                      const SampleGrid<unsigned short>& grid);
void writeInterleaved(const FloatImage& plane, float factor, float maxValue,
                      const SampleGrid<float>& grid);

}  // namespace orv
