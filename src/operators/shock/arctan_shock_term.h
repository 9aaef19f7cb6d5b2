#pragma once

#include "operators/shock/shock_term.h"

namespace orv {

/// The shock filter with a soft sign, which hardens from step to step.
///
///     value = -2 / pi atan(iteration arctanScale eta) g
///
/// Weak edges and noise, where eta is small, move slower than strong ones.
///
/// Source:  [GilboaSochenZeevi2002]
class ArctanShockTerm : public ShockTerm {
  public:
    explicit ArctanShockTerm(double arctanScale);

    /// Stores the step, by which the argument of the arc tangent grows.
    void setIteration(int i) override;
    /// The step, by which the argument of the arc tangent is multiplied; 1.0 at the start.
    double iteration() const override;
    double valueMasked(const DiscreteImage& mask, const RealImage& plane, int x,
                       int y) const override;
    double value(const RealImage& plane, int x, int y) const override;
    ShockFormula formula() const override;

  private:
    double oneOverPi_;
    double arctanScale_;
    double iteration_;
};

}  // namespace orv
