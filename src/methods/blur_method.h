#pragma once

#include "methods/method.h"

namespace orv {

/// The recursive Gaussian blur, computed in doubles.
extern const Method kBlurMethod;

}  // namespace orv
