#pragma once

#include "methods/method.h"

namespace orv {

/// Nonlinear diffusion: the method of ORVFastRestoration on planes.
///
/// Source:  [PeronaMalik1990], [WeickertTerHaarRomenyViergever1998]
extern const Method kRestoreMethod;

}  // namespace orv
