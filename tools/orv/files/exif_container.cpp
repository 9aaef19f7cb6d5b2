#include "files/exif_container.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "system/file_system.h"

namespace orv::cli {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t kPngMark = 8;
constexpr std::size_t kPngFrame = 12;  // length, name and checksum of a chunk
constexpr std::size_t kRiffHead = 12;
constexpr unsigned char kWebpExifFlag = 0x08;
constexpr unsigned char kWebpAlphaFlag = 0x10;
constexpr std::size_t kMostPngExif = 1u << 24;

std::size_t big(const unsigned char* bytes, int count) {
    std::size_t value = 0;
    for (int i = 0; i < count; ++i) {
        value = value << 8 | bytes[i];
    }
    return value;
}

std::size_t little(const unsigned char* bytes, int count) {
    std::size_t value = 0;
    for (int i = count - 1; i >= 0; --i) {
        value = value << 8 | bytes[i];
    }
    return value;
}

void putBig(Bytes& bytes, std::size_t value, int count) {
    for (int i = count - 1; i >= 0; --i) {
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
}

void putLittle(Bytes& bytes, std::size_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
    }
}

void putText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

bool holds(const Bytes& bytes, std::size_t at, std::string_view text) {
    return bytes.size() >= at + text.size() &&
           std::memcmp(bytes.data() + at, text.data(), text.size()) == 0;
}

void insert(Bytes& file, std::size_t at, const Bytes& part) {
    file.insert(file.begin() + static_cast<std::ptrdiff_t>(at), part.begin(), part.end());
}

void erase(Bytes& file, std::size_t at, std::size_t count) {
    const auto first = file.begin() + static_cast<std::ptrdiff_t>(at);
    file.erase(first, first + static_cast<std::ptrdiff_t>(std::min(count, file.size() - at)));
}

/// The checksum of PNG chunks.
std::uint32_t crc32(const unsigned char* bytes, std::size_t count) {
    std::uint32_t crc = 0xffffffffu;
    for (std::size_t i = 0; i < count; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1u) != 0 ? crc >> 1 ^ 0xedb88320u : crc >> 1;
        }
    }
    return ~crc;
}

bool putJpeg(Bytes& file, std::string_view block) {
    using std::string_view_literals::operator""sv;
    constexpr std::string_view kMark = "Exif\0\0"sv;
    constexpr std::size_t kMostSegment = 65533;
    std::size_t at = 2;
    std::size_t place = at;
    while (at + 4 <= file.size() && file[at] == 0xff && file[at + 1] >= 0xe0 &&
           file[at + 1] <= 0xef) {
        const std::size_t length = 2 + big(&file[at + 2], 2);
        if (file[at + 1] == 0xe1 && holds(file, at + 4, kMark)) {
            erase(file, at, length);
            continue;
        }
        // The mark of JFIF has to stand first.
        place = file[at + 1] == 0xe0 ? at + length : place;
        at += length;
    }
    if (block.empty()) {
        return true;
    }
    if (block.size() + kMark.size() > kMostSegment) {
        return false;
    }
    Bytes segment{0xff, 0xe1};
    putBig(segment, 2 + kMark.size() + block.size(), 2);
    putText(segment, kMark);
    putText(segment, block);
    insert(file, place, segment);
    return true;
}

void putJfif(Bytes& file, double across, double down) {
    if (file.size() < 4 || file[3] == 0xe0) {
        return;
    }
    // Whole dots a centimetre are no whole dots an inch.
    constexpr double kCentimetresPerInch = 2.54;
    const bool inches = std::abs(across - std::round(across)) < 0.02;
    const auto dots = [inches](double perInch) {
        const double value = std::round(inches ? perInch : perInch / kCentimetresPerInch);
        return static_cast<std::size_t>(std::clamp(value, 1.0, 65535.0));
    };
    Bytes segment{0xff, 0xe0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 2};
    const bool known = across > 0.0 && down > 0.0;
    segment.push_back(!known ? 0 : inches ? 1 : 2);
    putBig(segment, known ? dots(across) : 1, 2);
    putBig(segment, known ? dots(down) : 1, 2);
    putBig(segment, 0, 2);
    insert(file, 2, segment);
}

/// Takes a chunk out of the head of a PNG and gives the place of the pixels.
std::size_t removeChunk(Bytes& file, std::string_view name) {
    std::size_t at = kPngMark;
    while (at + kPngFrame <= file.size() && !holds(file, at + 4, "IDAT")) {
        const std::size_t length = big(&file[at], 4) + kPngFrame;
        if (holds(file, at + 4, name)) {
            erase(file, at, length);
        } else {
            at += length;
        }
    }
    return at;
}

void insertChunk(Bytes& file, std::size_t at, std::string_view name, std::string_view body) {
    Bytes chunk;
    putBig(chunk, body.size(), 4);
    putText(chunk, name);
    putText(chunk, body);
    putBig(chunk, crc32(&chunk[4], chunk.size() - 4), 4);
    insert(file, at, chunk);
}

bool putPng(Bytes& file, std::string_view block) {
    const std::size_t at = removeChunk(file, "eXIf");
    if (!block.empty()) {
        insertChunk(file, at, "eXIf", block);
    }
    return true;
}

