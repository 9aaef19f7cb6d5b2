#include "files/wic_blocks.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>

namespace orv::cli {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::string_view kExif = "Exif\0\0"sv;
constexpr std::string_view kXmp = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr std::string_view kProfile = "ICC_PROFILE\0"sv;
constexpr unsigned char kProfileMarker = 0xe2;
constexpr std::size_t kPngMark = 8;
constexpr std::size_t kPngFrame = 12;  // length, name and checksum of a chunk

std::size_t number(std::string_view bytes, std::size_t at, std::size_t count, bool big = true) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < count && at + count <= bytes.size(); ++i) {
        const std::size_t place = big ? at + i : at + count - 1 - i;
        value = value << 8U | static_cast<unsigned char>(bytes[place]);
    }
    return value;
}

/// Goes through the chunks of a PNG until `visit(name, body)` is true.
template <class Visit>
bool anyChunk(std::string_view file, Visit visit) {
    for (std::size_t at = kPngMark; at + kPngFrame <= file.size();) {
        const std::size_t length = number(file, at, 4);
        if (length > file.size() - at - kPngFrame) {
            return false;
        }
        if (visit(file.substr(at + 4, 4), file.substr(at + 8, length))) {
            return true;
        }
        at += kPngFrame + length;
    }
    return false;
}

/// The place behind the segments before the pixels of a JPEG, each of which `visit(marker, at,
/// length)` may see; true ends the walk there.
template <class Visit>
std::size_t walkSegments(std::string_view file, Visit visit) {
    std::size_t at = 2;
    while (at + 4 <= file.size() && file[at] == '\xff') {
        if (file[at + 1] == '\xff') {
            ++at;  // A marker may follow any number of such bytes.
            continue;
        }
        const auto marker = static_cast<unsigned char>(file[at + 1]);
        const std::size_t length = 2 + number(file, at + 2, 2);
        constexpr unsigned char kScan = 0xda;
        if (marker == kScan || length > file.size() - at || visit(marker, at, length)) {
            break;
        }
        at += length;
    }
    return at;
}

/// A segment of a JPEG with its marker and length.
std::string segmentOf(char marker, const std::string& body) {
    const std::size_t length = 2 + body.size();
    return std::string{'\xff', marker, static_cast<char>(length >> 8U),
                       static_cast<char>(length & 0xffU)} +
           body;
}

/// The size that a BMP tells of itself is wrong in many, so that its rows are counted.
bool isBmpCutShort(std::string_view file) {
    constexpr std::size_t kInfoHeader = 40;
    constexpr std::size_t kBitFields = 3;
    const auto field = [file](std::size_t at, std::size_t count) {
        return number(file, at, count, /*big=*/false);
    };
    const std::size_t compression = field(30, 4);
    if (field(14, 4) < kInfoHeader || (compression != 0 && compression != kBitFields)) {
        return false;  // An old header, or rows of any length.
    }
    const auto height = static_cast<std::int32_t>(static_cast<std::uint32_t>(field(22, 4)));
    const double words =
        std::ceil(static_cast<double>(field(18, 4)) * static_cast<double>(field(28, 2)) / 32.0);
    const double end =
        static_cast<double>(field(10, 4)) + 4.0 * words * std::abs(static_cast<double>(height));
    return end > static_cast<double>(file.size());
}

}  // namespace

bool isCutShort(Format format, std::string_view file) {
    if (format == Format::Png) {
        return !anyChunk(file, [](std::string_view name, std::string_view /*body*/) {
            return name == "IEND";
        });
    }
    if (format == Format::Jpeg) {
        const std::size_t pixels =
            walkSegments(file, [](unsigned char, std::size_t, std::size_t) { return false; });
        return file.find("\xff\xd9"sv, pixels) == std::string_view::npos;
    }
    return format == Format::Bmp && isBmpCutShort(file);
}

