#pragma once

#include "operators/colour/color_space_matrix_transform.h"

namespace orv {

/// From cone responses to the decorrelated channels l (light), alpha (yellow to blue) and beta
/// (red to green), by way of decimal logarithms.
///
///     l     = (log L + log M + log S) / sqrt 3
///     alpha = (log L + log M - 2 log S) / sqrt 6
///     beta  = (log L - log M) / sqrt 2
///
/// The way back multiplies by its own scale, applies its matrix and raises 10 to each result.
/// `forwardSingle` and `inverseSingle` stay those of the matrix alone.
///
/// Domain:  positive samples; 0 gives minus infinity and NaN, which travel on.
/// Source:  [ReinhardAshikhminGoochShirley2001], equations 6 and 8.
class LogLmsToLabTransform final : public ColorSpaceMatrixTransform {
  public:
    LogLmsToLabTransform();

    void forwardSamples(const double* const* in, double* const* out,
                        std::size_t n) const override;
    void inverseSamples(const double* const* in, double* const* out,
                        std::size_t n) const override;

    /// The factor of each output of `forward`.
    const double (&forwardScale() const)[3] { return forwardScale_; }
    /// The factor of each input of `inverse`.
    const double (&inverseScale() const)[3] { return inverseScale_; }

  private:
    double forwardScale_[3];
    double inverseScale_[3];
};

}  // namespace orv
