#pragma once

#include <cstdio>
#include <memory>

#include "images/real_image.h"
#include "schemes/plane_operators/real_operator.h"

namespace orv {

/// Separates a plane into illumination and reflectance by their logarithms.
///
///     t = ln(s)      low = recursive Gaussian blur of t      (s = illumination x reflectance)
///
/// The result depends on the mode:
///
///     2: t - low                    logarithm of the reflectance
///     4: exp(low)                   illumination
///     5: low                        logarithm of the illumination
///     8: pow(m / 255, 1 / gamma) 255 r,  L = exp(low), m = max(L, 0, s), r = s / m in 0 .. 1
///     others: exp(t - low)          reflectance
///
/// Mode 8 compresses the illumination by a gamma. Where the sample is brighter than what lies
/// around it, m is the sample itself and r is 1.
///
/// Units:   grey levels; gamma 1 leaves the illumination as it is, above 1 lifts the shadows.
/// Source:  [OppenheimSchaferStockham1968]
class HomomorphicFilter : public RealOperator {
  public:
    /// Units:   sigma in pixels; below 0.5 counts as 0.5.
    /// Domain:  gamma other than 0.
    HomomorphicFilter(int mode, double sigma, double gamma);
    ~HomomorphicFilter() override;

    /// Filters the source.
    ///
    /// In mode 8 each column, before it is done, reports x (progressHigh - progressLow) / w.
    ///
    /// Shapes:  source w x h, both at least 3: the blur asks for that; target of that size, or
    ///          null. Every sample of the target is written.
    /// Domain:  samples above 0. A sample of 0 has the logarithm minus infinity, which the blur
    ///          turns into NaN in the whole plane, and so does a negative one.
    /// Fails:   never; ends early, with the samples so far, when the work is cancelled.
    /// Cost:    one logarithm, one blur, and in mode 8 one exponential and one power a sample;
    ///          256 logarithms in all where the samples are whole numbers from 0 to 255. A
    ///          plane of its own for modes 1 and 2.
    /// Quirk:   homomorphic-progress
    std::unique_ptr<RealImage> apply(const RealImage& source,
                                     std::unique_ptr<RealImage> target) override;
    /// Writes "Real Homomorphic filter\n".
    void printName(std::FILE* file) const override;

    /// What the filter returns.
    int mode() const { return mode_; }
    /// The width of the blur, pixels.
    double sigma() const { return sigma_; }
    /// The compression exponent of mode 8.
    double gamma() const { return gamma_; }

  private:
    void compress(const RealImage& source, RealImage& target) const;

    int mode_;
    double sigma_;
    double gamma_;
};

}  // namespace orv
