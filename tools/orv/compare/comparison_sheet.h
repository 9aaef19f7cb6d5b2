#pragma once

#include "compare/comparison.h"
#include "files/image_file.h"

namespace orv::cli {

/// The longest side that a picture has in a sheet; a longer one is reduced by a whole number.
inline constexpr int kSheetSide = 1600;

/// By how much a difference picture is brightened: the power of two up to 32 that leaves 99 %
/// of the samples below white.
int differenceGain(const PictureComparison& figures);

/// Before, after and difference side by side, with labels above and the figures below.
///
/// Where the pictures had to be reduced, a second row shows the part that differs most at its
/// full size.
Picture comparisonSheet(const Comparison& comparison);

}  // namespace orv::cli
