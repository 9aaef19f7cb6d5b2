#pragma once

#include "methods/method.h"

namespace orv {

/// Sharpening by shock filters
///
/// Source:   the method of ORVIShockOp on planes.:[OsherRudin1990], [AlvarezMazorra1994], [GilboaSochenZeevi2002]
extern const Method kShockMethod;

}  // namespace orv
