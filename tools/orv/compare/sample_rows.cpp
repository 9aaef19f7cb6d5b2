#include "compare/sample_rows.h"

#include <cstddef>

namespace orv::cli {

namespace {

double level(unsigned char sample) {
    return sample;
}

double level(unsigned short sample) {
    // 65535 is 255 times 257, and the division is exact for the multiples of 257.
    return sample / 257.0;
}

double level(float sample) {
    return 255.0 * static_cast<double>(sample);
}

template <typename Sample>
void readChannel(const InterleavedSamples& samples, int channel, int y,
                 std::vector<double>& row) {
    const auto step = static_cast<std::size_t>(samples.channels);
    const std::size_t start = static_cast<std::size_t>(y) * row.size() * step;
    // Memory of operator new suits every sample type.
    const Sample* in = reinterpret_cast<const Sample*>(samples.bytes.data()) + start + channel;
    for (double& out : row) {
        out = level(*in);
        in += step;
    }
}

void readAny(const InterleavedSamples& samples, int channel, int y, std::vector<double>& row) {
    switch (samples.depth) {
        case SampleDepth::Bits8:
            readChannel<unsigned char>(samples, channel, y, row);
            break;
        case SampleDepth::Bits16:
            readChannel<unsigned short>(samples, channel, y, row);
            break;
        case SampleDepth::Float:
            readChannel<float>(samples, channel, y, row);
            break;
    }
}

}  // namespace

SampleRow::SampleRow(const Picture& picture) : picture_(picture), grey_(picture.colours == 1) {
    const auto width = static_cast<std::size_t>(picture.samples.width);
    for (std::size_t channel = 0; channel < (grey_ ? 1u : 3u); ++channel) {
        colours_[channel].resize(width);
    }
    brightness_.resize(grey_ ? 0 : width);
    alpha_.resize(picture.alpha ? width : 0);
}

void SampleRow::read(int y) {
    const InterleavedSamples& samples = picture_.samples;
    for (int channel = 0; channel < picture_.colours; ++channel) {
        readAny(samples, channel, y, colours_[static_cast<std::size_t>(channel)]);
    }
    if (picture_.alpha) {
        readAny(samples, picture_.colours, y, alpha_);
    }
    for (std::size_t x = 0; x < brightness_.size(); ++x) {
        brightness_[x] =
            0.299 * colours_[0][x] + 0.587 * colours_[1][x] + 0.114 * colours_[2][x];
    }
}

}  // namespace orv::cli
