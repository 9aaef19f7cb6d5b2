#pragma once

#include <memory>

#include "images/real_image.h"
#include "operators/real_plane_image_operator.h"

namespace orv {

/// Wavelet denoising of a picture: runs `WaveletShrinkageOperator` on its planes.
///
/// The alternative colour path copies the planes.
class WaveletDenoisingOperator : public RealPlaneImageOperator {
  public:
    /// Domain:  as for `WaveletShrinkageOperator`.
    WaveletDenoisingOperator(int algorithm, int levels, int wavelet);

    /// Denoises the luminance and writes it to the red channel.
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override;
    /// Denoises each of three planes.
    ///
    /// Fails:   ends early, planes that are not reached as in the source, when the work is
    ///          cancelled.
    std::unique_ptr<RealImage3> runPlanes(const RealImage3& planes,
                                          std::unique_ptr<RealImage3> target) override;

    /// Denoises one plane, padded by zeros where its sizes need it.
    std::unique_ptr<RealImage> runPlane(const RealImage& plane);
    /// Denoises one plane, extended by mirroring where its sizes need it.
    std::unique_ptr<RealImage> runPlaneMirrored(const RealImage& plane);

    /// Takes the noise as known in runPlane() and runPlaneMirrored(); below 0, as at first, it is
    /// measured in each plane. See `WaveletShrinkageOperator::setNoise`.
    void setNoise(double noise) { noise_ = noise; }

    /// Most levels that a plane allows with this wavelet: padded by zeros to a square of a power
    /// of two where its longer side is none, or mirrored. Below 1 none is possible.
    int levelLimit(int width, int height, bool mirrored) const;

  private:
    int algorithm_;
    int levels_;
    int wavelet_;
    double noise_ = -1.0;
};

}  // namespace orv
