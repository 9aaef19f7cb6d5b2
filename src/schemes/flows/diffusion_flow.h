#pragma once

#include <memory>

#include "images/float_image.h"
#include "schemes/flows/diffusivity.h"
#include "schemes/flows/flow.h"
#include "schemes/full/heat_flow_operator.h"
#include "schemes/gradient_norms/gradient_norm.h"

namespace orv {

/// Nonlinear diffusion div(g grad u) with the diffusivity g of a presmoothed plane.
///
///     g = diffusivity(kind, |grad u_sigma|^2 / K^2),   0 on the one-sample border
///
/// The line and full matrices hold tau times the discrete operator with reflecting ends: every
/// row sums to 0. As g is 0 on the border, a border line is coupled to nothing along itself
/// and a corner never changes.
///
/// Source:  [PeronaMalik1990], [CatteLionsMorelColl1992], [Weickert1998]
class DiffusionFlow : public Flow {
  public:
    /// Units:   `sigma` in pixels, `contrast` (K) in grey levels per pixel.
    /// Domain:  `gradientNormId` from 0 to 5; any other leaves no norm, and update() then reads
    ///          a null.
    DiffusionFlow(double sigma, double contrast, int kind, int gradientNormId);
    ~DiffusionFlow() override;

    /// Recomputes the diffusivity from `plane`, presmoothed when sigma is above 0.05.
    ///
    /// Quirk:   heat-flow-reuse: from the second call on the presmoother goes on from its own
    ///          last result and takes nothing but the size from the plane.
    void update(const FloatImage& plane) override;
    /// The operator of the whole plane as five diagonals of order w h.
    ///
    /// Cost:    two passes over the plane; allocates when `matrix` is null.
    std::unique_ptr<Matrix> fullMatrix(float tau, const FloatImage& plane,
                                       std::unique_ptr<Matrix> matrix) override;
    /// The operator of row y, tridiagonal of order w. The plane gives its width alone.
    std::unique_ptr<Matrix> lineMatrixX(float tau, const FloatImage& plane, int y,
                                        std::unique_ptr<Matrix> matrix) override;
    /// The operator of column x, tridiagonal of order h. The plane gives its height alone.
    std::unique_ptr<Matrix> lineMatrixY(float tau, const FloatImage& plane, int x,
                                        std::unique_ptr<Matrix> matrix) override;

    /// The diffusivity of a plane as it is, without presmoothing.
    ///
    /// Shapes:  the target has the size of the plane and does not alias it.
    /// Domain:  K above 0; K = 0 makes s infinite or undefined.
    virtual std::unique_ptr<FloatImage> computeDiffusivity(const FloatImage& plane,
                                                           std::unique_ptr<FloatImage> target);

    /// Forces the sample by sample loop over the norm, and the line by line path of the
    /// presmoother, where the kernels give the same bits.
    void setPlainPath(bool plain) { plainPath_ = plain; }
    /// The last diffusivity; null before the first update().
    const FloatImage* diffusivityPlane() const { return diffusivity_.get(); }
    /// The last presmoothed plane; null as long as none was needed.
    const FloatImage* smoothed() const { return smoothed_.get(); }
    /// Presmoothing width in pixels.
    float sigma() const { return sigma_; }
    /// The square of the contrast, rounded to float.
    float contrastSquared() const { return contrastSquared_; }
    /// Which formula turns the gradient norm into the diffusivity.
    FlowKind kind() const { return kind_; }

  private:
    [[maybe_unused]] int reservedFirst_ = 0;
    [[maybe_unused]] int reservedSecond_ = 0;
    float sigma_;
    float contrast_;
    float contrastSquared_;
    FlowKind kind_;
    std::unique_ptr<HeatFlowOperator> presmoother_;
    std::unique_ptr<GradientNorm> norm_;
    std::unique_ptr<FloatImage> smoothed_;
    std::unique_ptr<FloatImage> diffusivity_;
    int gradientNormId_;
    bool plainPath_ = false;
};

}  // namespace orv
