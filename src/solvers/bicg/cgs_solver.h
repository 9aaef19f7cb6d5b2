#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Conjugate gradients squared for an A without symmetry: the polynomial by which biconjugate
/// gradients reduce the residual is applied twice, and no product with the transpose is needed.
///
///     rTilde = p = uHat = r = b - A u
///
///     v = A p              rho = rTilde.r,  alpha = rho / rTilde.v
///     q = uHat - alpha v   uHat = uHat + q
///     u = u + alpha uHat   r = r - alpha A uHat
///     beta = (r.rTilde) / rho
///     uHat = r + beta q    q = q + beta p,  p = uHat + beta q
///
/// What biconjugate gradients reduce is reduced twice, and what they amplify is amplified twice:
/// the residual may rise by orders of magnitude on its way, and the recurred r then ends below
/// the true one, as floats hold 24 bits of what it came from.
///
/// Shapes:  A n x n; b, u and the work vectors r, p, v, rTilde, uHat, q, w n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r.
/// Fails:   rho and rTilde.v are not tested against 0: u fills with infinities or NaN and the
///          loop runs to maxIter.
/// Cost:    two products and 14 vector passes an iteration; 7 n floats kept.
/// Source:  [Sonneveld1989]
class CgsSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` steps.
    CgsSolver(int maxIter, double tol);
    ~CgsSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One squared step.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double alpha_ = 0.0;
    double beta_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> rTilde_;
    std::unique_ptr<RealVector> uHat_;
    std::unique_ptr<RealVector> q_;
    std::unique_ptr<RealVector> w_;
};

}  // namespace orv
