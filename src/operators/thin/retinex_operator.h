#pragma once

#include <memory>

#include "images/real_image.h"
#include "operators/real_plane_image_operator.h"

namespace orv {

/// Variational Retinex of a picture: runs `VariationalRetinex` on its planes.
///
///     result = 255 retinex((sample + 1) / 256)
///
/// Samples go in from 1/256 to 1, so that black has a logarithm.
///
/// Quirk:   retinex-scaling
class RetinexOperator : public RealPlaneImageOperator {
  public:
    /// Domain:  as for `VariationalRetinex`.
    RetinexOperator(double gamma, double alpha, double beta, int levels);

    /// Runs on the luminance and writes the result to the red channel.
    ///
    /// Fails:   null for levels that the picture doesn't allow.
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override;
    /// `runGrey`; the mask is dropped.
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;
    /// Runs on each of three planes.
    ///
    /// Fails:   null for levels that the planes don't allow; ends early, planes that are not
    ///          reached as in the source, when the work is cancelled.
    std::unique_ptr<RealImage3> runPlanes(const RealImage3& planes,
                                          std::unique_ptr<RealImage3> target) override;
    /// `runPlanes`; the mask is dropped.
    std::unique_ptr<RealImage3> runPlanesMasked(const DiscreteImage& mask,
                                                const RealImage3& planes,
                                                std::unique_ptr<RealImage3> target) override;
    /// `runPlanes`: both colour paths are one.
    std::unique_ptr<RealImage3> runPlanesAlt(const RealImage3& planes,
                                             std::unique_ptr<RealImage3> target) override;
    /// `runPlanes`; the mask is dropped.
    std::unique_ptr<RealImage3> runPlanesAltMasked(const DiscreteImage& mask,
                                                   const RealImage3& planes,
                                                   std::unique_ptr<RealImage3> target) override;

    /// Sets the weight of the fit to the picture.
    virtual void setAlpha(double alpha);
    /// Sets the weight of a smooth reflectance.
    virtual void setBeta(double beta);
    /// Sets the output gamma.
    virtual void setGamma(double gamma);

    /// Runs on one plane of samples from 0 to 255.
    ///
    /// Fails:   null for levels that the plane doesn't allow.
    std::unique_ptr<RealImage> runPlane(const RealImage& plane);

    /// Whether a picture of this size can be run: `levels` from 1 to
    /// `mostLevels` and a `gamma` other than 0.
    bool accepts(int width, int height) const;
    /// The most levels that a picture of this size allows; 0 for an empty one.
    static int mostLevels(int width, int height);

  protected:
    /// `runPlanes` in the memory of the planes: two planes less.
    std::unique_ptr<RealImage3> runOwnedPlanes(std::unique_ptr<RealImage3> planes) override;

  private:
    double gamma_;
    double alpha_;
    double beta_;
    int levels_;
};

}  // namespace orv
