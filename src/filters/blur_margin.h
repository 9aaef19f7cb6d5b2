#pragma once

#include <memory>

#include "images/float_image.h"
#include "images/real_image.h"

namespace orv {

/// How wide a margin keeps what a recursive blur makes of the start of its lines out of a plane:
/// what lies 6 sigma outside moves a sample by less than a fifth of a grey level.
///
/// Units:   pixels.
int blurMargin(double sigma);

/// The plane with a mirrored margin on all sides.
///
/// The three samples that a line starts from are equal: a recursion that starts from noise
/// carries its slope far into the plane.
///
/// Shapes:  plane w x h of any size above 0; the result w + 2 margin by h + 2 margin.
/// Domain:  margin at least 3.
std::unique_ptr<RealImage> withMirroredMargin(const FloatImage& plane, int margin);

}  // namespace orv
