#include "drawing/canvas.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace orv::cli {

Canvas::Canvas(int width, int height, Colour ground)
    : width_(width),
      height_(height),
      samples_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3) {
    fill(0, 0, width, height, ground);
}

unsigned char* Canvas::pixel(int x, int y) {
    return samples_.data() + (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                              static_cast<std::size_t>(x)) *
                                 3;
}

void Canvas::fill(int x, int y, int width, int height, Colour colour) {
    const int right = std::min(x + width, width_);
    const int bottom = std::min(y + height, height_);
    for (int row = std::max(y, 0); row < bottom; ++row) {
        for (int column = std::max(x, 0); column < right; ++column) {
            unsigned char* const out = pixel(column, row);
            out[0] = colour.red;
            out[1] = colour.green;
            out[2] = colour.blue;
        }
    }
}

void Canvas::paste(const Picture& picture, int x, int y) {
    const InterleavedSamples& samples = picture.samples;
    const auto channels = static_cast<std::size_t>(samples.channels);
    const std::size_t step = picture.colours == 3 ? 1 : 0;
    const int right = std::min(x + samples.width, width_);
    const int bottom = std::min(y + samples.height, height_);
    for (int row = std::max(y, 0); row < bottom; ++row) {
        for (int column = std::max(x, 0); column < right; ++column) {
            const std::size_t place =
                static_cast<std::size_t>(row - y) * static_cast<std::size_t>(samples.width) +
                static_cast<std::size_t>(column - x);
            const unsigned char* const in = samples.bytes.data() + place * channels;
            unsigned char* const out = pixel(column, row);
            out[0] = in[0];
            out[1] = in[step];
            out[2] = in[2 * step];
        }
    }
}

Picture Canvas::take() {
    Picture picture;
    picture.samples.width = std::exchange(width_, 0);
    picture.samples.height = std::exchange(height_, 0);
    picture.samples.channels = 3;
    picture.samples.depth = SampleDepth::Bits8;
    picture.samples.bytes = std::move(samples_);
    samples_.clear();
    return picture;
}

}  // namespace orv::cli
