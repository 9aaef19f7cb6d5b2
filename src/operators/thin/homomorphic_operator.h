#pragma once

#include <memory>

#include "images/float_image.h"
#include "images/real_image.h"
#include "operators/real_plane_image_operator.h"

namespace orv {

/// Homomorphic filter of a picture: runs `HomomorphicFilter` on its planes, samples unscaled.
///
/// A plane with a sample of 0 becomes NaN throughout, and its bytes 0: the logarithm of black.
class HomomorphicOperator : public RealPlaneImageOperator {
  public:
    /// The blur has a width of 8 pixels until `setSigma`.
    ///
    /// Domain:  as for `HomomorphicFilter`.
    HomomorphicOperator(int mode, double gamma);

    /// Runs on the luminance and writes the result to the red channel.
    ///
    /// Shapes:  both sides at least 3.
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override;
    /// `runGrey`; the mask is dropped.
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;
    /// Runs on each of three planes.
    ///
    /// Shapes:  both sides at least 3; target w x h as the planes, or null.
    /// Fails:   never; ends early, planes that are not reached as in the source, when the work
    ///          is cancelled.
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

    /// Sets the width of the blur, pixels.
    virtual void setSigma(double sigma);
    /// Sets the compression exponent of mode 8.
    virtual void setGamma(double gamma);

    /// What the filter returns.
    int mode() const { return mode_; }
    /// The width of the blur, pixels.
    double sigma() const { return sigma_; }
    /// The compression exponent of mode 8.
    double gamma() const { return gamma_; }

    /// Runs on one plane.
    ///
    /// Shapes:  both sides at least 3.
    std::unique_ptr<RealImage> runPlane(const RealImage& plane);
    /// Runs on one plane with a mirrored margin, in place: without the stripes that the blur
    /// leaves at the left and upper border of a noisy plane. The result is multiplied by `scale`
    /// and rounded once.
    ///
    /// Shapes:  any size above 0.
    void runMirrored(FloatImage& plane, double scale) const;
    /// Runs on one plane in place, with the samples of `runPlanes`, multiplied by `scale` and
    /// rounded once.
    ///
    /// Shapes:  both sides at least 3.
    void runBare(FloatImage& plane, double scale) const;

    /// Whether a picture of this size can be run: both sides at least 3.
    static bool accepts(int width, int height);

  protected:
    /// `runPlanes` in the memory of the planes and of one more.
    std::unique_ptr<RealImage3> runOwnedPlanes(std::unique_ptr<RealImage3> planes) override;

  private:
    int mode_;
    double sigma_;
    double gamma_;
};

}  // namespace orv
