#include "recipe/pixel_hash.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

// The functions are compiled into this file, so that nothing is to be linked.
#define XXH_INLINE_ALL
#include <xxhash.h>

namespace orv::cli {

namespace {

constexpr std::size_t kBlock = 65536;

bool lowestByteFirst() {
    const std::uint16_t one = 1;
    unsigned char first = 0;
    std::memcpy(&first, &one, 1);
    return first == 1;
}

int bitsOf(SampleDepth depth) {
    return static_cast<int>(8 * bytesOf(depth));
}

std::array<unsigned char, 16> headOf(const InterleavedSamples& samples) {
    const std::array<int, 4> numbers{samples.width, samples.height, samples.channels,
                                     bitsOf(samples.depth)};
    std::array<unsigned char, 16> head{};
    for (std::size_t i = 0; i < head.size(); ++i) {
        const auto number = static_cast<std::uint32_t>(numbers[i / 4]);
        head[i] = static_cast<unsigned char>(number >> (8 * (i % 4)));
    }
    return head;
}

/// Adds samples of a machine that stores the highest byte first.
void addSwapped(XXH3_state_t& state, const InterleavedSamples& samples) {
    const std::size_t step = bytesOf(samples.depth);
    std::vector<unsigned char> block;
    for (std::size_t at = 0; at < samples.bytes.size(); at += kBlock) {
        const auto from = samples.bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const std::size_t count = std::min(kBlock, samples.bytes.size() - at);
        block.assign(from, from + static_cast<std::ptrdiff_t>(count));
        for (std::size_t i = 0; i + step <= count; i += step) {
            const auto sample = block.begin() + static_cast<std::ptrdiff_t>(i);
            std::reverse(sample, sample + static_cast<std::ptrdiff_t>(step));
        }
        XXH3_128bits_update(&state, block.data(), block.size());
    }
}

}  // namespace

std::string pixelHash(const InterleavedSamples& samples) {
    // The state is a kilobyte, aligned as the vectors of the machine need it.
    const auto state = std::make_unique<XXH3_state_t>();
    XXH3_128bits_reset(state.get());
    const std::array<unsigned char, 16> head = headOf(samples);
    XXH3_128bits_update(state.get(), head.data(), head.size());
    if (samples.depth == SampleDepth::Bits8 || lowestByteFirst()) {
        XXH3_128bits_update(state.get(), samples.bytes.data(), samples.bytes.size());
    } else {
        addSwapped(*state, samples);
    }

    XXH128_canonical_t digest{};
    XXH128_canonicalFromHash(&digest, XXH3_128bits_digest(state.get()));
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text(kPixelHashPrefix);
    for (const unsigned char byte : digest.digest) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 15U];
    }
    return text;
}

PictureFacts pictureFacts(const std::string& file, const InterleavedSamples& samples) {
    return {file,
            samples.width,
            samples.height,
            samples.channels,
            bitsOf(samples.depth),
            pixelHash(samples)};
}

bool isPixelHash(std::string_view text) {
    if (text.substr(0, kPixelHashPrefix.size()) != kPixelHashPrefix) {
        return false;
    }
    const std::string_view digits = text.substr(kPixelHashPrefix.size());
    return digits.size() == 32 &&
           digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

}  // namespace orv::cli
