#pragma once

#include <string>

#include "image_file.h"

namespace orv::cli {

/// Starts libvips: cache off, loaders off that aren't safe on foreign files. Called when first
/// needed.
///
/// Fails:   false when it can't start.
bool startVips();

/// readPicture for PNG, JPEG, TIFF and WebP.
std::string readByVips(const std::string& path, Format format, Picture& picture);

/// writePicture for PNG, JPEG, TIFF and WebP.
std::string writeByVips(const std::string& path, Format format, Picture& picture);

}  // namespace orv::cli
