#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Conjugate gradients on the normal equations A^T A u = A^T b, on the residual of those.
///
///     r = A^T (b - A u), p = r
///     q = A p, t = conj(A) p       alpha = r.r / t.q
///     u = u + alpha p
///     r = r - alpha A^T q          beta = (r.r, new) / (r.r, old)
///     p = beta p, p = p + r
///
/// t equals q for every matrix whose conjugate product is its product.
///
/// Shapes:  A n x n; b, u and the work vectors r, p, q, t n floats.
/// Stops:   |b - A u| < tol on the start, but sqrt(r.r) < tol, on the residual of the normal
///          equations, after the update of r; both absolute. At most maxIter iterations.
/// Fails:   t.q = 0 is not tested: u fills with NaN and the loop runs to maxIter with
///          `converged` low.
/// Cost:    three products, two dot products and four updates an iteration; 4 n floats kept.
///          The condition number counts squared.
/// Quirk:   cg-nr-two-tests
/// Source:  [HestenesStiefel1952], as in [Saad2003], section 8.3.1
class CgNrSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` directions.
    CgNrSolver(int maxIter, double tol);
    ~CgNrSolver() override;

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
    double rr_ = 0.0;  // r.r of the r that stands now
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> q_;
    std::unique_ptr<RealVector> t_;
};

}  // namespace orv
