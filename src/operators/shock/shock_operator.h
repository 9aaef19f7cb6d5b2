#pragma once

#include <memory>

#include "images/real_image.h"
#include "operators/real_plane_image_operator.h"

namespace orv {

class RealOperator;

/// What the C face takes for the weight of the diffusion along level lines.
inline constexpr double kShockDiffusionWeight = 0.2;
/// What the C face takes for the scale under the arc tangent.
inline constexpr double kShockArctanScale = 1.0;

/// Sharpens a picture by a shock filter.
///
/// Methods: 0 `SignShockTerm`, 1 `DiffusiveSignShockTerm`, 2 `ArctanShockTerm`,
/// 3 `DiffusiveArctanShockTerm`; any other number is 0.
///
/// Reports no progress of its own; with three planes the progress window moves on.
///
/// Units:   timeStep in pixels.
/// Domain:  every double. With the diffusion, steps from about 0.7 on flicker, and shorter ones
///          with a larger weight; the samples stay within 0 and 255 all the same.
/// Owns:    filter and term of a run, which go with it.
/// Source:  [OsherRudin1990], [AlvarezMazorra1994], [GilboaSochenZeevi2002]
class ShockOperator : public RealPlaneImageOperator {
  public:
    /// The count of iterations is kept as the branch's `channelMode`.
    ShockOperator(int iterations, int method, double timeStep, double diffusionWeight,
                  double arctanScale);

    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override;
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;
    std::unique_ptr<RealImage3> runPlanes(const RealImage3& planes,
                                          std::unique_ptr<RealImage3> target) override;
    std::unique_ptr<RealImage3> runPlanesMasked(const DiscreteImage& mask,
                                                const RealImage3& planes,
                                                std::unique_ptr<RealImage3> target) override;
    std::unique_ptr<RealImage3> runPlanesAlt(const RealImage3& planes,
                                             std::unique_ptr<RealImage3> target) override;
    std::unique_ptr<RealImage3> runPlanesAltMasked(const DiscreteImage& mask,
                                                   const RealImage3& planes,
                                                   std::unique_ptr<RealImage3> target) override;

    /// Runs the filter on one plane.
    std::unique_ptr<RealImage> runPlane(const RealImage& plane);

  private:
    /// Builds the filter of a run and gives what `work` makes with it.
    template <class Work>
    auto withFilter(Work work) const;

    int method_;
    double timeStep_;
    double diffusionWeight_;
    double arctanScale_;
};

}  // namespace orv
