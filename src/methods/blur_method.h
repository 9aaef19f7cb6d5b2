#pragma once

#include "methods/method.h"

namespace orv {

/// The recursive Gaussian blur: of the mirrored picture in doubles, or as ORVIFVanVieltBlurringIirOp
/// computes it.
extern const Method kBlurMethod;

}  // namespace orv
