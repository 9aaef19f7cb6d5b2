#pragma once

#include "methods/method.h"

namespace orv {

/// Wavelet shrinkage: the method of ORVWaveletDenoising on planes.
///
/// Source:  [DonohoJohnstone1994], [DonohoJohnstone1995], [OgdenParzen1996]
extern const Method kWaveletMethod;

}  // namespace orv
