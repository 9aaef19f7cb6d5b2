#pragma once

#include "schemes/gradient_norms/gradient_norm.h"

namespace orv {

/// Squared gradient norm by the minmod limiter of the two one-sided differences.
///
///     minmod(a, b) = (sign(a) + sign(b)) min(|a|, |b|) / 2,   sign(0) = 0
///
/// Across an edge, and in corners, the one-sided difference that exists is used. A local
/// extremum has the norm 0, so oscillations are smoothed away.
class MinmodGradientNorm final : public GradientNorm {
  public:
    double interiorNorm(int x, int y) const override;
    double edgeY0Norm(int x) const override;
    double edgeXLastNorm(int y) const override;
    double edgeYLastNorm(int x) const override;
    double edgeX0Norm(int y) const override;
    double cornerX0Y0Norm() const override;
    double cornerXLastY0Norm() const override;
    double cornerXLastYLastNorm() const override;
    double cornerX0YLastNorm() const override;
    /// Writes "Minmod Gradient Norm".
    void printName(std::FILE* file) const override;

  private:
    double minmodX(int x, int y) const;
    double minmodY(int x, int y) const;
};

}  // namespace orv
