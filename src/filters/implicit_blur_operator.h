#pragma once

#include <cstdio>
#include <memory>

#include "filters/thomas_linear_system.h"
#include "images/float_image.h"
#include "schemes/plane_operators/float_operator.h"

namespace orv {

/// Implicit linear diffusion, one tridiagonal system a line: the blur under the diffusivity of
/// the AOS deblurring operators.
///
///     u = (I + tau Ly)^-1 (I + tau Lx)^-1 u,   L the 1-D Laplacian with reflecting ends
///
/// One iteration with tau = sigma^2 / 2 stands for a Gaussian of that sigma.
///
/// Quirk:   implicit-blur-empty
class ImplicitBlurOperator : public FloatOperator {
  public:
    /// Units:   tau in pixels squared.
    ImplicitBlurOperator(int iterations, float tau);
    ~ImplicitBlurOperator() override;

    /// Blurs a work plane and hands it to the target by the empty `FloatImage::assign`: the
    /// target, or a clone of the source, comes back as it was.
    ///
    /// Cost:    the whole blur.
    /// Quirk:   implicit-blur-empty
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// The target, or a clone of the source; computes nothing.
    std::unique_ptr<FloatImage> applyMasked(const DiscreteImage& mask, const FloatImage& source,
                                            std::unique_ptr<FloatImage> target) override;
    /// Writes "Real Recursive 2d Blur Operator\n".
    ///
    /// Quirk:   implicit-blur-name
    void printName(std::FILE* file) const override;

    /// The blur itself, `iterations` times in place: what `apply` does to its work plane.
    ///
    /// Every sample has the bits of one line at a time through a ThomasLinearSystem.
    ///
    /// Shapes:  any plane, w x h at least 1 x 1; `width` and `height` become its size.
    void blurInPlace(FloatImage& work);

    /// Width of the plane of the last run; 256 before.
    int width() const { return width_; }
    /// Height of the plane of the last run; 256 before.
    int height() const { return height_; }
    /// How often a run blurs.
    int iterations() const { return iterations_; }
    /// The step of one blur, pixels squared.
    float tau() const { return tau_; }

  private:
    void blurLinesX(FloatImage& work);
    void blurLinesY(FloatImage& work);

    int width_ = 256;
    int height_ = 256;
    int iterations_;
    float tau_;
    std::unique_ptr<ThomasLinearSystem> systemX_;
    std::unique_ptr<ThomasLinearSystem> systemY_;
};

}  // namespace orv
