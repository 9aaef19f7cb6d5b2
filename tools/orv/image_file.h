#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "methods/interleaved_planes.h"

namespace orv::cli {

/// A picture as a file holds it.
struct Picture {
    InterleavedSamples samples;
    int colours = 3;     ///< 1 or 3 channels of colour; a further one is alpha
    bool alpha = false;  ///< whether the last channel is alpha, which stays untouched
    std::shared_ptr<void> metadata;     ///< colour profile, EXIF and the like; null when none
    std::vector<std::string> warnings;  ///< what got lost on the way, a line each
};

/// The file formats.
enum class Format { Unknown, Png, Jpeg, Tiff, Webp, Bmp, Netpbm };

/// What a format can hold.
struct FormatEntry {
    Format format;
    std::string_view name;
    std::string_view extensions;  ///< with dots, separated by spaces
    bool alpha;
    SampleDepth deepest;
    bool needsVips;
};

/// The most pixels of a picture; work memory is about 36 bytes a pixel.
inline constexpr double kMostPixels = 268435456.0;

/// The format that the ending of a file name asks for, or null.
const FormatEntry* formatOfName(std::string_view path);

/// ".png .jpg ... " of all formats that this build can write.
std::string writableExtensions();

/// Whether this build reads and writes PNG, JPEG, TIFF and WebP.
bool haveVips();

/// The name and version of the library behind those formats, or an empty text.
std::string vipsVersion();

/// Reads a picture.
///
/// A picture that is stored turned, by its EXIF orientation, comes upright.
///
/// Fails:   with one line that begins with the path: no such file, no known format, damaged,
///          cut short, too large, channels that are no grey or RGB. An empty text means success.
std::string readPicture(const std::string& path, Picture& picture);

/// What forbids writing this picture in a format, as one line; empty when nothing does.
std::string writeRefusal(const std::string& path, const FormatEntry& format,
                         const Picture& picture);

/// Writes a picture to `path`, which may have any ending.
///
/// A colour profile that the picture can't use is left out, with a warning in the picture.
///
/// Fails:   with a reason without the path; an empty text means success.
std::string writePicture(const std::string& path, const FormatEntry& format, Picture& picture,
                         std::string_view extension);

}  // namespace orv::cli
