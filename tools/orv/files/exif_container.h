#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// The EXIF block of a PNG, which libvips doesn't read; empty when there is none.
///
/// Source:  W3C: Portable Network Graphics, third edition, 11.3.4.5, chunk eXIf.
std::string exifOfPng(const PictureSource& source);

/// Puts an EXIF block into an encoded JPEG, PNG or WebP in place of the one that is there; an
/// empty block takes that out.
///
/// Fails:   false when the format, or a JPEG of its size limit, can't hold it; it is then without.
bool putExif(Format format, std::string_view block, const Picture& picture,
             std::vector<unsigned char>& file);

/// Puts a packet of XMP into an encoded PNG, as text that isn't compressed.
///
/// Source:  ISO 16684-1 and Adobe: XMP storage in files, 1.1.5, PNG.
void putXmpIntoPng(std::string_view packet, std::vector<unsigned char>& file);

/// Puts a colour profile into an encoded PNG without one. It is stored as it is, for a stream that
/// isn't compressed needs no library.
///
/// Source:  W3C: Portable Network Graphics, third edition, 11.3.2.3, chunk iCCP; RFC 1950 and 1951.
void putProfileIntoPng(std::string_view profile, std::vector<unsigned char>& file);

/// Makes an encoded JPEG or PNG tell a resolution: a JPEG gets the head of JFIF, a PNG loses the
/// chunk that libvips writes where nobody told any. Call it before putExif().
///
/// Units:   dots an inch; 0 for none.
void putResolution(Format format, double across, double down, std::vector<unsigned char>& file);

}  // namespace orv::cli
