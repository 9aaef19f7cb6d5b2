#pragma once

#include "schemes/gradient_norms/slope_gradient_norm.h"

namespace orv {

/// The smallest slope to a neighbour, squared: an edge counts only where no neighbour is alike.
class MinSlopeGradientNorm final : public SlopeGradientNorm {
  public:
    /// Writes "MinSlope Gradient Norm Approximation".
    void printName(std::FILE* file) const override;

  protected:
    double combine(const Slopes& slopes) const override;
};

}  // namespace orv
