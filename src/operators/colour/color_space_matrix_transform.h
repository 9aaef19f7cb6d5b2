#pragma once

#include <cstddef>
#include <memory>

#include "operators/color_space_transform.h"
#include "operators/kernels/colour_kernels.h"

namespace orv {

/// A colour space that a fixed matrix leads to and a second fixed matrix back from.
///
///     output k = sum over i of rows[i][k] * input i
///
/// Row i of a table holds the weights of input channel i. The second matrix is the published
/// one, which need not be the exact inverse of the first.
class ColorSpaceMatrixTransform : public ColorSpaceTransform {
  public:
    ColorSpaceMatrixTransform(const ColourRows& forwardRows, const ColourRows& inverseRows);

    std::unique_ptr<RealImage3> forward(const RealImage3& planes,
                                        std::unique_ptr<RealImage3> target) const override;
    std::unique_ptr<RealImage3> inverse(const RealImage3& planes,
                                        std::unique_ptr<RealImage3> target) const override;

    /// The forward matrix on one pixel; writes a, b and c, which may not be inputs.
    virtual void forwardSingle(double& a, double& b, double& c, double in1, double in2,
                               double in3) const;
    /// The inverse matrix on one pixel.
    virtual void inverseSingle(double& a, double& b, double& c, double in1, double in2,
                               double in3) const;

    /// `forward` on n samples of each channel.
    ///
    /// Shapes:  as in ColourKernels; an output may be the input of the same number.
    virtual void forwardSamples(const double* const* in, double* const* out,
                                std::size_t n) const;
    /// `inverse` on n samples of each channel.
    virtual void inverseSamples(const double* const* in, double* const* out,
                                std::size_t n) const;

    /// The weights of the way there.
    const ColourRows& forwardRows() const { return forwardRows_; }
    /// The weights of the way back.
    const ColourRows& inverseRows() const { return inverseRows_; }

  private:
    ColourRows forwardRows_;
    ColourRows inverseRows_;
};

}  // namespace orv
