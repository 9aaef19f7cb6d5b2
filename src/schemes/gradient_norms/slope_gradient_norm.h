#pragma once

#include "schemes/gradient_norms/gradient_norm.h"

namespace orv {

/// What the four slope flavours share: the slopes to the neighbours of a sample, which each
/// flavour combines by a rule of its own.
///
/// A slope is |u(neighbour) - u(x, y)|, times sqrt(2) / 2 for the diagonal neighbours. The
/// neighbours are visited column by column from left to right, in the left and right columns
/// in a fixed order of their own; the biased flavours depend on it.
class SlopeGradientNorm : public GradientNorm {
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

  protected:
    /// The slopes at one sample, in the order of the visit.
    struct Slopes {
        int count = 0;
        double values[8] = {};
    };

    /// The squared norm from at least one slope.
    virtual double combine(const Slopes& slopes) const = 0;

  private:
    double normAt(int x, int y) const;

    float diagonalWeight_ = static_cast<float>(1.4142135623730951 * 0.5);
};

}  // namespace orv
