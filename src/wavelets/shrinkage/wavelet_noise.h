#pragma once

#include <span>

#include "wavelets/shrinkage/magnitude_selection.h"

namespace orv {

class RealImage;

/// -1 when a is below b, 0 when they are equal, 1 otherwise: the order of magnitudes.
int compareMagnitudes(const double* a, const double* b);

/// Standard deviation of the noise in a coefficient plane, from its finest detail bands.
///
///     count = trunc(0.75 height width)
///     noise = the magnitude at position count / 2, from 1, in ascending order, times 1.47181...
///
/// Where sizes are odd, more than `count` coefficients lie outside the approximation; the last
/// ones, in the order of rows and of columns within a row, are then left out.
///
/// Shapes:  coefficients width x height.
/// Units:   grey levels.
/// Domain:  a plane with fewer than two details has the noise 0.
/// Fails:   ends the process with status 1 when its working array can't be had.
/// Cost:    two passes over the plane by selection; no sort.
/// Quirk:   noise-factor
/// Source:  [DonohoJohnstone1994]
double estimateNoise2D(const RealImage& coefficients, int height, int width);

/// estimateNoise2D of a plane of even sizes from its finest details alone.
///
/// Shapes:  at most 0.75 height width coefficients in all; those that miss are zeros.
double noiseOfDetails(std::span<const Coefficients> details, int height, int width);

}  // namespace orv
