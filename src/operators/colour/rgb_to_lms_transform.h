#pragma once

#include "operators/colour/color_space_matrix_transform.h"

namespace orv {

/// From red, green and blue to the responses L, M and S of the eye's three kinds of cones.
///
///          |  0.3811   0.5783   0.0402 |             |  4.4679  -3.5873   0.1193 |
///     LMS =|  0.1967   0.7244   0.0782 | RGB    RGB =| -1.2186   2.3809  -0.1624 | LMS
///          |  0.0241   0.1288   0.8444 |             |  0.0497  -0.2439   1.2045 |
///
/// Quirk:   inexact-cone-matrices
/// Source:  [ReinhardAshikhminGoochShirley2001], equations 4 and 9.
class RgbToLmsTransform final : public ColorSpaceMatrixTransform {
  public:
    RgbToLmsTransform();
};

}  // namespace orv
