#pragma once

#include "operators/shock/shock_term.h"

namespace orv {

/// The shock filter itself.
///
///     value = -sign(eta) g
///
/// Source:  [OsherRudin1990]
class SignShockTerm : public ShockTerm {
  public:
    double valueMasked(const DiscreteImage& mask, const RealImage& plane, int x,
                       int y) const override;
    double value(const RealImage& plane, int x, int y) const override;
    ShockFormula formula() const override;
};

}  // namespace orv
