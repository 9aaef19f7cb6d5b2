#pragma once

#include "methods/method.h"

namespace orv {

/// SUSAN smoothing
///
/// Source:   the method of ORVISusanRestoration on planes.:[SmithBrady1997]
extern const Method kSusanMethod;

}  // namespace orv
