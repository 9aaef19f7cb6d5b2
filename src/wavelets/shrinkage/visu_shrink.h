#pragma once

namespace orv {

class CoefficientBands;
class RealImage;

/// Shrinks every detail band by the universal threshold of the plane.
///
///     threshold = sqrt(2 log(height width)) noise
///
/// Shapes:  coefficients width x height, changed in place; they are not normalised.
/// Source:  [DonohoJohnstone1994]
void VisuShrink2D(RealImage& coefficients, int height, int width, int levels, bool verbose);

/// VisuShrink2D on bands wherever they stand.
void visuShrink(CoefficientBands& bands, bool verbose);

}  // namespace orv
