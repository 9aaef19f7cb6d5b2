#pragma once

#include <cstdio>

#include "schemes/aos_deblurring/regularized_aos_operator.h"

namespace orv {

/// AOS deblurring and denoising with the diffusivity 1 / (gradientPlane / edgeContrast^2 + 1).
///
/// The gradient is taken from a plane that the blur leaves at zero, so that every diffusivity is
/// exactly 1 and the operator is linear: `sigma` and `edgeContrast` have no effect on finite
/// results. Every system then has the rows -s, 2 s + 2, -s with s = 4 tau.
///
/// Quirk:   implicit-blur-empty
class AosDeblurringOperator : public RegularizedAosOperator {
  public:
    /// Units:   tau in pixels squared, sigma in pixels, edgeContrast in grey levels a pixel.
    /// Domain:  kernel as in RegularizedAosOperator; edgeContrast 0 makes the result NaN.
    AosDeblurringOperator(int iterations, int kernel, double tau, double lambda, double sigma,
                          double edgeContrast, unsigned char keepObserved,
                          unsigned char updateEachStep);
    ~AosDeblurringOperator() override;

    /// 1 / (gradientPlane(x, y) inverseContrastSquared + 1), within `apply`.
    float diffusivity(int x, int y) const override;
    /// Writes "Real Aos Deblurring/Denoising Operator\n".
    void printName(std::FILE* file) const override;

    /// (1 / edgeContrast)^2.
    float inverseContrastSquared() const { return inverseContrastSquared_; }

  protected:
    bool isUniform() const override;

  private:
    float inverseContrastSquared_;
};

}  // namespace orv
