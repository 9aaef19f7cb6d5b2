#pragma once

#include "images/float_image.h"
#include "operators/susan/susan_mask.h"

namespace orv {

/// One SUSAN pass over a plane, without the truncation of pictures.
///
/// Computed in double precision as for bytes, and rounded to float toward zero: so a plane of
/// whole grey levels, truncated afterwards, is what the pass over bytes gives.
///
/// Shapes:  from and to of one size and not one plane.
/// Units:   grey levels.
/// Fails:   never; ends early when the work is cancelled.
/// Cost:    one pass, 35 exponentials a sample.
void susanPlanePass(const SusanMask& mask, double inverse, const FloatImage& from,
                    FloatImage& to);

}  // namespace orv
