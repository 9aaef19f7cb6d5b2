#pragma once

#include <memory>

#include "images/float_image.h"
#include "operators/float_plane_image_operator.h"

namespace orv {

/// Nonlinear diffusion of a picture: a scheme, a flow and a linear solver joined for one run.
///
/// Each run makes a `DiffusionFlow` and the scheme of the table, drives the planes and lets
/// both go. It does no numerics of its own.
///
/// Source:  [PeronaMalik1990], [Weickert1998], [WeickertTerHaarRomenyViergever1998]
class FastRestorationOperator : public FloatPlaneImageOperator {
  public:
    /// Units:   tau in pixels squared, sigma in pixels, contrast in grey levels.
    /// Domain:  scheme and flow numbers of `scheme_table.h` and `flow_table.h`, a solver that
    ///          exists and fits the scheme, gradientNormId 0 to 5. None is tested here.
    FastRestorationOperator(int scheme, int iterations, int solverIterations, double tau,
                            double sigma, double contrast, int solverId, bool cflSubsteps,
                            int flow, int gradientNormId);

    /// Diffuses the luminance within the source's value range and writes it to the red channel.
    ///
    /// Fails:   null for an unknown scheme number.
    std::unique_ptr<DiscreteImage> runGrey(const DiscreteImage& source,
                                           std::unique_ptr<DiscreteImage> target) override;
    /// `runGrey`; the mask is dropped.
    std::unique_ptr<DiscreteImage> runGreyMasked(
        const DiscreteImage& mask, const DiscreteImage& source,
        std::unique_ptr<DiscreteImage> target) override;
    /// Diffuses each plane by itself, all with one scheme and one flow.
    ///
    /// Shapes:  target w x h as the planes, or null; it is consumed.
    /// Fails:   null for an unknown scheme number.
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

    /// Diffuses one plane with a flow and a scheme of its own, within `lower` and `upper`.
    ///
    /// Fails:   null for an unknown scheme number.
    std::unique_ptr<FloatImage> runPlane(const FloatImage& plane);

    /// The tolerance that is set and that nothing reads: the schemes bring their own.
    float tolerance() const { return tolerance_; }
    /// Sets the tolerance that nothing reads.
    void setTolerance(float tolerance) { tolerance_ = tolerance; }

  protected:
    /// `runPlanes` in the memory of the planes: two planes less.
    std::unique_ptr<FloatImage3> runOwnedPlanes(std::unique_ptr<FloatImage3> planes) override;

  private:
    /// Builds flow and scheme for one run and gives what `work` makes with the scheme.
    template <class Work>
    auto withScheme(float lower, float upper, Work work) const;

    int scheme_;
    int iterations_;
    int solverIterations_;
    double tau_;
    double sigma_;
    double contrast_;
    int solverId_;
    float tolerance_;
    bool cflSubsteps_;
    int flow_;
    int gradientNormId_;
};

}  // namespace orv
