#pragma once

#include <vips/vips.h>

#include <memory>

#include "image_file.h"

namespace orv::cli {

/// The metadata that are kept, on an image of one pixel, so that the samples can go.
///
/// Fails:   null.
std::shared_ptr<void> metadataOf(VipsImage* image);

/// Copies the metadata that are kept, resolution included, less what is to be left out.
void copyMetadata(VipsImage* from, VipsImage* to, Strip strip);

/// Whether the colour profile, if there is one, describes samples as they will be stored.
bool profileFits(VipsImage* image, bool grey);

/// Fills in what the metadata tell of a picture.
void describeMetadata(VipsImage* image, PictureHeader& header);

}  // namespace orv::cli
