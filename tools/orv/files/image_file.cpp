#include "files/image_file.h"

#include <utility>

#include "files/bmp_codec.h"
#include "files/library_codec.h"
#include "files/netpbm_codec.h"
#include "files/output_file.h"
#include "methods/suggestion.h"

namespace orv::cli {

namespace {

/// Enough for the headers of BMP and, with comments, of PPM and PGM.
constexpr std::size_t kOwnHeaderBytes = 65536;

/// Whether the tool's own codec takes a format in this build.
bool isOwn(Format format) {
    return !formatEntry(format)->needsLibrary && !libraryCodes(format);
}

/// "PNG, TIFF, WebP or BMP": what holds transparency.
std::string alphaFormats() {
    std::string text;
    for (const Format format : {Format::Png, Format::Tiff, Format::Webp}) {
        const FormatEntry& entry = *formatEntry(format);
        text += isCoded(entry) ? (text.empty() ? "" : ", ") + std::string(entry.name) : "";
    }
    return text.empty() ? "BMP" : text + " or BMP";
}

std::string formatOfSource(const PictureSource& source, Format& format) {
    std::vector<unsigned char> head;
    std::string error = readHead(source, kHeadBytes, head);
    if (!error.empty()) {
        return error;
    }
    if (head.empty()) {
        return "is empty";
    }
    format = formatOfBytes(head);
    if (format == Format::Unknown) {
        const std::string foreign = foreignFormat(head);
        return foreign.empty()
                   ? "is no picture that orv reads (" + readableFormats() + ")"
                   : "is " + foreign + "; orv reads " + readableFormats() + " alone";
    }
    if (!isCoded(*formatEntry(format))) {
        return "this build of orv " + codingLimit() + " and reads " + readableFormats() +
               " alone";
    }
    return {};
}

/// Header or picture of a format that needs no library, from its first bytes or from all.
std::string readOwn(const PictureSource& source, Format format, PictureHeader& header) {
    std::vector<unsigned char> head;
    std::string error = readHead(source, kOwnHeaderBytes, head);
    if (error.empty()) {
        error = format == Format::Bmp ? bmpHeader(head, header.fileBytes, header)
                                      : netpbmHeader(head, header.fileBytes, header);
    }
    header.channels = header.colours + (header.alpha ? 1 : 0);
    return error;
}

std::string decodeOwn(const PictureSource& source, Format format, Picture& picture) {
    std::vector<unsigned char> bytes;
    std::string error;
    if (!source.inMemory) {
        error = readAll(source, bytes);
    }
    if (!error.empty()) {
        return error;
    }
    const std::vector<unsigned char>& file = source.inMemory ? source.bytes : bytes;
    return format == Format::Bmp ? decodeBmp(file, picture) : decodeNetpbm(file, picture);
}

std::string headerOf(const PictureSource& source, PictureHeader& header) {
    header = {};
    std::string error = formatOfSource(source, header.format);
    if (!error.empty()) {
        return error;
    }
    header.fileBytes = sourceSize(source);
    error = isOwn(header.format) ? readOwn(source, header.format, header)
                                 : readHeaderByLibrary(source, header);
    if (error.empty() && header.refusal.empty() &&
        static_cast<double>(header.width) * header.height > kMostPixels) {
        header.refusal = std::to_string(header.width) + " x " + std::to_string(header.height) +
                         " pixels are more than the 268 million that orv takes";
    }
    return error;
}

std::string named(const std::string& name, const std::string& error) {
    return error.empty() ? error : name + ": " + error;
}

}  // namespace

bool isCoded(const FormatEntry& format) {
    return !format.needsLibrary || libraryCodes(format.format);
}

bool stripOfWord(std::string_view word, Strip& strip) {
    for (const auto& [name, value] :
         {std::pair{"none", Strip::None}, std::pair{"gps", Strip::Gps},
          std::pair{"exif", Strip::Exif}, std::pair{"all", Strip::All}}) {
        if (sameWord(word, name)) {
            strip = value;
            return true;
        }
    }
    return false;
}

std::string pictureKind(const Picture& picture) {
    const InterleavedSamples& samples = picture.samples;
    const std::string depth = samples.depth == SampleDepth::Float
                                  ? "float "
                                  : std::to_string(8 * bytesOf(samples.depth)) + "-bit ";
    return std::to_string(samples.width) + " x " + std::to_string(samples.height) +
           " pixels, " + depth + (picture.colours == 1 ? "grey" : "colour") +
           (picture.alpha ? " with alpha" : "");
}

std::string readHeader(const PictureSource& source, PictureHeader& header) {
    return named(source.name, headerOf(source, header));
}

std::string openPicture(const std::string& word, PictureSource& source, PictureHeader& header) {
    std::string error = openSource(word, source);
    if (error.empty()) {
        error = readHeader(source, header);
    }
    return error.empty() ? named(source.name, header.refusal) : error;
}

std::string readPicture(const PictureSource& source, Picture& picture) {
    PictureHeader header;
    std::string error = headerOf(source, header);
    if (error.empty()) {
        error = header.refusal;
    }
    if (error.empty()) {
        error = isOwn(header.format) ? decodeOwn(source, header.format, picture)
                                     : readByLibrary(source, header.format, picture);
    }
    return named(source.name, error);
}

std::string readPicture(const std::string& path, Picture& picture) {
    PictureSource source;
    std::string error = openSource(path, source);
    return error.empty() ? readPicture(source, picture) : error;
}

std::string writeRefusal(const std::string& name, const WriteSettings& settings,
                         const Picture& picture) {
    const FormatEntry& format = *settings.format;
    const std::string kind(format.name);
    if (!isCoded(format)) {
        return name + ": this build of orv " + codingLimit() + " and writes " +
               writableExtensions() + " alone";
    }
    if (picture.alpha && !format.alpha) {
        return name + ": " + kind + " can't hold the transparency of this picture; take " +
               alphaFormats() + ", or --alpha drop";
    }
    if (picture.samples.depth == SampleDepth::Float && format.deepest != SampleDepth::Float) {
        return name + ": " + kind + " can't hold the float samples of this picture; take TIFF";
    }
    if (picture.colours == 3 && sameWord(settings.ending, ".pgm")) {
        return name + ": PGM holds grey alone and this picture has colour; take .ppm";
    }
    return {};
}

std::string encodePicture(const WriteSettings& settings, Picture& picture,
                          std::vector<unsigned char>& bytes) {
    const std::string profile = settings.format->profile ? "" : profileOf(picture);
    if (!profile.empty() && profile.find("sRGB") == std::string::npos) {
        picture.warnings.push_back(std::string(settings.format->name) +
                                   " holds no colour profile; that of the picture (" + profile +
                                   ") is left out");
    }
    if (!isOwn(settings.format->format)) {
        return encodeByLibrary(settings, picture, bytes);
    }
    const bool asColour = picture.colours == 3 || sameWord(settings.ending, ".ppm");
    bytes = settings.format->format == Format::Bmp ? encodeBmp(picture)
                                                   : encodeNetpbm(picture, asColour);
    return {};
}

std::string writePicture(const std::string& path, const WriteSettings& settings,
                         Picture& picture) {
    std::vector<unsigned char> bytes;
    const std::string error = encodePicture(settings, picture, bytes);
    return error.empty() ? writeBytes(path, bytes) : error;
}

std::string scaleDown(Picture& picture, int maxSide) {
    if (picture.samples.width <= maxSide && picture.samples.height <= maxSide) {
        return {};
    }
    return haveLibrary()
               ? scaleByLibrary(picture, maxSide)
               : "this build of orv " + codingLimit() + " and can't scale pictures down";
}

}  // namespace orv::cli
