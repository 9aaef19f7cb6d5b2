#pragma once

#include <span>

namespace orv::cli {

/// Size of each glyph in pixels.
inline constexpr int kGlyphWidth = 10;
inline constexpr int kGlyphHeight = 20;

/// A character of the labels' font.
struct Glyph {
    char32_t code;
    /// Three hexadecimal digits for each row; the bit of the left column is 0x200.
    const char* rows;
};

/// Latin letters, figures and punctuation, by rising code.
std::span<const Glyph> latinGlyphs();

/// Greek and Cyrillic letters, by rising code.
std::span<const Glyph> greekAndCyrillicGlyphs();

}  // namespace orv::cli
