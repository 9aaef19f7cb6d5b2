#pragma once

#include <cstdio>
#include <memory>

#include "algebra/matrix.h"
#include "schemes/split/splitted_2d_restoration.h"

namespace orv {

/// Averaged fully implicit scheme: the mean of both orders of the one-dimensional steps.
///
///     u_new = 1/2 [(I - tau A_y)^-1 (I - tau A_x)^-1 + (I - tau A_x)^-1 (I - tau A_y)^-1] u
///
/// Quirk:   afi-data-term: it never tells the flow its time step, so a data term vanishes from
///          the right sides while the matrices keep the reduced step.
///          shared-print-names: it prints the text of the additive scheme.
/// Source:  [Strang1968], [BarashSchlickIsraeliKimmel2003]
class Afi2DRestoration final : public Splitted2DRestoration {
  public:
    Afi2DRestoration(int solverId, int iterations, int solverIterations, double tau, Flow* flow,
                     bool reservedFlag, bool updateEachStep);
    ~Afi2DRestoration() override;

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
