#pragma once

#include <memory>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv {

/// How a scheme with explicit half steps cuts them into stable pieces.
///
///     half = tau / 2,   count = 1 + trunc(tau) with `cflSubsteps`, else 1,   size = half /
///     count
///
/// With `cflSubsteps` and tau above 0 the size stays below 1/2, the bound of stability of an
/// explicit diffusion step in one direction.
///
/// Source:  [CourantFriedrichsLewy1928]
struct ExplicitSubsteps {
    /// Domain:  tau of at least 0 and below 2^31 - 1.
    ExplicitSubsteps(float tau, bool cflSubsteps);

    float half;
    int count;
    float size;
};

/// Products of an explicit stage: `count`, but never fewer than one. The count of a tau of -1 or
/// less is 0 or negative.
int explicitProducts(int count);

/// solution = E^count rhs, one product after the other, at least one.
///
/// Shapes:  rhs holds the next to last product afterwards; solution as E Multiply gives it.
std::unique_ptr<RealVector> explicitStage(const Matrix& E, int count, RealVector& rhs,
                                          std::unique_ptr<RealVector> solution);

}  // namespace orv
