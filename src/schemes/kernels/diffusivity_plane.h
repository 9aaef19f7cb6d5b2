#pragma once

#include "images/float_image.h"
#include "schemes/flows/diffusivity.h"

namespace orv {

/// The diffusivity of a whole plane by the kernels, with the bits of the sample by sample loop
/// over GradientNorm::interiorNorm.
///
/// Shapes:  `target` has the size of `plane` and does not alias it; its one-sample border
///          becomes 0.
/// Domain:  `flavour` from 0 to 5.
/// Cost:    one pass; one or two divisions a sample in double, three with an exponential.
void fillDiffusivity(const FloatImage& plane, int flavour, FlowKind kind, float contrastSquared,
                     FloatImage& target);

}  // namespace orv
