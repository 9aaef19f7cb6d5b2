#include "terminal/utf8_text.h"

#include <algorithm>
#include <cstddef>

namespace orv::cli {

namespace {

/// Bytes of the UTF-8 character that the text begins with, 0 when it begins with none.
std::size_t characterBytes(std::string_view text) {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    const std::size_t bytes = first < 0x80   ? 1
                              : first < 0xc2 ? 0
                              : first < 0xe0 ? 2
                              : first < 0xf0 ? 3
                              : first < 0xf5 ? 4
                                             : 0;
    if (bytes == 0 || bytes > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < bytes; ++i) {
        if ((byte(i) & 0xc0U) != 0x80U) {
            return 0;
        }
    }
    // Too long forms, surrogates and what lies beyond U+10FFFF show in the second byte.
    if ((first == 0xe0 && byte(1) < 0xa0) || (first == 0xed && byte(1) > 0x9f) ||
        (first == 0xf0 && byte(1) < 0x90) || (first == 0xf4 && byte(1) > 0x8f)) {
        return 0;
    }
    return bytes;
}

}  // namespace

std::string cleanUtf8(std::string_view text, std::string_view mark) {
    std::string clean;
    while (!text.empty()) {
        const std::size_t bytes = characterBytes(text);
        clean += bytes == 0 ? mark : text.substr(0, bytes);
        text.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return clean;
}

}  // namespace orv::cli
