#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Conjugate gradients for symmetric indefinite matrices by a Lanczos recurrence of three
/// terms, as it stands in the catalogue with the warning "NOT CORRECT".
///
///     r = b, v = A b
///     w = A v                      sigma = sqrt(w.v)
///     alpha = r.v / sigma^2        u = u + alpha v, r = r - alpha w
///     beta = w.w / sigma^2         ratio = 0
///     w = 1/sigma w - beta/sigma v - ratio vOld
///     vOld = v, v = w
///
/// r starts as b whatever u holds, so a start vector other than 0 stays in the result as an
/// error. ratio is to be sigma over the sigma before from the second iteration on, which is
/// never told to the recurrence: the directions soon lose their conjugacy.
///
/// Shapes:  A n x n; b, u and the work vectors r, vOld, v, w n floats.
/// Stops:   sqrt(r.r) < tol (absolute), after the update of r, which is the residual of u for a
///          start from 0 alone; there is no test on the start. At most maxIter iterations.
/// Fails:   w.v below 0, as indefinite matrices have it, makes sigma NaN, and w.v = 0 divides
///          by 0: u fills with NaN and the loop runs to maxIter with `converged` low. The NaN
///          stays in vOld and spoils the second iteration of later solves of the same size.
/// Cost:    one product, four dot products and three updates an iteration; 4 n floats kept.
/// Quirk:   cgi-start-residual, cgi-first-ratio, cgi-old-direction
class CgiSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` directions.
    CgiSolver(int maxIter, double tol);
    ~CgiSolver() override;

    using IterativeLinearSolver::Solve;
    /// Starts the recurrence from b and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step along v and the next v.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    bool first_ = false;
    double alpha_ = 0.0;
    double sigma_ = 0.0;
    double beta_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> vOld_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> w_;
};

}  // namespace orv
