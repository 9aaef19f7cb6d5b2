#include "image_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <vector>

#include "bmp_codec.h"
#include "methods/suggestion.h"
#include "netpbm_codec.h"
#include "vips_file.h"

namespace orv::cli {

namespace {

constexpr std::array<FormatEntry, 6> kFormats{{
    {Format::Png, "PNG", ".png", true, SampleDepth::Bits16, true},
    {Format::Jpeg, "JPEG", ".jpg .jpeg", false, SampleDepth::Bits8, true},
    {Format::Tiff, "TIFF", ".tif .tiff", true, SampleDepth::Float, true},
    {Format::Webp, "WebP", ".webp", true, SampleDepth::Bits8, true},
    {Format::Bmp, "BMP", ".bmp", true, SampleDepth::Bits8, false},
    {Format::Netpbm, "PPM", ".ppm .pgm .pnm", false, SampleDepth::Bits16, false},
}};

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

std::string systemReason(int error) {
    return std::strerror(error);
}

bool startsWith(const std::vector<unsigned char>& bytes, std::string_view text,
                std::size_t at = 0) {
    return bytes.size() >= at + text.size() &&
           std::memcmp(bytes.data() + at, text.data(), text.size()) == 0;
}

Format formatOfBytes(const std::vector<unsigned char>& head) {
    using std::string_view_literals::operator""sv;
    if (startsWith(head, "\x89PNG\r\n\x1a\n"sv)) {
        return Format::Png;
    }
    if (startsWith(head, "\xff\xd8\xff"sv)) {
        return Format::Jpeg;
    }
    for (const std::string_view mark : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
        if (startsWith(head, mark)) {
            return Format::Tiff;
        }
    }
    if (startsWith(head, "RIFF"sv) && startsWith(head, "WEBP"sv, 8)) {
        return Format::Webp;
    }
    if (startsWith(head, "BM"sv)) {
        return Format::Bmp;
    }
    if (startsWith(head, "P5"sv) || startsWith(head, "P6"sv)) {
        return Format::Netpbm;
    }
    return Format::Unknown;
}

/// Reads at most `most` bytes.
std::string readBytes(std::FILE* file, std::size_t most, std::vector<unsigned char>& bytes) {
    std::array<unsigned char, 65536> block{};
    while (bytes.size() < most) {
        const std::size_t wanted = std::min(block.size(), most - bytes.size());
        const std::size_t got = std::fread(block.data(), 1, wanted, file);
        bytes.insert(bytes.end(), block.begin(), block.begin() + static_cast<long>(got));
        if (got < wanted) {
            return std::ferror(file) != 0 ? systemReason(errno) : std::string();
        }
    }
    return {};
}

std::string knownFormats() {
    return haveVips() ? "PNG, JPEG, TIFF, WebP, BMP, PPM, PGM" : "BMP, PPM, PGM";
}

std::string readOwn(std::FILE* file, std::vector<unsigned char> bytes, Format format,
                    Picture& picture) {
    const std::string error = readBytes(file, SIZE_MAX, bytes);
    if (!error.empty()) {
        return "can't be read: " + error;
    }
    return format == Format::Bmp ? decodeBmp(bytes, picture) : decodeNetpbm(bytes, picture);
}

std::string readKnown(const std::string& path, Picture& picture) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return errno == ENOENT ? "no such file" : "can't be read: " + systemReason(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        return "is a folder, not a picture";
    }
    if (!S_ISREG(status.st_mode)) {
        return "is no regular file";
    }
    const FilePointer file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr) {
        return "can't be read: " + systemReason(errno);
    }
    std::vector<unsigned char> head;
    const std::string error = readBytes(file.get(), 12, head);
    if (!error.empty()) {
        return "can't be read: " + error;
    }
    if (head.empty()) {
        return "is empty";
    }

    const Format format = formatOfBytes(head);
    if (format == Format::Unknown) {
        return "is no picture that orv reads (" + knownFormats() + ")";
    }
    if (format == Format::Bmp || format == Format::Netpbm) {
        return readOwn(file.get(), std::move(head), format, picture);
    }
    if (!haveVips()) {
        return "this build of orv is without libvips and reads " + knownFormats() + " alone";
    }
    return readByVips(path, format, picture);
}

}  // namespace

const FormatEntry* formatOfName(std::string_view path) {
    const std::size_t slash = path.find_last_of('/');
    const std::string_view name =
        slash == std::string_view::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string_view::npos) {
        return nullptr;
    }
    const std::string_view ending = name.substr(dot);
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

std::string writableExtensions() {
    std::string text;
    for (const FormatEntry& entry : kFormats) {
        if (haveVips() || !entry.needsVips) {
            text += text.empty() ? "" : " ";
            text += entry.extensions;
        }
    }
    return text;
}

std::string readPicture(const std::string& path, Picture& picture) {
    std::string error = readKnown(path, picture);
    const double pixels = static_cast<double>(picture.samples.width) * picture.samples.height;
    if (error.empty() && pixels > kMostPixels) {
        error = "has more than the 268 million pixels that orv takes";
    }
    return error.empty() ? error : path + ": " + error;
}

std::string writeRefusal(const std::string& path, const FormatEntry& format,
                         const Picture& picture) {
    const std::string name(format.name);
    if (format.needsVips && !haveVips()) {
        return path + ": this build of orv is without libvips and writes " +
               writableExtensions() + " alone";
    }
    if (picture.alpha && !format.alpha) {
        return path + ": " + name + " can't hold the transparency of this picture; " +
               (haveVips() ? "take PNG, TIFF, WebP or BMP" : "take BMP");
    }
    if (picture.samples.depth == SampleDepth::Float && format.deepest != SampleDepth::Float) {
        return path + ": " + name + " can't hold the float samples of this picture; take TIFF";
    }
    if (picture.colours == 3 && path.size() > 4 &&
        sameWord(std::string_view(path).substr(path.size() - 4), ".pgm")) {
        return path + ": PGM holds grey alone and this picture has colour; take .ppm";
    }
    return {};
}

std::string writePicture(const std::string& path, const FormatEntry& format, Picture& picture,
                         std::string_view extension) {
    if (format.needsVips) {
        return writeByVips(path, format.format, picture);
    }
    const bool asColour = picture.colours == 3 || sameWord(extension, ".ppm");
    const std::vector<unsigned char> bytes =
        format.format == Format::Bmp ? encodeBmp(picture) : encodeNetpbm(picture, asColour);
    FilePointer file(std::fopen(path.c_str(), "wb"));
    if (file == nullptr) {
        return systemReason(errno);
    }
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size() ||
        std::fflush(file.get()) != 0) {
        return systemReason(errno);
    }
    return {};
}

}  // namespace orv::cli
