#pragma once

#include <cstdio>
#include <memory>

#include "filters/implicit_blur_operator.h"
#include "filters/thomas_linear_system.h"
#include "images/float_image.h"
#include "schemes/aos_deblurring/real_gradient_operator.h"
#include "schemes/plane_operators/float_operator.h"

namespace orv {

/// Additive operator splitting with a diffusivity by sample and a Thomas solve per line.
///
///     u = (m + m^2 tau Lx)^-1 f + (m + m^2 tau Ly)^-1 f,   m = `dimensions` = 2
///
/// The rows of Lx and Ly are -m1, m1 + m2, -m2 with the limited diffusivities of solveAosLine().
///
/// It stands apart from the schemes with a Flow and a LinearSolver and builds its systems line
/// by line. The class is the root of two others and cannot be made: `diffusivity` is abstract.
///
/// Source:  [WeickertTerHaarRomenyViergever1998]
class SimpleAosOperator : public FloatOperator {
  public:
    /// Units:   tau in pixels squared, contrast in grey levels, sigma in pixels.
    /// Domain:  `updateEachStep` 1 recomputes the diffusivity in each iteration, 0 once.
    SimpleAosOperator(int iterations, double tau, double contrast, double sigma,
                      unsigned char reservedFlag, unsigned char updateEachStep);
    ~SimpleAosOperator() override;

    /// Solves all rows and adds the solutions of all columns, `iterations` times from the source:
    /// the step from one iteration to the next is the empty FloatImage::assign.
    ///
    /// Shapes:  target w x h as the source, or null, which makes a clone of the source.
    /// Domain:  w and h at least 6.
    /// Quirk:   float-assign, aos-last-super, aos-mirrored-ends
    std::unique_ptr<FloatImage> apply(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) override;
    /// The target, or a clone of the source; computes nothing.
    std::unique_ptr<FloatImage> applyMasked(const DiscreteImage& mask, const FloatImage& source,
                                            std::unique_ptr<FloatImage> target) override;
    /// Writes "Real Simple Aos Operator\n".
    void printName(std::FILE* file) const override;

    /// Makes the planes that are missing and a new blur with tau = sigma sigma 0.5, then calls
    /// `update`.
    virtual void prepare(const FloatImage& plane);
    /// smoothed = blur(plane); gradientPlane = gradient(smoothed).
    ///
    /// The blur hands its result over by the empty FloatImage::assign, so that both planes stay
    /// zero.
    ///
    /// Quirk:   implicit-blur-empty
    virtual void update(const FloatImage& plane);
    /// The diffusivity at (x, y), between `prepare` and the end of `apply`.
    virtual float diffusivity(int x, int y) const = 0;
    /// diffusivity(x, y - 1).
    virtual float diffusivityBelow(int x, int y) const;
    /// diffusivity(x, y + 1).
    virtual float diffusivityAbove(int x, int y) const;

    /// Width of the plane of the last run; 256 before.
    int width() const { return width_; }
    /// Height of the plane of the last run; 256 before.
    int height() const { return height_; }
    /// The time step.
    float tau() const { return tau_; }
    /// The contrast that nothing but `contrastSquared` is made of.
    float contrast() const { return contrast_; }
    /// contrast contrast.
    float contrastSquared() const { return contrastSquared_; }
    /// The blur of the last run that took a diffusivity; null before.
    const ImplicitBlurOperator* blur() const { return blur_.get(); }
    /// What `blur` left; null outside `apply`.
    const FloatImage* smoothed() const { return smoothed_.get(); }
    /// What `gradient` made of it; null outside `apply`.
    const FloatImage* gradientPlane() const { return gradientPlane_.get(); }

  protected:
    /// Replaces the blur by a new one with tau = sigma sigma 0.5.
    void makeBlur();
    /// Makes both systems for the size of the run; x and b are zero.
    void makeSystems();
    /// Frees the systems and the two planes of the diffusivity.
    void releaseWork();
    /// s = m (m tau), what the slopes of the systems are multiplied by.
    float lineStep() const;

    int dimensions_ = 2;
    int width_ = 256;
    int height_ = 256;
    int iterations_;
    float tau_;
    float contrast_;
    float contrastSquared_;
    float sigma_;
    unsigned char reservedFlag_;
    unsigned char updateEachStep_;
    std::unique_ptr<ImplicitBlurOperator> blur_;
    std::unique_ptr<RealGradientOperator> gradient_;
    std::unique_ptr<FloatImage> smoothed_;
    std::unique_ptr<FloatImage> gradientPlane_;
    std::unique_ptr<ThomasLinearSystem> systemX_;
    std::unique_ptr<ThomasLinearSystem> systemY_;
};

}  // namespace orv
