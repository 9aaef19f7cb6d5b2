#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "image_file.h"

namespace orv::cli {

/// The EXIF block of a PNG, which libvips doesn't read; empty when there is none.
///
/// Source:  PNG specification, third edition, section 11.3.4.5, chunk eXIf.
std::string exifOfPng(const PictureSource& source);

/// Puts an EXIF block into an encoded JPEG, PNG or WebP in place of the one that is there; an
/// empty block takes that out.
///
/// Fails:   false when the format, or a JPEG of its size limit, can't hold it; it is then without.
bool putExif(Format format, std::string_view block, const Picture& picture,
             std::vector<unsigned char>& file);

}  // namespace orv::cli
