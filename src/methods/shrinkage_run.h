#pragma once

#include <memory>
#include <string_view>

#include "images/float_image.h"

namespace orv {

/// How a plane's wavelet coefficients are shrunk.
struct Shrinkage {
    int rule = 0;          ///< kSureShrink and so on
    int levels = -1;       ///< below 0 as many as fit
    int wavelet = 3;       ///< number of the filters, here 9/7
    bool mirrored = true;  ///< extended by mirroring, else by zeros
    double noise = -1.0;   ///< grey levels; below 0 measured in each plane, 0 changes nothing
    int shifts = 1;        ///< how many results on shifted planes are averaged
};

inline constexpr std::string_view kNoiseHelp =
    "deviation of the noise; -1 measures it in each plane";
inline constexpr std::string_view kShiftsHelp = "results on shifted pictures that are averaged";
inline constexpr int kMostShifts = 16;

/// Whether the plane is large enough for one level.
bool shrinkageFits(const Shrinkage& shrinkage, int width, int height);

/// The mean of the shrunk plane over shifts of the plane against the wavelets.
///
/// Each shift puts up to 7 mirrored samples in front of the plane, which moves it against the
/// positions that the coefficients stand for, and takes them off again.
///
/// Fails:   a copy of the plane where it is too small for the wavelet; an unfinished mean when
///          the work is cancelled.
/// Source:  [CoifmanDonoho1995]
std::unique_ptr<FloatImage> shrunkPlane(const FloatImage& plane, const Shrinkage& shrinkage);

}  // namespace orv
