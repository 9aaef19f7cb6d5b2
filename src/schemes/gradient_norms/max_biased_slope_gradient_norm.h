#pragma once

#include "schemes/gradient_norms/slope_gradient_norm.h"

namespace orv {

/// The largest slope squared plus a second one squared that depends on the order of the visit.
///
/// Quirk:   biased-slope: a new maximum hands its former value to the second slope, which is
///          therefore no minimum when the maximum rises late.
class MaxBiasedSlopeGradientNorm final : public SlopeGradientNorm {
  public:
    /// Writes "MaxBiasedSlope Gradient Norm Approximation".
    void printName(std::FILE* file) const override;

  protected:
    double combine(const Slopes& slopes) const override;
};

}  // namespace orv
