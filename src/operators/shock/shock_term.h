#pragma once

#include "images/real_image.h"
#include "operators/kernels/shock_kernels.h"
#include "operators/shock/shock_limiter.h"

namespace orv {

class DiscreteImage;

/// The speed at which a shock filter moves a sample.
///
/// With g the norm of the gradient, eta the second derivative along the gradient and xi the one
/// across it, the terms give some -s(eta) g + d xi: the picture runs away from the zero
/// crossings of eta, and edges steepen, while xi smooths along them.
///
/// The order of the virtual operations is part of the design.
class ShockTerm {
  public:
    ShockTerm() = default;
    ShockTerm(const ShockTerm&) = delete;
    ShockTerm& operator=(const ShockTerm&) = delete;

    virtual ~ShockTerm();

    /// The limiter of the gradient norm; null means minmod.
    virtual const ShockLimiter* limiter() const;
    /// Sets the limiter, which is not owned and may be null.
    virtual void setLimiter(const ShockLimiter* limiter);

    /// Tells the term which step runs, from 1 on; does nothing by default.
    virtual void setIteration(int i);
    /// The step that the term was told, 0 by default.
    virtual double iteration() const;

    /// `value` where a mask selects; the mask plays no part.
    virtual double valueMasked(const DiscreteImage& mask, const RealImage& plane, int x,
                               int y) const = 0;
    /// The speed at an interior sample: x from 1 to width - 2, y from 1 to height - 2.
    ///
    /// Units:   grey levels a unit of time.
    virtual double value(const RealImage& plane, int x, int y) const = 0;

    /// A hook that does nothing.
    virtual void hook();

    /// The formula for the kernels as it stands in this step; `ShockKind::Other` by default,
    /// which keeps a filter to `value`.
    virtual ShockFormula formula() const;

  protected:
    /// The norm of the gradient with the term's limiter.
    double gradientNorm(const RealImage& plane, int x, int y) const;

  private:
    const ShockLimiter* limiter_ = nullptr;
};

/// 1 for positive values, -1 for negative ones, 0 for 0 and NaN.
double shockSign(double a);

}  // namespace orv
