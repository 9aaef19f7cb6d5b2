#pragma once

#include <cstdio>
#include <memory>

#include "schemes/full/full_2d_restoration.h"

namespace orv {

/// An explicit sub-step of the whole plane followed by an implicit half step.
///
///     u_new = (I - tau/2 A)^-1 (I + tau/(2 k) A) u
///
/// Quirk:   implicit-copy-direction: the k explicit passes all compute the same product, so the
///          explicit part is one sub-step of tau/(2 k), whatever k is.
///          implicit-no-reset: the solver is never told that the matrix has changed, so a
///          direct one solves every later plane with the factors of the first.
/// Source:  [CrankNicolson1947]
class Full2DImplicitRestoration final : public Full2DRestoration {
  public:
    /// `cflSubsteps` sets k to 1 + trunc(tau); otherwise k is 1.
    Full2DImplicitRestoration(int solverId, int iterations, int solverIterations, double tau,
                              Flow* flow, bool cflSubsteps, bool reservedFlag,
                              bool updateEachStep);
    ~Full2DImplicitRestoration() override;

    /// One step from source into target. The solver starts from its last solution.
    std::unique_ptr<FloatImage> step(const FloatImage& source,
                                     std::unique_ptr<FloatImage> target) override;
    /// Writes "Full 2D Semi-Implicit restoration".
    ///
    /// Quirk:   shared-print-names
    void printName(std::FILE* file) const override;

  private:
    bool cflSubsteps_;
    std::unique_ptr<Matrix> implicitMatrix_;
    std::unique_ptr<Matrix> explicitMatrix_;
};

}  // namespace orv
