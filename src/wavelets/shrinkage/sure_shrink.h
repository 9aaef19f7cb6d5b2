#pragma once

namespace orv {

class CoefficientBands;
class RealImage;

/// Shrinks every detail band by the threshold of least SURE risk, finest level first.
///
/// Coefficients are divided by the noise before and multiplied by it after, the approximation
/// included, unless the noise is 0; each of the two operations rounds.
///
/// Shapes:  coefficients width x height, changed in place.
/// Cost:    three readings and one writing of the plane.
/// Source:  [DonohoJohnstone1995]
void SureShrink2D(RealImage& coefficients, int height, int width, int levels, bool verbose);

/// SureShrink2D on bands wherever they stand.
void sureShrink(CoefficientBands& bands, bool verbose);

}  // namespace orv
