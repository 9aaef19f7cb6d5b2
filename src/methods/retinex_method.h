#pragma once

#include "methods/method.h"

namespace orv {

/// Variational Retinex: the method of ORVRetinex on planes.
///
/// Source:  [KimmelEladShakedKeshetSobel2003]
extern const Method kRetinexMethod;

}  // namespace orv
