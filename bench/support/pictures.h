#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace orv::bench {

/// A size with its name in the tables.
struct PictureSize {
    const char* name;
    int width;
    int height;
};

/// A quarter, four and twenty-four megapixels in the shape of a photo.
inline constexpr PictureSize kPictureSizes[] = {
    {"0.25MP", 612, 408}, {"4MP", 2448, 1632}, {"24MP", 6000, 4000}};

/// Packed 24-bit pixels with shading, hard edges, texture and noise.
inline std::vector<unsigned char> photoBytes(int width, int height) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height) * 3U);
    std::vector<float> wave(static_cast<std::size_t>(width));
    for (std::size_t x = 0; x < wave.size(); ++x) {
        wave[x] = 8.0f * std::sin(0.31f * static_cast<float>(x));
    }
    std::uint32_t state = 1;
    std::size_t at = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float shade =
                60.0f + 70.0f * static_cast<float>(x) / static_cast<float>(width);
            const float edge = ((x / 97 + y / 61) & 1) != 0 ? 55.0f : 0.0f;
            for (int c = 0; c < 3; ++c) {
                state = state * 1664525U + 1013904223U;
                const float noise = static_cast<float>(state >> 27U);
                bytes[at++] = static_cast<unsigned char>(
                    shade + edge + wave[static_cast<std::size_t>(x)] + noise);
            }
        }
    }
    return bytes;
}

}  // namespace orv::bench
