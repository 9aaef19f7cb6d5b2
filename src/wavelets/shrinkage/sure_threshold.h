#pragma once

#include <cstddef>

namespace orv {

/// The threshold of least SURE risk for soft thresholding of `count` values of noise 1.
///
/// With the magnitudes s ascending and Q the running sum of their squares, s[i] included:
///
///     risk(i) = s[i]^2 (n - i) + Q + (n - 2i)       threshold = s at the least risk
///
/// in doubles, in this order; the first of equal risks wins.
///
/// Shapes:  values count doubles, which stay as they are.
/// Domain:  values that are no numbers count as larger than all others. Without values the
///          threshold is 0.
/// Fails:   ends the process with status 1 when its working array can't be had.
/// Cost:    near-linear: whole ranges of magnitudes are ruled out by bounds of their risk, and only
///          the few that are left are sorted. Where rounding could decide, all are.
/// Quirk:   sure-risk
/// Source:  [DonohoJohnstone1995]
double sureThreshold(const double* values, int count);

/// sureThreshold of magnitudes and `zeros` zeros besides; the magnitudes lose their order.
double sureThresholdOfMagnitudes(double* magnitudes, std::size_t count, std::size_t zeros);

}  // namespace orv
