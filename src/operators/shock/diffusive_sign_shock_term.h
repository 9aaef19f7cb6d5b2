#pragma once

#include "operators/shock/shock_term.h"

namespace orv {

/// The shock filter with a diffusion along the level lines, which keeps noise from growing.
///
///     value = sign(g) diffusionWeight xi - sign(eta) g
///
/// Source:  [AlvarezMazorra1994]
class DiffusiveSignShockTerm : public ShockTerm {
  public:
    explicit DiffusiveSignShockTerm(double diffusionWeight);

    double valueMasked(const DiscreteImage& mask, const RealImage& plane, int x,
                       int y) const override;
    double value(const RealImage& plane, int x, int y) const override;
    ShockFormula formula() const override;

  private:
    double diffusionWeight_;
};

}  // namespace orv
