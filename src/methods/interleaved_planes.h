#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "methods/method.h"

namespace orv {

/// How a picture stores a sample.
enum class SampleDepth { Bits8, Bits16, Float };

/// Bytes of one sample.
std::size_t bytesOf(SampleDepth depth);

/// Interleaved samples of a picture, row after row without a gap.
///
/// Units:   white is 255, 65535 or 1.0.
struct InterleavedSamples {
    int width = 0;
    int height = 0;
    int channels = 0;  ///< of a pixel, those that are no colour included
    SampleDepth depth = SampleDepth::Bits8;
    std::vector<unsigned char> bytes;  ///< samples in the byte order of the machine
};

/// The plane of one channel, scaled so that white is 255.
///
/// Shapes:  channel below samples.channels.
std::unique_ptr<FloatImage> planeOf(const InterleavedSamples& samples, int channel);

/// Planes of the first `colours` channels, scaled so that white is 255.
///
/// Shapes:  colours at most samples.channels.
/// Cost:    one pass, in tiles that keep both sides in cache.
Planes planesOf(const InterleavedSamples& samples, int colours);

/// Writes a plane into one channel of a picture of its size; the others stay.
///
/// Units:   samples within 0 to 255, rounded to the nearest value of the depth.
void storePlane(const FloatImage& plane, int channel, InterleavedSamples& samples);

/// Writes planes into the first channels of a picture of their size; other channels stay.
///
/// Units:   samples within 0 to 255, rounded to the nearest value of the depth.
void storePlanes(const Planes& planes, InterleavedSamples& samples);

/// A grey picture as one of three equal colours; its further channels, such as alpha, stay.
///
/// Shapes:  at least one channel in, two more out.
InterleavedSamples coloured(const InterleavedSamples& samples);

/// The same picture in 8 bits a sample, rounded to nearest.
///
/// Shapes:  16 bits in, or 8 bits, which come back as they are.
InterleavedSamples narrowed(InterleavedSamples samples);

}  // namespace orv
