#pragma once

#include <string>
#include <string_view>

namespace orv::cli {

/// What an EXIF block tells of a picture.
struct ExifFacts {
    int orientation = 1;  ///< 1 to 8; 1 is upright
    bool gps = false;     ///< whether it tells a place
    std::string maker;
    std::string model;
    std::string taken;  ///< date and time of the original, as EXIF writes them
};

/// Reads an EXIF block, with or without the mark "Exif\0\0" before it.
///
/// Fails:   never; what is damaged tells nothing.
/// Source:  CIPA DC-008-2019 (EXIF 2.32), sections 4.5 and 4.6.
ExifFacts exifFacts(std::string_view block);

/// The block as it goes with an upright result of a size: orientation 1, that size, and no
/// preview, which would show the picture as it was. All else stays byte for byte and in its place,
/// as notes of camera makers ask for.
///
/// With `withoutGps` the place is overwritten and its directory taken out. A maker's own notes
/// stay; they may tell a place in a form of their own.
///
/// Fails:   an empty text when the block is damaged. The result has no mark before it.
std::string exifForResult(std::string_view block, int width, int height, bool withoutGps);

}  // namespace orv::cli
