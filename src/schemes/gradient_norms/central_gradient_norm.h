#pragma once

#include "schemes/gradient_norms/gradient_norm.h"

namespace orv {

/// Squared gradient norm by central differences.
///
///     ((u(x+1,y) - u(x-1,y)) / 2)^2 + ((u(x,y+1) - u(x,y-1)) / 2)^2
///
/// Across an edge, and in both directions of a corner, the one-sided difference stands without
/// the factor. A single bright sample has the norm 0 itself, so it may diffuse away.
class CentralGradientNorm final : public GradientNorm {
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
    /// Writes "Central Gradient Norm".
    void printName(std::FILE* file) const override;
};

}  // namespace orv
