#pragma once

#include "methods/method.h"

namespace orv {

/// Colour transfer: a picture takes over the mean and the deviation of the colours of another.
extern constinit const Method kRecolorMethod;

}  // namespace orv
