#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Conjugate gradients on the normal equations in the least squares form, which carries the
/// residual r and that of the normal equations, s, apart.
///
///     r = b - A u, s = A^T r, p = s, gamma = s.s
///     q = A p                      alpha = gamma / q.q
///     u = u + alpha p
///     r = r - alpha q
///     s = A^T r                    beta = (s.s) / gamma, gamma = s.s
///     p = beta p + s
///
/// Shapes:  A n x n; b, u and the work vectors r, p, q, s n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; at
///          most maxIter iterations.
/// Fails:   q.q = 0 is not tested: u fills with NaN and the loop runs to maxIter with
///          `converged` low.
/// Cost:    a product with A and one with A^T, three dot products and three updates an
///          iteration; 4 n floats kept. The condition number counts squared.
/// Source:  [Bjorck1996], section 7.4
class CgsLsSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` directions.
    CgsLsSolver(int maxIter, double tol);
    ~CgsLsSolver() override;

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
    double gamma_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> q_;
    std::unique_ptr<RealVector> s_;
};

}  // namespace orv
