#pragma once

#include <string>
#include <vector>

namespace orv::cli {

/// A small upright JPEG of a picture file, no side longer than `side` pixels.
///
/// Fails:   false, so without a library.
/// Colours: sRGB by libvips, with the profile of the picture elsewhere.
/// Cost:    by libvips JPEG and WebP are decoded at a fraction of their size.
bool makeThumbnail(const std::string& path, int side, std::vector<unsigned char>& jpeg);

}  // namespace orv::cli
