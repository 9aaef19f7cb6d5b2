#pragma once

#include <cstdio>
#include <memory>

#include "algebra/matrix.h"
#include "schemes/split/splitted_2d_restoration.h"

namespace orv {

/// Additive operator splitting: the mean of one implicit step of 2 tau in each direction.
///
///     u_new = 1/2 [(I - 2 tau A_x)^-1 + (I - 2 tau A_y)^-1] u
///
/// The only scheme that tells the host's callback how far it is, line by line; the window
/// itself stays as it is. Each line starts its solver from the solution of the line before,
/// the first one from zeros, so that a line that diverges may spoil those behind it.
///
/// Source:  [WeickertTerHaarRomenyViergever1998]
class Aos2DRestoration final : public Splitted2DRestoration {
  public:
    Aos2DRestoration(int solverId, int iterations, int solverIterations, double tau, Flow* flow,
                     bool reservedFlag, bool updateEachStep);
    ~Aos2DRestoration() override;

    /// One step from source into target.
    std::unique_ptr<FloatImage> step(const FloatImage& source,
                                     std::unique_ptr<FloatImage> target) override;
    /// Writes "AOS 2D restoration".
    void printName(std::FILE* file) const override;

  private:
    void solveRows(float t, const FloatImage& source, FloatImage& target);
    void solveColumns(float t, const FloatImage& source, FloatImage& target);

    std::unique_ptr<Matrix> implicitX_;
    std::unique_ptr<Matrix> implicitY_;
};

}  // namespace orv
