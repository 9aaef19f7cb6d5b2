#pragma once

namespace orv {

class RealImage;

/// Replaces a band by the running sums of its centred squares.
///
///     v = (v^2 - mean) / h        mean = sum of v^2 / (h w)
///     S[x][y] = ((v + S[x][y - 1]) + S[x - 1][y]) - S[x - 1][y - 1]
///
/// Of noise alone the sheet behaves as a Brownian sheet.
///
/// Shapes:  plane bandWidth x bandHeight.
/// Source:  [OgdenParzen1996]
void brownianSheet(RealImage& plane, int bandHeight, int bandWidth);

/// The largest magnitude that is left in a band once its sheet stays within `critical`.
///
/// While the largest magnitude of the sheet exceeds `critical`, the largest coefficient (the
/// first of equal ones, in storage order) is set to 0 and the sheet is built anew; with one
/// coefficient left the threshold is 0. What is no number counts as no magnitude.
///
/// The same removals are found without building every sheet: the value of one position, the
/// witness, is kept up to date as squares leave, and while it exceeds `critical` by more than the
/// rounding error of any sheet, the maximum does. Only when it no longer does is the sheet built.
///
/// Shapes:  band bandWidth x bandHeight; its removed coefficients are set to 0.
/// Cost:    a few sheets a band and a sort of what is removed, where building every sheet is
///          quadratic.
/// Source:  [OgdenParzen1996]
double brownianThreshold(RealImage& band, int bandHeight, int bandWidth, double critical);

}  // namespace orv
