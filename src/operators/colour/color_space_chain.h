#pragma once

#include <cstddef>
#include <memory>

#include "operators/colour/log_lms_to_lab_transform.h"
#include "operators/colour/rgb_to_lms_transform.h"

namespace orv {

/// Two colour spaces one after the other: from red, green, blue over cone responses to l, alpha
/// and beta.
///
///     forward = second(first(planes))      inverse = first^-1(second^-1(planes))
class ColorSpaceChain final : public ColorSpaceTransform {
  public:
    std::unique_ptr<RealImage3> forward(const RealImage3& planes,
                                        std::unique_ptr<RealImage3> target) const override;
    std::unique_ptr<RealImage3> inverse(const RealImage3& planes,
                                        std::unique_ptr<RealImage3> target) const override;

    /// `forward` on n samples of each channel, with the same bits.
    ///
    /// Shapes:  as in ColourKernels; an output may be the input of the same number.
    void forwardSamples(const double* const* in, double* const* out, std::size_t n) const;
    /// `inverse` on n samples of each channel, with the same bits.
    void inverseSamples(const double* const* in, double* const* out, std::size_t n) const;

    /// From red, green, blue to cone responses.
    const RgbToLmsTransform& first() const { return first_; }
    /// From cone responses to l, alpha, beta.
    const LogLmsToLabTransform& second() const { return second_; }

  private:
    RgbToLmsTransform first_;
    LogLmsToLabTransform second_;
};

}  // namespace orv
