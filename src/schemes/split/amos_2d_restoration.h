#pragma once

#include <cstdio>
#include <memory>

#include "schemes/split/splitted_2d_restoration.h"

namespace orv {

/// Additive multiplicative operator splitting: the mean of both orders of the one-dimensional
/// Crank-Nicolson steps.
///
///     u_new = 1/2 [C_y C_x + C_x C_y] u,   C_d = (I - tau/2 A_d)^-1 (I + tau/2 A_d)
///
/// Source:  [BarashKimmel2001]
class Amos2DRestoration final : public Splitted2DRestoration {
  public:
    /// `cflSubsteps` cuts each explicit half step into stable pieces.
    Amos2DRestoration(int solverId, int iterations, int solverIterations, double tau,
                      Flow* flow, bool cflSubsteps, bool reservedFlag, bool updateEachStep);
    ~Amos2DRestoration() override;

    /// One step from source into target.
    ///
    /// Shapes:  w and h at least 2: the product of a line matrix needs two elements.
    std::unique_ptr<FloatImage> step(const FloatImage& source,
                                     std::unique_ptr<FloatImage> target) override;
    /// Writes "Amos 2D restoration".
    void printName(std::FILE* file) const override;

  private:
    void crankNicolsonLinesX(const Pass& pass, float substep, int count);
    void crankNicolsonLinesY(const Pass& pass, float substep, int count);

    bool cflSubsteps_;
    std::unique_ptr<Matrix> implicitX_;
    std::unique_ptr<Matrix> implicitY_;
    std::unique_ptr<Matrix> explicitX_;
    std::unique_ptr<Matrix> explicitY_;
};

}  // namespace orv
