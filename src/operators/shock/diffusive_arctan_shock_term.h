#pragma once

#include "operators/shock/shock_term.h"

namespace orv {

/// The soft shock filter with a diffusion along the level lines.
///
///     value = diffusionWeight xi - 2 / pi atan(iteration arctanScale eta) g
///
/// The iteration is 1.0 until a filter tells it, which the masked form of a filter never does.
///
/// Source:  [AlvarezMazorra1994], [GilboaSochenZeevi2002]
class DiffusiveArctanShockTerm : public ShockTerm {
  public:
    DiffusiveArctanShockTerm(double diffusionWeight, double arctanScale);

    /// Stores the step, by which the argument of the arc tangent grows.
    void setIteration(int i) override;
    /// The step, by which the argument of the arc tangent is multiplied; 1.0 at the start.
    double iteration() const override;
    double valueMasked(const DiscreteImage& mask, const RealImage& plane, int x,
                       int y) const override;
    double value(const RealImage& plane, int x, int y) const override;
    ShockFormula formula() const override;

  private:
    double diffusionWeight_;
    double oneOverPi_;
    double arctanScale_;
    double iteration_;
};

}  // namespace orv
