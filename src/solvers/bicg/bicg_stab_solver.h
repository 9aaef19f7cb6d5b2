#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// BiCGStab for an A without symmetry: each step of biconjugate gradients is followed by a step
/// of length omega that makes the residual smallest along s.
///
///     rTilde = p = r = b - A u
///
///     rho = rTilde.r                 v = A p,  alpha = rho / rTilde.v
///     s = r - alpha v                t = A s,  t2 = conjugate(A) s,  omega = (s.t) / (t2.t)
///     u = u + alpha p + omega s      r = s - omega t
///     beta = (rTilde.r) / rho        p = (beta alpha / omega) p + r - beta alpha v
///
/// Here beta is the quotient of the two products; where the literature's beta has the factor
/// alpha / omega, it is applied in the update of p.
///
/// Shapes:  A n x n; b, u and the work vectors r, p, v, rTilde, s, t, t2 n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r.
/// Fails:   rho, rTilde.v, t2.t and omega are not tested against 0: u fills with infinities or
///          NaN and the loop runs to maxIter. A solution that is met in the middle of an
///          iteration is such a breakdown, for s = 0 gives omega = 0 / 0; so end the systems of
///          one unknown, and the identity, unless rounding leaves a rest in s.
///          s.t of less than half the smallest float, with |s| around 1e-23, is rounded to 0 and
///          gives omega = 0.
/// Cost:    three products, one of them a repetition with a plain A, and 12 vector passes an
///          iteration; 7 n floats kept.
/// Quirk:   stab-conjugate-product, stab-rounded-step
/// Source:  [VanDerVorst1992]
class BicgStabSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` steps.
    BicgStabSolver(int maxIter, double tol);
    ~BicgStabSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step of each kind.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double omega_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> rTilde_;
    std::unique_ptr<RealVector> s_;
    std::unique_ptr<RealVector> t_;
    std::unique_ptr<RealVector> t2_;
};

}  // namespace orv
