#include "files/file_format.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstring>

#include "files/image_file.h"
#include "methods/suggestion.h"

namespace orv::cli {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::array<FormatEntry, 6> kFormats{{
    {Format::Png, "PNG", ".png", true, true, SampleDepth::Bits16, true},
    {Format::Jpeg, "JPEG", ".jpg .jpeg", false, true, SampleDepth::Bits8, true},
    {Format::Tiff, "TIFF", ".tif .tiff", true, true, SampleDepth::Float, true},
    {Format::Webp, "WebP", ".webp", true, true, SampleDepth::Bits8, true},
    {Format::Bmp, "BMP", ".bmp", true, false, SampleDepth::Bits8, false},
    {Format::Netpbm, "PPM", ".ppm .pgm .pnm", false, false, SampleDepth::Bits16, false},
}};

bool holds(const std::vector<unsigned char>& bytes, std::string_view text, std::size_t at = 0) {
    return bytes.size() >= at + text.size() &&
           std::memcmp(bytes.data() + at, text.data(), text.size()) == 0;
}

const FormatEntry* formatOfEnding(std::string_view ending) {
    for (const FormatEntry& entry : kFormats) {
        std::string_view rest = entry.extensions;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(' '), rest.size());
            if (sameWord(rest.substr(0, end), ending)) {
                return &entry;
            }
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    return nullptr;
}

}  // namespace

const FormatEntry* formatEntry(Format format) {
    for (const FormatEntry& entry : kFormats) {
        if (entry.format == format) {
            return &entry;
        }
    }
    return nullptr;
}

std::string endingOfName(std::string_view path) {
    const std::size_t slash = path.find_last_of('/');
    const std::string_view name =
        slash == std::string_view::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string_view::npos || dot == 0) {
        return {};
    }
    return std::string(name.substr(dot));
}

const FormatEntry* formatOfName(std::string_view path) {
    const std::string ending = endingOfName(path);
    return ending.empty() ? nullptr : formatOfEnding(ending);
}

const FormatEntry* formatOfWord(std::string_view word) {
    if (word.empty()) {
        return nullptr;
    }
    return formatOfEnding(word[0] == '.' ? std::string(word) : "." + std::string(word));
}

Format formatOfBytes(const std::vector<unsigned char>& head) {
    if (holds(head, "\x89PNG\r\n\x1a\n"sv)) {
        return Format::Png;
    }
    if (holds(head, "\xff\xd8\xff"sv)) {
        return Format::Jpeg;
    }
    for (const std::string_view mark : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
        if (holds(head, mark)) {
            return Format::Tiff;
        }
    }
    if (holds(head, "RIFF"sv) && holds(head, "WEBP"sv, 8)) {
        return Format::Webp;
    }
    if (holds(head, "BM"sv)) {
        return Format::Bmp;
    }
    if (holds(head, "P5"sv) || holds(head, "P6"sv)) {
        return Format::Netpbm;
    }
    return Format::Unknown;
}

std::string foreignFormat(const std::vector<unsigned char>& head) {
    struct Mark {
        std::string_view bytes;
        std::size_t at;
        std::string_view name;
    };
    constexpr std::array<Mark, 13> kMarks{{
        {"GIF8"sv, 0, "a GIF"sv},
        {"8BPS"sv, 0, "a Photoshop file"sv},
        {"%PDF"sv, 0, "a PDF"sv},
        {"ftyphei"sv, 4, "a HEIC"sv},
        {"ftypmif1"sv, 4, "a HEIF"sv},
        {"ftypavif"sv, 4, "an AVIF"sv},
        {"ftypcrx"sv, 4, "a camera's raw file"sv},
        {"FUJIFILMCCD-RAW"sv, 0, "a camera's raw file"sv},
        {"\0\0\0\x0cJXL "sv, 0, "a JPEG XL"sv},
        {"\xff\x0a"sv, 0, "a JPEG XL"sv},
        {"\0\0\0\x0cjP  "sv, 0, "a JPEG 2000"sv},
        {"gimp xcf"sv, 0, "a GIMP file"sv},
        {"\x76\x2f\x31\x01"sv, 0, "an OpenEXR"sv},
    }};
    for (const Mark& mark : kMarks) {
        if (holds(head, mark.bytes, mark.at)) {
            return std::string(mark.name);
        }
    }
    const bool plain = head.size() > 2 && head[0] == 'P' && head[1] >= '1' && head[1] <= '7' &&
                       std::isspace(head[2]) != 0;
    return plain ? "a PBM, PAM or plain text PNM" : std::string();
}

std::string writableExtensions() {
    std::string text;
    for (const FormatEntry& entry : kFormats) {
        if (isCoded(entry)) {
            text += text.empty() ? "" : " ";
            text += entry.extensions;
        }
    }
    return text;
}

std::string readableFormats() {
    std::string text;
    for (const FormatEntry& entry : kFormats) {
        text += isCoded(entry) ? std::string(entry.name) + ", " : "";
    }
    return text + "PGM";
}

}  // namespace orv::cli
