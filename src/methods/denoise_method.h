#pragma once

#include "methods/method.h"

namespace orv {

/// Nonlinear diffusion that is held to the source: the method of ORVFastDenoiser on planes.
///
/// Source:  [RudinOsherFatemi1992], [Nordstrom1990]
extern const Method kDenoiseMethod;

}  // namespace orv
