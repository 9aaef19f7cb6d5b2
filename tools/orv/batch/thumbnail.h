#pragma once

#include <string>
#include <vector>

namespace orv::cli {

/// A small upright JPEG of a picture file, in sRGB, no side longer than `side` pixels.
///
/// Fails:   false, so without libvips.
/// Cost:    JPEG and WebP are decoded at a fraction of their size.
bool makeThumbnail(const std::string& path, int side, std::vector<unsigned char>& jpeg);

}  // namespace orv::cli
