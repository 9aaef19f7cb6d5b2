#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// A picture of pseudo-random samples.
inline Picture noisePicture(int width, int height, int colours, bool alpha = false,
                            SampleDepth depth = SampleDepth::Bits8) {
    Picture picture;
    picture.colours = colours;
    picture.alpha = alpha;
    picture.samples.width = width;
    picture.samples.height = height;
    picture.samples.channels = colours + (alpha ? 1 : 0);
    picture.samples.depth = depth;
    const std::size_t count = static_cast<std::size_t>(width) *
                              static_cast<std::size_t>(height) *
                              static_cast<std::size_t>(picture.samples.channels);
    picture.samples.bytes.resize(count * bytesOf(depth));
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1103515245u + 12345u;
        const auto word = static_cast<std::uint16_t>(state >> 12);
        const float unit = static_cast<float>(word) / 65535.0f;
        unsigned char* const place = picture.samples.bytes.data() + i * bytesOf(depth);
        if (depth == SampleDepth::Bits8) {
            *place = static_cast<unsigned char>(word & 0xff);
        } else if (depth == SampleDepth::Bits16) {
            std::memcpy(place, &word, sizeof word);
        } else {
            std::memcpy(place, &unit, sizeof unit);
        }
    }
    return picture;
}

/// Settings for a format that is named by a word.
inline WriteSettings settingsOf(std::string_view word, Strip strip = Strip::None,
                                int quality = 92) {
    WriteSettings settings;
    settings.format = formatOfWord(word);
    settings.ending = "." + std::string(word);
    settings.strip = strip;
    settings.quality = quality;
    return settings;
}

/// Whether bytes hold a text.
inline bool holdsText(const std::vector<unsigned char>& bytes, std::string_view text) {
    return std::search(bytes.begin(), bytes.end(), text.begin(), text.end(),
                       [](unsigned char a, char b) {
                           return a == static_cast<unsigned char>(b);
                       }) != bytes.end();
}

}  // namespace orv::cli
