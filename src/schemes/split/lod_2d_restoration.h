#pragma once

#include <cstdio>
#include <memory>

#include "algebra/matrix.h"
#include "schemes/split/splitted_2d_restoration.h"

namespace orv {

/// Locally one-dimensional scheme: implicit along x, then along y.
///
///     u_new = (I - tau A_y)^-1 (I - tau A_x)^-1 u
///
/// Quirk:   shared-print-names: it prints the text of the additive scheme.
/// Source:  [Yanenko1971]
class Lod2DRestoration final : public Splitted2DRestoration {
  public:
    Lod2DRestoration(int solverId, int iterations, int solverIterations, double tau, Flow* flow,
                     bool reservedFlag, bool updateEachStep);
    ~Lod2DRestoration() override;

    /// One step from source into target.
    std::unique_ptr<FloatImage> step(const FloatImage& source,
                                     std::unique_ptr<FloatImage> target) override;
    /// Writes "AOS 2D restoration".
    void printName(std::FILE* file) const override;

  private:
    std::unique_ptr<Matrix> implicitX_;
    std::unique_ptr<Matrix> implicitY_;
};

}  // namespace orv
