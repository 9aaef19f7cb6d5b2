#pragma once

#include <memory>

namespace orv {

class RealImage;

/// The plane in the low corner of a larger periodic one that goes on by mirroring.
///
/// Behind its last column the plane is mirrored; so is it in front of its first one, which in a
/// periodic plane is the end. The two meet half way. Rows alike. So no border of the plane
/// stands beside a jump.
///
/// Shapes:  the result is width x height, at least the source's sizes and less than twice them.
std::unique_ptr<RealImage> mirrorExtended(const RealImage& source, int width, int height);

}  // namespace orv
