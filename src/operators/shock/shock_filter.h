#pragma once

#include <memory>

#include "operators/shock/shock_term.h"
#include "schemes/plane_operators/real_operator.h"

namespace orv {

/// Sharpens a plane by steps of a shock term.
///
///     u = u + timeStep value(u), limited to 0 and 255
///
/// Units:   grey levels; timeStep in pixels, as the terms are speeds.
/// Owns:    nothing; the term has to outlive the filter.
/// Source:  [OsherRudin1990]
class ShockFilter : public RealOperator {
  public:
    ShockFilter(ShockTerm* term, int iterations, double timeStep);

    /// Sets the auxiliary plane and hands its like to the term: null takes the term's limiter
    /// away. A plane limits nothing, so that any other value does that too.
    void setAuxiliaryPlane(const RealImage* plane) override;

    /// Runs the steps on a copy of the source; the term hears the number of each step.
    ///
    /// Shapes:  target of the source's size, or null; what it held plays no part.
    /// Fails:   never; a plane narrower or lower than 3 comes back as it is, and so does any
    ///          plane with 0 iterations.
    std::unique_ptr<RealImage> apply(const RealImage& source,
                                     std::unique_ptr<RealImage> target) override;

    /// Runs the steps where the mask equals `regionKey`; a target that is handed in is moved
    /// from where it stands. The term hears no number of a step, and so a soft sign stays as
    /// soft as it is.
    ///
    /// Quirk:   masked-shock-softness
    std::unique_ptr<RealImage> applyMasked(const DiscreteImage& mask, const RealImage& source,
                                           std::unique_ptr<RealImage> target) override;

    /// Hands a limiter to the term; it is not owned and may be null.
    void setLimiter(const ShockLimiter* limiter);

  private:
    const RealImage* source_;
    std::unique_ptr<RealImage> work_;
    int iterations_;
    double timeStep_;
    ShockTerm* term_;
};

}  // namespace orv
