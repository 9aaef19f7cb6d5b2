#include "files/icc_profile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace orv::cli {

namespace {

constexpr std::size_t kSpaceAt = 16;
constexpr std::size_t kTagsAt = 128;
constexpr std::size_t kTagBytes = 12;
constexpr std::size_t kMostTags = 200;
constexpr std::size_t kMostLetters = 100;

/// A number of four bytes, highest first; 0 beyond the end.
std::size_t numberAt(std::string_view bytes, std::size_t at) {
    if (at > bytes.size() || bytes.size() - at < 4) {
        return 0;
    }
    std::size_t value = 0;
    for (const char c : bytes.substr(at, 4)) {
        value = value << 8 | static_cast<unsigned char>(c);
    }
    return value;
}

/// A part of the bytes, as much of it as there is.
std::string_view part(std::string_view bytes, std::size_t at, std::size_t size) {
    return at > bytes.size() ? std::string_view() : bytes.substr(at, size);
}

std::string_view descriptionTag(std::string_view profile) {
    const std::size_t tags = std::min(numberAt(profile, kTagsAt), kMostTags);
    for (std::size_t i = 0; i < tags; ++i) {
        const std::size_t entry = kTagsAt + 4 + i * kTagBytes;
        if (part(profile, entry, 4) == "desc") {
            return part(profile, numberAt(profile, entry + 4), numberAt(profile, entry + 8));
        }
    }
    return {};
}

/// Letters of one or two bytes as ASCII, without an end mark.
std::string letters(std::string_view text, std::size_t step) {
    std::string result;
    for (std::size_t i = step - 1; i < text.size() && result.size() < kMostLetters; i += step) {
        const auto letter = static_cast<unsigned char>(text[i]);
        if (letter == 0) {
            break;
        }
        const bool plain = letter >= 0x20 && letter < 0x7f && (step == 1 || text[i - 1] == 0);
        result += plain ? static_cast<char>(letter) : '?';
    }
    return result;
}

}  // namespace

std::string_view profileSpace(std::string_view profile) {
    return part(profile, kSpaceAt, 4);
}

std::string profileName(std::string_view profile) {
    if (profile.empty()) {
        return {};
    }
    const std::string_view tag = descriptionTag(profile);
    std::string name;
    if (part(tag, 0, 4) == "desc") {
        name = letters(part(tag, 12, numberAt(tag, 8)), 1);
    } else if (part(tag, 0, 4) == "mluc") {
        name = letters(part(tag, numberAt(tag, 24), numberAt(tag, 20)), 2);
    }
    return name.empty() ? "without a name" : name;
}

}  // namespace orv::cli
