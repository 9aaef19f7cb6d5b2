#pragma once

namespace orv {

/// Joins the two one-sided differences of an axis to the one that a gradient norm takes.
///
/// The shock terms use minmod when they have no limiter.
class ShockLimiter {
  public:
    virtual ~ShockLimiter() = default;

    /// The limited difference.
    ///
    /// Units:   grey levels a pixel, in and out.
    virtual double limited(double backward, double forward) const = 0;
};

}  // namespace orv
