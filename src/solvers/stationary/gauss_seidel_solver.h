#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Gauss-Seidel iteration, in place, in the order of rising i.
///
///     u(i) = (b(i) - sum over j != i of a(i, j) u(j)) / a(i, i)
///
/// Shapes:  A n x n; b and u n floats; a null u starts from zeros.
/// Stops:   after exactly maxIter sweeps; there is no test and tol is not read.
/// Fails:   a zero on the diagonal is not tested; maxIter of 0 or less gives u as it came.
/// Cost:    one sweep an iteration.
/// Source:  [Saad2003], section 4.1
class GaussSeidelSolver : public IterativeLinearSolver {
  public:
    /// `maxIter` sweeps; `tol` is stored alone.
    GaussSeidelSolver(int maxIter, double tol);

    /// One sweep.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;
};

}  // namespace orv
