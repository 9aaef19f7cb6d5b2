#include "pictures.h"

#include <algorithm>
#include <cstdint>

#include "text_parts.h"

namespace golden {

namespace {

constexpr unsigned char kPadding = 0xa5;

int clamped(int value) {
    return std::min(std::max(value, 0), 255);
}

/// Scrambles place and seed to 32 bits, so that a sample doesn't depend on the order of drawing.
std::uint32_t scrambled(int x, int y, int channel, int seed) {
    std::uint32_t bits = static_cast<std::uint32_t>(x) * 0x9e3779b1U +
                         static_cast<std::uint32_t>(y) * 0x85ebca77U +
                         static_cast<std::uint32_t>(channel) * 0xc2b2ae3dU +
                         static_cast<std::uint32_t>(seed) * 0x27d4eb2fU;
    bits = (bits ^ (bits >> 15)) * 0x2c1b3c6dU;
    bits = (bits ^ (bits >> 12)) * 0x297a2d39U;
    return bits ^ (bits >> 15);
}

/// A bell of mean 0 and a deviation of about 12 grey levels.
int bell(int x, int y, int channel, int seed) {
    const std::uint32_t bits = scrambled(x, y, channel, seed);
    const std::uint32_t sum =
        (bits & 15U) + ((bits >> 8) & 15U) + ((bits >> 16) & 15U) + ((bits >> 24) & 15U);
    return (static_cast<int>(sum) - 30) * 4 / 3;
}

/// What a pattern knows of the sample that it draws.
struct Place {
    int x;
    int y;
    int channel;
    int width;
    int height;
    int seed;
};

int black(const Place& /*at*/) {
    return 0;
}

int white(const Place& /*at*/) {
    return 255;
}

int grey(const Place& at) {
    return 40 + (at.seed * 37 + at.x * 3 + at.y * 5) % 170;
}

int checker(const Place& at) {
    return ((at.x / 2 + at.y / 2 + at.seed) & 1) != 0 ? 255 : 0;
}

int gradient(const Place& at) {
    const int across = at.x * 255 / std::max(at.width - 1, 1);
    const int down = at.y * 255 / std::max(at.height - 1, 1);
    const int values[] = {across, down, (across + 255 - down) / 2};
    return values[at.channel];
}

/// Plateaus with sharp edges, straight and slanted, under noise.
int steps(const Place& at) {
    const int levels[] = {48, 200, 96, 160};
    const int column = 4 * at.x / at.width;
    const int slant = 2 * at.x + 3 * at.y > at.width + at.height ? 1 : 0;
    const int level = levels[(column + slant + at.channel * at.seed) & 3];
    return clamped(level + bell(at.x, at.y, at.channel, at.seed));
}

int noise(const Place& at) {
    return static_cast<int>(scrambled(at.x, at.y, at.channel, at.seed) >> 24);
}

/// Stripes of saturated and pale colours that never reach 0, so that logarithms stay finite.
int colours(const Place& at) {
    const int bases[][3] = {{210, 60, 40}, {30, 180, 90}, {60, 70, 220}, {230, 220, 150}};
    const int stripe = (at.x / 5 + at.y / 7 + at.seed) & 3;
    const int shade = at.y * 20 / at.height;
    return clamped(bases[stripe][at.channel] + shade - 10);
}

/// Lone bright pixels on black.
int dots(const Place& at) {
    return scrambled(at.x, at.y, 0, at.seed) % 23U == 0 ? 255 - 60 * at.channel : 0;
}

struct Pattern {
    const char* name;
    int (*draw)(const Place&);
};

constexpr Pattern kPatterns[] = {{"black", black},       {"white", white},     {"grey", grey},
                                 {"checker", checker},   {"steps", steps},     {"noise", noise},
                                 {"gradient", gradient}, {"colours", colours}, {"dots", dots}};

const Pattern* patternNamed(const std::string& name) {
    for (const Pattern& pattern : kPatterns) {
        if (name == pattern.name) {
            return &pattern;
        }
    }
    return nullptr;
}

std::size_t strideOf(int width) {
    return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
}

}  // namespace

std::vector<unsigned char> Picture::packed() const {
    std::vector<unsigned char> bytes;
    const auto used = static_cast<std::ptrdiff_t>(std::max(width, 0)) * 3;
    for (int y = 0; y < height && used > 0; ++y) {
        const auto row = rows.begin() + static_cast<std::ptrdiff_t>(strideOf(width)) * y;
        bytes.insert(bytes.end(), row, row + used);
    }
    return bytes;
}

bool drawPicture(const std::string& recipe, Picture& picture) {
    const std::vector<std::string> fields = parts(recipe, ':');
    if (fields.size() != 3) {
        return false;
    }
    const std::vector<std::string> sides = parts(fields[1], 'x');
    const Pattern* const pattern = patternNamed(fields[0]);
    int seed = 0;
    if (pattern == nullptr || sides.size() != 2 || !readInt(sides[0], picture.width) ||
        !readInt(sides[1], picture.height) || !readInt(fields[2], seed)) {
        return false;
    }
    if (picture.width < 1 || picture.height < 1) {
        // For what refuses such a size before it reads a pixel.
        picture.rows.assign(4, kPadding);
        return true;
    }
    const std::size_t stride = strideOf(picture.width);
    picture.rows.assign(stride * static_cast<std::size_t>(picture.height), kPadding);
    for (int y = 0; y < picture.height; ++y) {
        unsigned char* sample = picture.rows.data() + stride * static_cast<std::size_t>(y);
        for (int x = 0; x < picture.width; ++x) {
            for (int channel = 0; channel < 3; ++channel) {
                const Place at{x, y, channel, picture.width, picture.height, seed};
                *sample++ = static_cast<unsigned char>(pattern->draw(at));
            }
        }
    }
    return true;
}

}  // namespace golden
