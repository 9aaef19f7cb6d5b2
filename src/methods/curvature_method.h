#pragma once

#include "methods/method.h"

namespace orv {

/// Curvature flows: the colour restoration of RgbDiscreteImage on planes.
///
/// Source:  [SochenKimmelMalladi1998], [ElFallahFord1994], [CasellesKimmelSapiro1997]
extern const Method kCurvatureMethod;

}  // namespace orv
