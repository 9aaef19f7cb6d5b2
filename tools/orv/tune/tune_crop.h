#pragma once

#include <string>
#include <string_view>

#include "methods/method.h"

namespace orv::cli {

/// A rectangle of a picture.
struct CropPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// What part of a picture is asked for.
struct CropOrder {
    int width = 256;
    int height = 256;
    bool placed = false;   ///< whether x and y are told; else the most detailed part is taken
    bool centred = false;  ///< whether they are those of the middle, not of the corner
    int x = 0;
    int y = 0;
};

/// Reads "WxH" or "WxH+X+Y", the latter of --crop.
///
/// Fails:   with one line that begins with "--crop: "; an empty text means success.
std::string readCrop(std::string_view text, CropOrder& order);

/// Reads "X,Y", the middle of the part, of --at.
///
/// Fails:   with one line that begins with "--at: "; an empty text means success.
std::string readAt(std::string_view text, CropOrder& order);

/// The part of a picture, cut down to it where it is larger. Without a place it is the one with
/// most detail: the largest sum of differences between neighbours.
///
/// Fails:   with one line where the place lies outside; an empty text means success.
std::string placeCrop(const CropOrder& order, const Planes& planes, CropPlace& place);

/// The part with `margin` around it as far as the picture goes.
CropPlace withMargin(const CropPlace& place, int margin, int width, int height);

}  // namespace orv::cli
