#pragma once

#include "methods/method.h"

namespace orv {

/// Colouring: a grey picture takes the colours that a colour picture has at like places.
extern constinit const Method kColorizeMethod;

}  // namespace orv
