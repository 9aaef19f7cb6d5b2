#pragma once

#include "filters/kernels/recursive_blur_kernels.h"
#include "images/float_image.h"
#include "images/real_image.h"

namespace orv {

/// The recursive blur of a whole plane, first along x, then along y.
///
/// The forward recursion along x walks over columns. The backward one goes block by
/// block: the columns of a block are blurred along y as soon as they are finished, while they
/// are still in the cache.
///
/// Shapes:  source and target w x h, both at least 3; they may be one plane.
/// Fails:   never; ends early when the work is cancelled.
/// Cost:    the plane is read and written twice; a strip of at most 64 columns and 6 columns.
void blurPlane(const RecursionCoefficients<float>& coefficients, const FloatImage& source,
               FloatImage& target);
/// The same for a plane of doubles.
void blurPlane(const RecursionCoefficients<double>& coefficients, const RealImage& source,
               RealImage& target);

}  // namespace orv
