#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "methods/interleaved_planes.h"

namespace orv::cli {

/// The file formats.
enum class Format { Unknown, Png, Jpeg, Tiff, Webp, Bmp, Netpbm };

/// What a format can hold.
struct FormatEntry {
    Format format;
    std::string_view name;
    std::string_view extensions;  ///< with dots, separated by spaces; the usual one first
    bool alpha;
    bool profile;  ///< whether it holds a colour profile
    SampleDepth deepest;
    bool needsLibrary;  ///< whether the tool has no codec of its own
};

/// The entry of a format, or null for the unknown one.
const FormatEntry* formatEntry(Format format);

/// The format that the ending of a file name asks for, or null.
const FormatEntry* formatOfName(std::string_view path);

/// The format that a word such as "jpg" asks for, in any case and with or without a dot, or null.
const FormatEntry* formatOfWord(std::string_view word);

/// The ending of a file name with its dot, or an empty text: ".jpg" of "a.b/c.jpg", "" of ".jpg".
std::string endingOfName(std::string_view path);

/// The format that the first bytes of a file tell, whatever its name says.
Format formatOfBytes(const std::vector<unsigned char>& head);

/// The name of a format that orv knows by its first bytes and doesn't read, or an empty text.
std::string foreignFormat(const std::vector<unsigned char>& head);

/// ".png .jpg ... " of all formats that this build can write.
std::string writableExtensions();

/// "PNG, JPEG, ...": what this build can read.
std::string readableFormats();

/// The bytes that formatOfBytes() and foreignFormat() look at.
inline constexpr std::size_t kHeadBytes = 16;

}  // namespace orv::cli
