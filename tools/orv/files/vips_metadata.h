#pragma once

#include <vips/vips.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "files/image_file.h"

namespace orv::cli {

/// The metadata that are kept, on an image of one pixel, so that the samples can go.
///
/// Fails:   null.
std::shared_ptr<void> metadataOf(VipsImage* image);

/// Copies the metadata that are kept, resolution included, less what is to be left out.
///
/// EXIF goes its own way: see exifOf().
void copyMetadata(VipsImage* from, VipsImage* to, Strip strip);

/// The EXIF block among the metadata, empty when there is none.
std::string_view exifOf(VipsImage* image);

/// Takes the packet of XMP out of the metadata, empty when there is none.
std::string takeXmp(VipsImage* image);

/// Enters an EXIF block that libvips didn't read.
void setExif(VipsImage* image, std::string_view block);

/// Whether the colour profile, if there is one, describes samples as they will be stored.
bool profileFits(VipsImage* image, bool grey);

/// Dots an inch across and down; 0 where the file tells none.
std::pair<double, double> resolutionOf(VipsImage* image);

/// What the colour profile calls itself, empty when there is none.
std::string profileNameOf(VipsImage* image);

/// Fills in what the metadata tell of a picture.
void describeMetadata(VipsImage* image, PictureHeader& header);

}  // namespace orv::cli
