#pragma once

#include "wavelets/shrinkage/coefficient_bands.h"

namespace orv {

class RealImage;

/// Soft thresholding of a detail band, in place.
///
///     v = 0 unless |v| > threshold;  v - threshold for v > 0, v + threshold for v < 0
///
/// Verbose prints the level, the detail, the threshold and how many coefficients became 0.
void ShrinkBand(RealImage& coefficients, int height, int width, int level, int detail,
                double threshold, bool verbose);

/// Soft thresholding of the coefficients in view; `noise` other than 0 divides them before and
/// multiplies them after. Gives how many became 0, those outside the view included.
long long shrinkView(const CoefficientView& view, double noise, double threshold);

/// The verbose line of ShrinkBand.
void printShrinkage(int level, int detail, double threshold, long long tossed);

/// Divides and multiplies the coefficients that no detail band holds by a noise other than 0.
void roundRest(CoefficientBands& bands, double noise);

}  // namespace orv
