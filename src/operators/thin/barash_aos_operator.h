#pragma once

#include <memory>

#include "images/float_image.h"
#include "operators/float_plane_image_operator.h"

namespace orv {

class AosDeblurringOperator;

/// AOS deblurring and denoising of a picture, each channel by itself.
///
/// Both colour paths are the same run. It does no numerics of its own.
///
/// Source:  [WeickertTerHaarRomenyViergever1998], [RudinOsher1994]
class BarashAosOperator : public FloatPlaneImageOperator {
  public:
    /// Units:   tau in pixels squared, sigma in pixels, edgeContrast in grey levels a pixel.
    /// Domain:  pictures of 6 x 6 and larger; kernel as in RegularizedAosOperator. `sigma` and
    ///          `edgeContrast`, other than 0, have no effect.
    BarashAosOperator(int iterations, int kernel, double tau, double lambda, double sigma,
                      double edgeContrast, bool keepObserved);

    /// Deblurs the luminance within the source's value range and writes it to the red channel.
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override;
    /// `runGrey`; the mask is dropped.
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;
    /// Deblurs each plane within `lower` and `upper`.
    ///
    /// Shapes:  target w x h as the planes, or null; it is consumed.
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

    /// Deblurs one plane within `lower` and `upper`.
    std::unique_ptr<FloatImage> runPlane(const FloatImage& plane);

  protected:
    /// `runPlanes` in the memory of the planes: two planes less.
    std::unique_ptr<FloatImage3> runOwnedPlanes(std::unique_ptr<FloatImage3> planes) override;

  private:
    std::unique_ptr<AosDeblurringOperator> makeOperator(float lower, float upper) const;

    int iterations_;
    unsigned char keepObserved_;
    int kernel_;
    double tau_;
    double lambda_;
    double sigma_;
    double edgeContrast_;
};

}  // namespace orv
