#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Conjugate gradients for a symmetric positive definite A.
///
///     r = b - A u, p = r
///     q = A p                      alpha = r.r / p.q
///     u = u + alpha p
///     r = r - alpha q              beta = (r.r, new) / (r.r, old)
///     p = beta p + r
///
/// Shapes:  A n x n; b, u and the work vectors r, p, q n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; at
///          most maxIter iterations. The recurred r drifts from b - A u by the rounding of the
///          floats.
/// Fails:   p.q = 0 is not tested: u fills with NaN and the loop runs to maxIter with
///          `converged` low. There is no restart.
/// Cost:    one product, two dot products and three updates an iteration; 3 n floats kept.
/// Source:  [HestenesStiefel1952]
class CgSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` directions.
    CgSolver(int maxIter, double tol);
    ~CgSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the loop, unless that residual is small enough.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step along p and the next p.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double rr_ = 0.0;  // r.r of the r that stands now: test, alpha and beta share the one sum
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> q_;
};

}  // namespace orv
