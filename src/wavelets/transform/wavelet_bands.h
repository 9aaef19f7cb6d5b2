#pragma once

#include <memory>

namespace orv {

class RealImage;

/// Where a detail band of `level` lies in a coefficient plane; ends are exclusive.
///
///     detail 0   x from w to 2w, y from 0 to h     high along x, low along y
///     detail 1   x from 0 to w,  y from h to 2h    low along x, high along y
///     detail 2   x from w to 2w, y from h to 2h    high along both
///
/// with w = width / 2^level and h = height / 2^level.
///
/// Domain:  level at least 0.
/// Fails:   another detail writes a line to standard error and leaves all results unwritten.
void BoundingBox(int height, int width, int level, int detail, int* xStart, int* xEnd,
                 int* yStart, int* yEnd);

/// A copy of a detail band: a plane as wide as the band's x range and as high as its y range.
///
/// Fails:   another detail than 0, 1 or 2 gives a plane without samples.
std::unique_ptr<RealImage> ExtractBand(const RealImage& coefficients, int height, int width,
                                       int level, int detail);

}  // namespace orv
