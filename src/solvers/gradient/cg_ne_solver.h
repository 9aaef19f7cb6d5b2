#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Conjugate gradients on A A^T, Craig's form: the error of u falls in each iteration, for any
/// regular A.
///
///     r = b - A u, p = A^T r
///     q = A p                      alpha = r.r / p.p
///     u = u + alpha p
///     r = r - alpha q              beta = (r.r, new) / (r.r, old)
///     p = beta p, w = A^T r, p = p + w
///
/// Shapes:  A n x n; b, u and the work vectors r, p, q, w n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; at
///          most maxIter iterations.
/// Fails:   p.p = 0 is not tested: u fills with NaN and the loop runs to maxIter with
///          `converged` low.
/// Cost:    a product with A and one with A^T, two dot products and four updates an iteration;
///          4 n floats kept. The condition number counts squared.
/// Source:  [Craig1955], as in [Saad2003], section 8.3.2
class CgNeSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` directions.
    CgNeSolver(int maxIter, double tol);
    ~CgNeSolver() override;

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
    std::unique_ptr<RealVector> w_;
};

}  // namespace orv
