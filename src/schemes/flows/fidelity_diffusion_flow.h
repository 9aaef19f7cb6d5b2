#pragma once

#include <memory>

#include "schemes/flows/diffusion_flow.h"

namespace orv {

/// Nonlinear diffusion with a data term that pulls towards the plane f the scheme started
/// from.
///
///     u_t = div(g grad u) + fidelity (f - u)
///
/// The data term enters implicitly: with r = fidelity tau the right sides become
/// (u + r f) / (1 + r) and the matrices are those of the step tau / (1 + r). The right sides
/// use the tau of setTimeStep(), the matrices the one of the call: a scheme that never calls
/// setTimeStep() leaves r at 0 and its right sides without the data term.
///
/// Source:  [Nordstrom1990]
class FidelityDiffusionFlow final : public DiffusionFlow {
  public:
    /// Units:   `sigma` in pixels, `contrast` in grey levels per pixel, `fidelity` in 1 / time.
    FidelityDiffusionFlow(double sigma, double contrast, double fidelity, int kind,
                          int gradientNormId);
    ~FidelityDiffusionFlow() override;

    /// Keeps the plane as f; it must outlive the steps.
    void prepare(const FloatImage& plane) override;
    /// f, null before prepare().
    const FloatImage* initialPlane() const override;
    /// Sets the tau of the right sides.
    void setTimeStep(float tau) override;

    /// The whole plane with the data term.
    std::unique_ptr<RealVector> imageToVector(const FloatImage& plane,
                                              std::unique_ptr<RealVector> vector) override;
    /// Row y with the data term.
    std::unique_ptr<RealVector> lineVectorX(const FloatImage& plane, int y,
                                            std::unique_ptr<RealVector> vector) override;
    /// Column x with the data term.
    std::unique_ptr<RealVector> lineVectorY(const FloatImage& plane, int x,
                                            std::unique_ptr<RealVector> vector) override;
    /// The full matrix at the reduced step.
    std::unique_ptr<Matrix> fullMatrix(float tau, const FloatImage& plane,
                                       std::unique_ptr<Matrix> matrix) override;
    /// The matrix of row y at the reduced step.
    std::unique_ptr<Matrix> lineMatrixX(float tau, const FloatImage& plane, int y,
                                        std::unique_ptr<Matrix> matrix) override;
    /// The matrix of column x at the reduced step.
    std::unique_ptr<Matrix> lineMatrixY(float tau, const FloatImage& plane, int x,
                                        std::unique_ptr<Matrix> matrix) override;

    /// The tau of setTimeStep(); 0 at the start.
    virtual float timeStep() const;

    /// The weight of the data term.
    float fidelity() const { return fidelity_; }
    /// The step of the matrices for a step `tau` of the scheme, tau / (tau fidelity + 1).
    float reducedStep(float tau) const;

  private:
    float tau_ = 0.0f;
    float fidelity_;
    const FloatImage* initialPlane_ = nullptr;
};

}  // namespace orv