bool putWebp(Bytes& file, std::string_view block, const Picture& picture) {
    bool extended = false;
    std::size_t at = kRiffHead;
    while (at + 8 <= file.size()) {
        const std::size_t bytes = little(&file[at + 4], 4);
        const std::size_t length = 8 + bytes + bytes % 2;
        if (holds(file, at, "EXIF")) {
            erase(file, at, length);
            continue;
        }
        if (holds(file, at, "VP8X")) {
            extended = true;
            unsigned char& flags = file[at + 8];
            flags = static_cast<unsigned char>(block.empty() ? flags & ~kWebpExifFlag
                                                             : flags | kWebpExifFlag);
        }
        at += length;
    }
    if (!block.empty() && !extended) {
        Bytes head;
        putText(head, "VP8X");
        putLittle(head, 10, 4);
        putLittle(head, kWebpExifFlag | (picture.alpha ? kWebpAlphaFlag : 0u), 4);
        putLittle(head, static_cast<std::size_t>(picture.samples.width - 1), 3);
        putLittle(head, static_cast<std::size_t>(picture.samples.height - 1), 3);
        insert(file, kRiffHead, head);
    }
    if (!block.empty()) {
        putText(file, "EXIF");
        putLittle(file, block.size(), 4);
        putText(file, block);
        if (block.size() % 2 != 0) {
            file.push_back(0);
        }
    }
    Bytes size;
    putLittle(size, file.size() - 8, 4);
    std::copy(size.begin(), size.end(), file.begin() + 4);
    return true;
}

/// Reads parts of a source wherever it is.
class Reader {
  public:
    explicit Reader(const PictureSource& source)
        : source_(source),
          file_(source.inMemory ? nullptr : openFile(source.name, "rb"), close) {}

    /// Whether there are so many bytes at a place; they are then in `bytes`.
    bool read(std::size_t at, std::size_t count, Bytes& bytes) {
        bytes.resize(count);
        if (source_.inMemory) {
            const bool inside =
                at <= source_.bytes.size() && count <= source_.bytes.size() - at;
            if (inside && count > 0) {
                std::memcpy(bytes.data(), source_.bytes.data() + at, count);
            }
            return inside;
        }
        return file_ != nullptr &&
               std::fseek(file_.get(), static_cast<long>(at), SEEK_SET) == 0 &&
               std::fread(bytes.data(), 1, count, file_.get()) == count;
    }

  private:
    static void close(std::FILE* file) { std::fclose(file); }

    const PictureSource& source_;
    std::unique_ptr<std::FILE, void (*)(std::FILE*)> file_;
};

}  // namespace

std::string exifOfPng(const PictureSource& source) {
    Reader reader(source);
    Bytes bytes;
    std::size_t at = kPngMark;
    while (reader.read(at, 8, bytes)) {
        const std::size_t length = big(bytes.data(), 4);
        if (holds(bytes, 4, "IEND")) {
            break;
        }
        if (holds(bytes, 4, "eXIf") && length < kMostPngExif) {
            return reader.read(at + 8, length, bytes) ? std::string(bytes.begin(), bytes.end())
                                                      : std::string();
        }
        at += length + kPngFrame;
    }
    return {};
}

void putResolution(Format format, double across, double down,
                   std::vector<unsigned char>& file) {
    if (format == Format::Jpeg) {
        putJfif(file, across, down);
    } else if (format == Format::Png && across <= 0.0) {
        removeChunk(file, "pHYs");
    }
}

void putXmpIntoPng(std::string_view packet, std::vector<unsigned char>& file) {
    using std::string_view_literals::operator""sv;
    std::string body("XML:com.adobe.xmp\0\0\0\0\0"sv);
    body += packet;
    insertChunk(file, removeChunk(file, "IDAT"), "iTXt", body);
}

void putProfileIntoPng(std::string_view profile, std::vector<unsigned char>& file) {
    using std::string_view_literals::operator""sv;
    constexpr std::size_t kMostStored = 65535;
    Bytes body;
    putText(body, "ICC profile\0\0\x78\x01"sv);
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char c : profile) {
        low = (low + static_cast<unsigned char>(c)) % 65521u;
        high = (high + low) % 65521u;
    }
    for (std::string_view rest = profile; !rest.empty();) {
        const std::string_view part = rest.substr(0, kMostStored);
        rest.remove_prefix(part.size());
        body.push_back(rest.empty() ? 1 : 0);
        putLittle(body, part.size(), 2);
        putLittle(body, ~part.size(), 2);
        putText(body, part);
    }
    putBig(body, high << 16 | low, 4);
    insertChunk(file, removeChunk(file, "IDAT"), "iCCP",
                {reinterpret_cast<const char*>(body.data()), body.size()});
}

bool putExif(Format format, std::string_view block, const Picture& picture,
             std::vector<unsigned char>& file) {
    switch (format) {
        case Format::Jpeg:
            return putJpeg(file, block);
        case Format::Png:
            return putPng(file, block);
        case Format::Webp:
            return putWebp(file, block, picture);
        default:
            return block.empty();
    }
}

}  // namespace orv::cli
