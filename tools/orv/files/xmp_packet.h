#pragma once

#include <string>
#include <string_view>

namespace orv::cli {

/// A text with its letters of ASCII made small.
std::string lowerCase(std::string_view text);

/// Whether a packet of XMP, IPTC or text tells a place, or holds EXIF that may.
bool tellsPlace(std::string_view bytes);

/// XMP with its orientation, if it tells one, set to upright; all else stays in its place.
std::string uprightXmp(std::string_view packet);

}  // namespace orv::cli
