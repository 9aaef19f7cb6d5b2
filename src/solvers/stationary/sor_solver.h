#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Successive over-relaxation with the fixed factor omega = 1.1, in the order of rising i.
///
///     u(i) = omega (b(i) - sum over j != i of a(i, j) u(j)) / a(i, i) + (1 - omega) u(i)
///
/// Shapes:  A n x n; b and u n floats; a null u starts from zeros.
/// Stops:   after exactly maxIter sweeps; there is no test and tol is not read.
/// Fails:   a zero on the diagonal is not tested; maxIter of 0 or less gives u as it came.
/// Cost:    one sweep an iteration.
/// Source:  [Saad2003], section 4.1
class SorSolver : public IterativeLinearSolver {
  public:
    /// `maxIter` sweeps; `tol` is stored alone.
    SorSolver(int maxIter, double tol);

    /// One sweep.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double omega_ = 1.1;
};

}  // namespace orv
