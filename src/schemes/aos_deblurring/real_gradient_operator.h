#pragma once

#include <cstdio>
#include <memory>

#include "images/float_image.h"
#include "schemes/plane_operators/float_operator.h"

namespace orv {

/// The gradient term of the AOS operators, by central differences.
///
/// With dx = u(x+1, y) - u(x-1, y) and dy = u(x, y+1) - u(x, y-1):
///
/// | kind | result |
/// |---|---|
/// | 0 | dx 0.5 |
/// | 1 | dy 0.5 |
/// | 2 | sqrt(dx dx + dy dy) 0.5 |
/// | 3 | (dx dx + dy dy) 0.25 |
class RealGradientOperator : public FloatOperator {
  public:
    /// Domain:  kind 0 to 3; any other writes the border alone.
    explicit RealGradientOperator(int kind);

    /// Writes the term for x from 1 to w - 2 and y from 1 to h - 2, then 0 to the border.
    ///
    /// Shapes:  target w x h as the source, or null, which makes a plane of zeros.
    /// Units:   grey levels a pixel, squared for kind 3.
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// Writes the five-point Laplacian where the mask selects, whatever the kind.
    ///
    ///     u(x+1, y) + u(x, y+1) + u(x, y-1) + u(x-1, y) - 4 u(x, y)
    ///
    /// Shapes:  as apply; samples outside the region stay.
    /// Quirk:   gradient-masked-laplacian
    std::unique_ptr<FloatImage> applyMasked(const DiscreteImage& mask, const FloatImage& source,
                                            std::unique_ptr<FloatImage> target) override;
    /// Writes "Real Gradient Operator\n".
    void printName(std::FILE* file) const override;

    /// Which term.
    int kind() const { return kind_; }

  private:
    int kind_;
};

}  // namespace orv
