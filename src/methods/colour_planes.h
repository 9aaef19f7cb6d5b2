#pragma once

#include <memory>

#include "images/real_image3.h"
#include "methods/method.h"

namespace orv {

/// Three planes of doubles from a colour picture or from a grey one, whose plane serves thrice.
///
/// Samples below `floor` count as `floor`; the rest keep their values, those above 255 too.
std::unique_ptr<RealImage3> colourPlanes(Planes planes, float floor);

}  // namespace orv
