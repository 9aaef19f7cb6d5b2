#pragma once

#include "schemes/gradient_norms/slope_gradient_norm.h"

namespace orv {

/// The smallest slope squared plus a second one squared that depends on the order of the
/// visit.
///
/// Quirk:   biased-slope: a new minimum hands its former value to the second slope, which is
///          therefore no maximum when the minimum falls late.
class MinBiasedSlopeGradientNorm final : public SlopeGradientNorm {
  public:
    /// Writes "MinBiasedSlope Gradient Norm Approximation".
    void printName(std::FILE* file) const override;

  protected:
    double combine(const Slopes& slopes) const override;
};

}  // namespace orv
