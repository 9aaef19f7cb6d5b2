#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Steepest descent for a symmetric positive definite A: exact line searches along the
/// residual.
///
///     r = b - A u
///     q = A r                      lambda = r.r / r.q
///     u = u + lambda r
///     r = r - lambda q
///
/// Shapes:  A n x n; b, u and the work vectors r, q n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; at
///          most maxIter iterations.
/// Fails:   r.q = 0 is not tested: u fills with NaN and the loop runs to maxIter with
///          `converged` low.
/// Cost:    one product, two dot products and two updates an iteration; 2 n floats kept. An
///          iteration leaves at most (c - 1) / (c + 1) of the error, measured by the root of
///          e.(A e); c is the condition number.
/// Source:  [Saad2003], section 5.3.1
class DescentSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` line searches.
    DescentSolver(int maxIter, double tol);
    ~DescentSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the loop, unless that residual is small enough.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One line search.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double lambda_ = 0.0;
    double rr_ = 0.0;  // r.r of the r that stands now
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> q_;
};

}  // namespace orv
