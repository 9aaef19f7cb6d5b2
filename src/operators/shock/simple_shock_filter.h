#pragma once

#include <memory>

#include "operators/shock/sign_shock_term.h"
#include "schemes/plane_operators/real_operator.h"

namespace orv {

/// The shock filter with the sign term, which it holds itself.
///
/// Differs from `ShockFilter` in what it does with a target: that is moved from where it
/// stands in the first step, by the speeds of the source.
///
/// Quirk:   simple-shock-target
/// Source:  [OsherRudin1990]
class SimpleShockFilter : public RealOperator {
  public:
    SimpleShockFilter(int iterations, double timeStep);

    /// As `ShockFilter::setAuxiliaryPlane`.
    void setAuxiliaryPlane(const RealImage* plane) override;

    /// Runs the steps; a null target becomes a clone of the source.
    ///
    /// Shapes:  target of the source's size, or null.
    /// Fails:   never; a plane narrower or lower than 3 comes back as it is, and so does any
    ///          plane with 0 iterations.
    std::unique_ptr<RealImage> apply(const RealImage& source,
                                     std::unique_ptr<RealImage> target) override;

    /// Runs the steps where the mask equals `regionKey`.
    std::unique_ptr<RealImage> applyMasked(const DiscreteImage& mask, const RealImage& source,
                                           std::unique_ptr<RealImage> target) override;

    /// Hands a limiter to the term; it is not owned and may be null.
    void setLimiter(const ShockLimiter* limiter);

  private:
    const RealImage* source_;
    std::unique_ptr<RealImage> work_;
    int iterations_;
    double timeStep_;
    SignShockTerm term_;
};

}  // namespace orv
