#pragma once

#include "schemes/gradient_norms/slope_gradient_norm.h"

namespace orv {

/// The largest slope to a neighbour, squared: it keeps thin lines and single samples.
///
/// Quirk:   shared-print-names: it prints the text of the smallest slope.
class MaxSlopeGradientNorm final : public SlopeGradientNorm {
  public:
    /// Writes "MinSlope Gradient Norm Approximation".
    void printName(std::FILE* file) const override;

  protected:
    double combine(const Slopes& slopes) const override;
};

}  // namespace orv
