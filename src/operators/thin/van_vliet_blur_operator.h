#pragma once

#include <memory>

#include "images/float_image.h"
#include "operators/float_plane_image_operator.h"

namespace orv {

/// Recursive Gaussian blur of a picture, each channel by itself.
///
/// Every run makes a `FloatRecursive2dBlurOperator`, which prints its coefficients.
///
/// Source:  [YoungVanVliet1995]
class VanVlietBlurOperator : public FloatPlaneImageOperator {
  public:
    /// Units:   pixels; below 0.5 counts as 0.5.
    explicit VanVlietBlurOperator(double sigma);

    /// Blurs the luminance and writes it to the red channel.
    ///
    /// Shapes:  both sides at least 3.
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override;
    /// `runGrey`; the mask is dropped.
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;
    /// Blurs each plane by itself, all with one set of coefficients.
    ///
    /// Shapes:  both sides at least 3; target w x h as the planes, or null; it is consumed.
    std::unique_ptr<FloatImage3> runPlanes(const FloatImage3& planes,
                                           std::unique_ptr<FloatImage3> target) override;
    /// `runPlanes`; the mask is dropped.
    std::unique_ptr<FloatImage3> runPlanesMasked(const DiscreteImage& mask,
                                                 const FloatImage3& planes,
                                                 std::unique_ptr<FloatImage3> target) override;
    /// `runPlanes`: both colour paths are one.
    std::unique_ptr<FloatImage3> runPlanesAlt(const FloatImage3& planes,
                                              std::unique_ptr<FloatImage3> target) override;
    /// `runPlanes`; the mask is dropped.
    std::unique_ptr<FloatImage3> runPlanesAltMasked(
        const DiscreteImage& mask, const FloatImage3& planes,
        std::unique_ptr<FloatImage3> target) override;

    /// Sets the width of the blur, pixels.
    virtual void setSigma(double sigma);

    /// The width of the blur as it was given, pixels.
    double sigma() const { return sigma_; }

    /// Blurs one plane.
    ///
    /// Shapes:  both sides at least 3.
    std::unique_ptr<FloatImage> runPlane(const FloatImage& plane);

    /// Blurs one plane in place for eyes instead of hosts: in doubles, which keep the mean grey
    /// level of a wide blur, and with the plane mirrored by 6 sigma on all sides, which keeps
    /// the noise at a line's start out of the picture.
    ///
    /// Shapes:  any plane that isn't empty.
    /// Cost:    a plane of doubles of the extended size.
    void blurFinely(FloatImage& plane) const;

    /// Blurs one plane in place for hosts: the samples of `runPlanes`.
    ///
    /// Shapes:  both sides at least 3.
    void blurInFloats(FloatImage& plane) const;

  protected:
    /// `runPlanes` in the memory of the planes: three planes less.
    std::unique_ptr<FloatImage3> runOwnedPlanes(std::unique_ptr<FloatImage3> planes) override;

  private:
    double sigma_;
};

}  // namespace orv
