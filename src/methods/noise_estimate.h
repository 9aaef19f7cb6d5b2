#pragma once

#include <vector>

#include "methods/method.h"

namespace orv {

/// Standard deviation of the white noise in a plane, from its finest diagonal details.
///
///     d      = h along x of h along y of the plane,   h = (1, -3, 3, -1) / sqrt(20)
///     result = median |d| / 0.6745
///
/// at all places that h fits on, not at every second one alone. h has unit norm, so white noise
/// keeps its deviation, and 0.6745 is the median of the magnitude of a standard normal value.
/// Flat areas, ramps and parabolas in x or in y give 0; edges are few and hardly move a median.
/// The third difference lets less texture through than orthonormal filters of 4 or 6 taps, and
/// keeps more of what a JPEG leaves than longer differences.
///
/// Places where h meets black or white are left out, as clipping takes the noise off, unless
/// more than three quarters would be: a plane that is mostly paper or ink has no noise there.
///
/// Shapes:  any size; lines of fewer than 4 samples take (1, -1) / sqrt(2), and planes of one
///          line the filter along that line alone. 1 x 1 has the noise 0.
/// Units:   grey levels, 0 to 255 whatever the depth.
/// Domain:  noise of one strength, not correlated between pixels: an enlarged picture or a
///          strong JPEG shows less than it has, and fine regular texture counts as noise.
/// Cost:    one pass and a selection over at most some 4 million details.
/// Source:  [DonohoJohnstone1994]
double noiseDeviation(const FloatImage& plane);

/// The noise of a picture, in grey levels.
struct NoiseEstimate {
    std::vector<double> channels;  ///< of each channel as it is
    double brightness = 0.0;       ///< of the brightness plane of `--colours opponent`
    double chroma = 0.0;           ///< of its two colour planes, quadratic mean

    /// The quadratic mean over the channels.
    double overall() const;
};

/// Measures each channel, and brightness and colour for a picture of three.
///
/// Shapes:  1 or 3 planes of one size; of one, brightness is that plane.
/// Cost:    for three planes a copy of them.
NoiseEstimate estimateNoise(const Planes& planes);

}  // namespace orv
