#include "drawing/label.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "drawing/label_font.h"

namespace orv::cli {

namespace {

/// Stands for bytes that are no UTF-8, and has no glyph.
constexpr char32_t kNoCharacter = 0xfffd;

/// The characters of a text, each with the place of its first byte.
struct Characters {
    std::u32string codes;
    std::vector<std::size_t> starts;
};

/// Bytes that follow the first one of a sequence; 4 when that can't be a first one.
std::size_t followers(unsigned char first) {
    return first < 0x80                     ? 0
           : first >= 0xc2 && first < 0xe0  ? 1
           : first >= 0xe0 && first < 0xf0  ? 2
           : first >= 0xf0 && first <= 0xf4 ? 3
                                            : 4;
}

Characters charactersOf(std::string_view utf8) {
    Characters characters;
    std::size_t at = 0;
    while (at < utf8.size()) {
        const auto first = static_cast<unsigned char>(utf8[at]);
        const std::size_t more = followers(first);
        char32_t code = more == 0 ? first : first & (0x3fu >> more);
        bool whole = more < 4 && at + more < utf8.size();
        for (std::size_t i = 1; whole && i <= more; ++i) {
            const auto next = static_cast<unsigned char>(utf8[at + i]);
            whole = (next & 0xc0) == 0x80;
            code = (code << 6) | (next & 0x3fu);
        }
        characters.codes += whole ? code : kNoCharacter;
        characters.starts.push_back(at);
        at += whole ? more + 1 : 1;
    }
    return characters;
}

const char* rowsOf(char32_t code) {
    constexpr char32_t kNoBreakSpace = 0xa0;
    if (code == kNoBreakSpace) {
        code = ' ';
    }
    for (const std::span<const Glyph> glyphs : {latinGlyphs(), greekAndCyrillicGlyphs()}) {
        const auto found = std::lower_bound(
            glyphs.begin(), glyphs.end(), code,
            [](const Glyph& glyph, char32_t wanted) { return glyph.code < wanted; });
        if (found != glyphs.end() && found->code == code) {
            return found->rows;
        }
    }
    // A box of the height of a capital letter.
    return "000000000"
           "1fe1fe"
           "186186186186186186186186186"
           "1fe1fe"
           "000000000000";
}

unsigned digit(char c) {
    return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'a' + 10);
}

void drawGlyph(Canvas& canvas, int x, int y, const char* rows, Colour ink, int scale) {
    for (int row = 0; row < kGlyphHeight; ++row, rows += 3) {
        const unsigned bits = digit(rows[0]) << 8 | digit(rows[1]) << 4 | digit(rows[2]);
        for (int column = 0; column < kGlyphWidth; ++column) {
            if ((bits >> (kGlyphWidth - 1 - column) & 1u) != 0) {
                canvas.fill(x + column * scale, y + row * scale, scale, scale, ink);
            }
        }
    }
}

}  // namespace

int labelHeight(int scale) {
    return kGlyphHeight * scale;
}

int labelWidth(std::string_view utf8, int scale) {
    return static_cast<int>(charactersOf(utf8).codes.size()) * kGlyphWidth * scale;
}

void drawLabel(Canvas& canvas, int x, int y, std::string_view utf8, Colour ink, int scale) {
    for (const char32_t code : charactersOf(utf8).codes) {
        drawGlyph(canvas, x, y, rowsOf(code), ink, scale);
        x += kGlyphWidth * scale;
    }
}

std::string fittingLabel(std::string_view utf8, int width, int scale) {
    const Characters characters = charactersOf(utf8);
    const std::size_t count = characters.codes.size();
    const auto room = static_cast<std::size_t>(std::max(0, width / (kGlyphWidth * scale)));
    if (count <= room) {
        return std::string(utf8);
    }
    constexpr std::string_view kGap = "...";
    if (room <= kGap.size()) {
        return std::string(kGap.substr(0, room));
    }
    // The end of a file name tells more than its middle.
    const std::size_t kept = room - kGap.size();
    const std::size_t last = kept / 2;
    const std::size_t first = kept - last;
    return std::string(utf8.substr(0, characters.starts[first])) + std::string(kGap) +
           std::string(last == 0 ? std::string_view()
                                 : utf8.substr(characters.starts[count - last]));
}

}  // namespace orv::cli
