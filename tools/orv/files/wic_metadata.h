#pragma once

#include <string>
#include <string_view>

#include "files/image_file.h"
#include "files/wic_support.h"

namespace orv::cli {

/// What the tool keeps of a file beside its pixels.
struct WicMetadata {
    std::string profile;  ///< the ICC profile
    std::string exif;
    std::string xmp;
    double across = 0.0;  ///< dots an inch; 0 where the file tells none
    double down = 0.0;
};

/// Reads the metadata of a file whose first picture is `frame`.
WicMetadata readWicMetadata(Format format, std::string_view file, IWICBitmapFrameDecode* frame);

/// Fills in what the metadata tell of a picture.
void describeWicMetadata(const WicMetadata& metadata, Format format, std::string_view file,
                         PictureHeader& header);

/// The metadata of a picture, or null.
const WicMetadata* wicMetadataOf(const Picture& picture);

}  // namespace orv::cli
