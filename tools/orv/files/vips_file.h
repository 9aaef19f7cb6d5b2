#pragma once

#include <string>
#include <vector>

#include "files/image_file.h"

namespace orv::cli {

/// readHeader() for PNG, JPEG, TIFF and WebP; the format and the size of the file are known.
///
/// Fails:   with a reason without a name, as do all of these; an empty text means success.
std::string readHeaderByVips(const PictureSource& source, PictureHeader& header);

/// readPicture() for PNG, JPEG, TIFF and WebP.
std::string readByVips(const PictureSource& source, Format format, Picture& picture);

/// encodePicture() for PNG, JPEG, TIFF and WebP.
std::string encodeByVips(const WriteSettings& settings, Picture& picture,
                         std::vector<unsigned char>& bytes);

/// What the colour profile of a picture calls itself, empty when there is none.
std::string profileOf(const Picture& picture);

/// scaleDown() of a picture that is larger than that.
std::string scaleByVips(Picture& picture, int maxSide);

}  // namespace orv::cli
