#pragma once

#include "methods/method.h"

namespace orv {

/// Homomorphic filter: the method of ORVIHomomorphicOp on planes, with a floor under the samples
/// and a scale over the result.
///
/// Source:  [OppenheimSchaferStockham1968]
extern const Method kHomomorphicMethod;

}  // namespace orv
