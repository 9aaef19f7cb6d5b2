#pragma once

#include <cstdio>
#include <memory>

#include "schemes/split/splitted_2d_restoration.h"

namespace orv {

/// Alternating direction implicit scheme in the form of Peaceman and Rachford.
///
///     u_new = (I - tau/2 A_y)^-1 (I + tau/2 A_x) (I - tau/2 A_x)^-1 (I + tau/2 A_y) u
///
/// Source:  [PeacemanRachford1955]
class CflAdi2DRestoration final : public Splitted2DRestoration {
  public:
    /// `cflSubsteps` cuts each explicit half step into stable pieces.
    CflAdi2DRestoration(int solverId, int iterations, int solverIterations, double tau,
                        Flow* flow, bool cflSubsteps, bool reservedFlag, bool updateEachStep);
    ~CflAdi2DRestoration() override;

    /// One step from source into target.
    ///
    /// Shapes:  w and h at least 2: the product of a line matrix needs two elements.
    std::unique_ptr<FloatImage> step(const FloatImage& source,
                                     std::unique_ptr<FloatImage> target) override;
    /// Writes "CFL ADI 2D restoration".
    void printName(std::FILE* file) const override;

  private:
    void multiplyLinesX(const Pass& pass, int count);
    void multiplyLinesY(const Pass& pass, int count);

    bool cflSubsteps_;
    std::unique_ptr<Matrix> implicitX_;
    std::unique_ptr<Matrix> implicitY_;
    std::unique_ptr<Matrix> explicitX_;
    std::unique_ptr<Matrix> explicitY_;
};

}  // namespace orv
