#include "methods/interleaved_planes.h"

#include <cstring>
#include <utility>

#include "images/interleaved_samples.h"

namespace orv {

namespace {

/// Grey levels of white on planes.
constexpr float kWhite = 255.0f;

/// White of a sample type.
template <typename Sample>
constexpr float kWhiteSample = sizeof(Sample) == 1 ? 255.0f : 65535.0f;
template <>
constexpr float kWhiteSample<float> = 1.0f;

/// The bytes as samples: memory of operator new suits every sample type.
template <typename Sample, typename Bytes>
SampleGrid<Sample> gridOf(Bytes& bytes, const InterleavedSamples& samples, int channel) {
    const std::size_t stride =
        static_cast<std::size_t>(samples.width) * static_cast<std::size_t>(samples.channels);
    return channelGrid(reinterpret_cast<Sample*>(bytes.data()), samples.channels, stride,
                       channel, samples.width, samples.height);
}

template <typename Sample>
void readPlane(const InterleavedSamples& samples, int channel, FloatImage& plane) {
    readInterleaved(gridOf<const Sample>(samples.bytes, samples, channel),
                    kWhite / kWhiteSample<Sample>, plane);
}

template <typename Sample>
void writePlane(const FloatImage& plane, int channel, InterleavedSamples& samples) {
    writeInterleaved(plane, kWhiteSample<Sample> / kWhite, kWhiteSample<Sample>,
                     gridOf<Sample>(samples.bytes, samples, channel));
}

}  // namespace

std::size_t bytesOf(SampleDepth depth) {
    switch (depth) {
        case SampleDepth::Bits8:
            return 1;
        case SampleDepth::Bits16:
            return 2;
        case SampleDepth::Float:
            break;
    }
    return 4;
}

std::unique_ptr<FloatImage> planeOf(const InterleavedSamples& samples, int channel) {
    auto plane = FloatImage::uninitialised(samples.width, samples.height);
    switch (samples.depth) {
        case SampleDepth::Bits8:
            readPlane<unsigned char>(samples, channel, *plane);
            break;
        case SampleDepth::Bits16:
            readPlane<unsigned short>(samples, channel, *plane);
            break;
        case SampleDepth::Float:
            readPlane<float>(samples, channel, *plane);
            break;
    }
    return plane;
}

Planes planesOf(const InterleavedSamples& samples, int colours) {
    Planes planes;
    for (int channel = 0; channel < colours; ++channel) {
        planes.push_back(planeOf(samples, channel));
    }
    return planes;
}

void storePlane(const FloatImage& plane, int channel, InterleavedSamples& samples) {
    switch (samples.depth) {
        case SampleDepth::Bits8:
            writePlane<unsigned char>(plane, channel, samples);
            break;
        case SampleDepth::Bits16:
            writePlane<unsigned short>(plane, channel, samples);
            break;
        case SampleDepth::Float:
            writePlane<float>(plane, channel, samples);
            break;
    }
}

void storePlanes(const Planes& planes, InterleavedSamples& samples) {
    for (std::size_t i = 0; i < planes.size(); ++i) {
        storePlane(*planes[i], static_cast<int>(i), samples);
    }
}

InterleavedSamples coloured(const InterleavedSamples& samples) {
    InterleavedSamples colour = samples;
    colour.channels = samples.channels + 2;
    const std::size_t sampleBytes = bytesOf(samples.depth);
    const std::size_t from = static_cast<std::size_t>(samples.channels) * sampleBytes;
    const std::size_t to = static_cast<std::size_t>(colour.channels) * sampleBytes;
    const std::size_t pixels = samples.bytes.size() / from;
    colour.bytes.resize(pixels * to);
    for (std::size_t i = 0; i < pixels; ++i) {
        const unsigned char* const grey = samples.bytes.data() + i * from;
        unsigned char* const pixel = colour.bytes.data() + i * to;
        std::memcpy(pixel, grey, sampleBytes);
        std::memcpy(pixel + sampleBytes, grey, sampleBytes);
        std::memcpy(pixel + 2 * sampleBytes, grey, from);
    }
    return colour;
}

InterleavedSamples narrowed(InterleavedSamples samples) {
    if (samples.depth != SampleDepth::Bits16) {
        return samples;
    }
    const std::size_t count = samples.bytes.size() / 2;
    for (std::size_t i = 0; i < count; ++i) {
        unsigned short sample = 0;
        std::memcpy(&sample, samples.bytes.data() + 2 * i, sizeof sample);
        samples.bytes[i] = static_cast<unsigned char>((sample + 128u) / 257u);
    }
    samples.bytes.resize(count);
    samples.depth = SampleDepth::Bits8;
    return samples;
}

}  // namespace orv
