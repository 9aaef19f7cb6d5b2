#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "images/rgb_discrete_image.h"

namespace orv::test {

/// Packed 24-bit pixels with what a photograph has: shading, hard edges, texture and noise.
/// Samples keep 24 levels from both ends, so that a scheme that overshoots a little doesn't
/// wrap.
inline std::vector<unsigned char> photoBytes(int width, int height, std::uint32_t seed) {
    std::vector<unsigned char> bytes;
    std::uint32_t state = seed;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double shade = 60.0 + 70.0 * x / width + 30.0 * y / height;
            const double edge =
                (x - width / 2) * (x - width / 2) + (y - height / 2) * y < 40 ? 55.0 : 0.0;
            const double texture = 8.0 * std::sin(0.9 * x) * std::cos(1.7 * y);
            for (int c = 0; c < 3; ++c) {
                state = state * 1664525U + 1013904223U;
                const double noise = static_cast<double>(state >> 27U) - 16.0;
                const double v = shade + (c == 1 ? -edge / 2.0 : edge) + texture + noise;
                bytes.push_back(
                    static_cast<unsigned char>(std::fmin(231.0, std::fmax(24.0, v))));
            }
        }
    }
    return bytes;
}

/// The same as an image.
inline std::unique_ptr<RgbDiscreteImage> photoImage(int width, int height, std::uint32_t seed) {
    const std::vector<unsigned char> bytes = photoBytes(width, height, seed);
    return std::make_unique<RgbDiscreteImage>(width, height, bytes.data());
}

}  // namespace orv::test
