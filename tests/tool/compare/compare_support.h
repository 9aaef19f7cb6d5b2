#pragma once

#include <cstring>
#include <vector>

#include "files/image_file.h"

namespace orv::cli::test {

/// A picture of samples, row after row; the depth follows from their type.
template <typename Sample>
Picture pictureOf(int width, int height, int channels, const std::vector<Sample>& values) {
    Picture picture;
    picture.colours = channels >= 3 ? 3 : 1;
    picture.alpha = channels == 2 || channels == 4;
    InterleavedSamples& samples = picture.samples;
    samples.width = width;
    samples.height = height;
    samples.channels = channels;
    samples.depth = sizeof(Sample) == 1   ? SampleDepth::Bits8
                    : sizeof(Sample) == 2 ? SampleDepth::Bits16
                                          : SampleDepth::Float;
    samples.bytes.resize(values.size() * sizeof(Sample));
    std::memcpy(samples.bytes.data(), values.data(), samples.bytes.size());
    return picture;
}

using Bytes = std::vector<unsigned char>;
using Shorts = std::vector<unsigned short>;

}  // namespace orv::cli::test
