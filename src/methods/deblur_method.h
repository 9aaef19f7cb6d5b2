#pragma once

#include "methods/method.h"

namespace orv {

/// AOS deblurring: the method of ORVIFAosBarashOp on planes.
///
/// Source:  [RudinOsher1994], [WeickertTerHaarRomenyViergever1998]
extern const Method kDeblurMethod;

}  // namespace orv
