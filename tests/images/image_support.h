#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

#include "images/rgb_discrete_image.h"
#include "support/plane_support.h"

namespace orv::test {

/// Seeded bytes r, g, b for a picture.
inline std::vector<unsigned char> noiseBytes(int width, int height, unsigned seed) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(width * height * 3));
    Noise noise(seed);
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(noise.integer(0, 255));
    }
    return bytes;
}

/// A picture of seeded bytes.
inline RgbDiscreteImage noiseImage(int width, int height, unsigned seed) {
    return RgbDiscreteImage(width, height, noiseBytes(width, height, seed).data());
}

/// The three bytes of a pixel through the accessors.
inline std::array<int, 3> rgbAt(const DiscreteImage& image, int x, int y) {
    return {image.red(x, y), image.green(x, y), image.blue(x, y)};
}

/// Whether two pictures have one size and the same bytes.
inline bool sameBytes(RgbDiscreteImage& a, RgbDiscreteImage& b) {
    return a.width() == b.width() && a.height() == b.height() &&
           std::memcmp(a.data(), b.data(),
                       static_cast<std::size_t>(a.width() * a.height() * 3)) == 0;
}

}  // namespace orv::test