std::string_view jpegSegment(std::string_view file, unsigned char marker,
                             std::string_view text) {
    std::string_view body;
    walkSegments(file, [&](unsigned char found, std::size_t at, std::size_t length) {
        const bool fits = found == marker && length >= 4 + text.size() &&
                          file.substr(at + 4, text.size()) == text;
        if (fits) {
            body = file.substr(at + 4 + text.size(), length - 4 - text.size());
        }
        return fits;
    });
    return body;
}

bool pngChunk(std::string_view file, std::string_view name, std::string_view text,
              std::string_view& body) {
    return anyChunk(file, [&](std::string_view found, std::string_view content) {
        const bool fits = found == name && content.substr(0, text.size()) == text;
        if (fits) {
            body = content.substr(text.size());
        }
        return fits;
    });
}

bool tiffHasTag(std::string_view file, unsigned tag) {
    constexpr std::size_t kEntry = 12;
    const bool big = file.substr(0, 2) == "MM";
    const std::size_t list = number(file, 4, 4, big);
    const std::size_t count = list < file.size() ? number(file, list, 2, big) : 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (number(file, list + 2 + i * kEntry, 2, big) == tag) {
            return true;
        }
    }
    return false;
}

std::string_view exifOfFile(Format format, std::string_view file) {
    std::string_view block;
    if (format == Format::Jpeg) {
        block = jpegSegment(file, 0xe1, kExif);
    } else if (format == Format::Png) {
        pngChunk(file, "eXIf", "", block);
    } else if (format == Format::Tiff) {
        block = file;
    }
    return block;
}

std::string_view xmpOfFile(Format format, std::string_view file) {
    std::string_view packet;
    if (format == Format::Jpeg) {
        packet = jpegSegment(file, 0xe1, kXmp);
    } else if (format == Format::Png) {
        // Not compressed, without a language, as the standard of XMP asks for.
        pngChunk(file, "iTXt", "XML:com.adobe.xmp\0\0\0\0\0"sv, packet);
    }
    return packet;
}

std::string profileOfJpeg(std::string_view file) {
    constexpr std::size_t kNumbers = 2;  // the number of the part and how many there are
    std::map<unsigned char, std::string_view> parts;
    walkSegments(file, [&](unsigned char marker, std::size_t at, std::size_t length) {
        const std::string_view body = file.substr(at + 4, length - 4);
        if (marker == kProfileMarker && body.substr(0, kProfile.size()) == kProfile &&
            body.size() > kProfile.size() + kNumbers) {
            parts[static_cast<unsigned char>(body[kProfile.size()])] =
                body.substr(kProfile.size() + kNumbers);
        }
        return false;
    });
    std::string profile;
    for (const auto& [number, part] : parts) {
        profile += part;
    }
    return profile;
}

bool finishJpeg(std::string_view profile, std::string_view packet,
                std::vector<unsigned char>& file) {
    constexpr std::size_t kMostBody = 65533;
    constexpr std::size_t kMostPart = kMostBody - kProfile.size() - 2;
    constexpr std::size_t kStart = 2;
    const std::string_view bytes(reinterpret_cast<const char*>(file.data()), file.size());
    const auto start = file.begin() + static_cast<std::ptrdiff_t>(kStart);
    if (bytes.substr(kStart, 2) == "\xff\xe0"sv) {
        file.erase(start,
                   start + static_cast<std::ptrdiff_t>(2 + number(bytes, kStart + 2, 2)));
    }
    std::string head;
    const bool fits = kXmp.size() + packet.size() <= kMostBody;
    if (fits && !packet.empty()) {
        head += segmentOf('\xe1', std::string(kXmp) + std::string(packet));
    }
    const std::size_t parts = (profile.size() + kMostPart - 1) / kMostPart;
    for (std::size_t i = 0; i < parts && parts < 256; ++i) {
        const std::string numbers{static_cast<char>(i + 1), static_cast<char>(parts)};
        head += segmentOf('\xe2', std::string(kProfile) + numbers +
                                      std::string(profile.substr(i * kMostPart, kMostPart)));
    }
    file.insert(file.begin() + static_cast<std::ptrdiff_t>(kStart), head.begin(), head.end());
    return fits;
}

}  // namespace orv::cli
