#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "files/file_format.h"

namespace orv::cli {

// What the tool reads of an encoded picture by itself, since decoders of the Windows Imaging
// Component differ in what they tell and in what they forgive.

/// Whether a file ends before its pixels do, as far as its frame tells: a PNG has its last chunk, a
/// JPEG the mark of its end, a BMP its last row.
bool isCutShort(Format format, std::string_view file);

/// The body of the first segment of a JPEG that has a marker and begins with a text, without that
/// text; empty when there is none.
std::string_view jpegSegment(std::string_view file, unsigned char marker,
                             std::string_view text);

/// The body of the first chunk of a PNG with a name and a text at its head, without that text.
///
/// Fails:   false when there is none.
bool pngChunk(std::string_view file, std::string_view name, std::string_view text,
              std::string_view& body);

/// Whether the first picture of a TIFF has a tag.
bool tiffHasTag(std::string_view file, unsigned tag);

/// The EXIF block of a JPEG or PNG, or the head of a TIFF, which has its form; empty when there is
/// none.
std::string_view exifOfFile(Format format, std::string_view file);

/// The packet of XMP of a JPEG or PNG, empty when there is none.
std::string_view xmpOfFile(Format format, std::string_view file);

/// The colour profile of a JPEG, put together from its parts; empty when there is none.
///
/// Source:  ICC.1:2022, annex B.4.
std::string profileOfJpeg(std::string_view file);

/// Puts a colour profile and a packet of XMP into an encoded JPEG, and takes the head of JFIF out
/// of it.
///
/// Fails:   false when the packet is beyond the size limit of a segment; it is left out then.
bool finishJpeg(std::string_view profile, std::string_view packet,
                std::vector<unsigned char>& file);

}  // namespace orv::cli
