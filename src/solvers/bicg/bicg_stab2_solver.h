#pragma once

#include <memory>

#include "solvers/bicg/bicg_stab2_state.h"
#include "solvers/iterative_linear_solver.h"

namespace orv {

/// BiCGStab(2) for an A without symmetry: two steps of biconjugate gradients, then the residual
/// is made smallest over a plane. With two dimensions at once it gets on where the eigenvalues
/// are complex and the single omega of BiCGStab comes near 0.
///
///     rTilde = r = b - A u,  rho0 = omega2 = 1,  alpha = 0
///
///     rho0 = -(omega2 rho0)
///     even   rho1 = rTilde.r,  beta = rho1 alpha / rho0,  rho0 = rho1
///            uHat = -beta uHat + r,  v = A uHat,  alpha = rho0 / v.rTilde
///            r = r - alpha v,  s = A r,  u = u + alpha uHat
///     odd    rho1 = rTilde.s,  beta = rho1 alpha / rho0,  rho0 = rho1
///            v = -beta v + s,  w = A v,  alpha = rho0 / w.rTilde
///            uHat = -beta uHat + r,  r = r - alpha v,  s = s - alpha w,  t = A s
///     plane  mu = s.s,  nu = s.t
///            omega2 = ((r.t) - nu (r.s) / mu) / (t.t - nu^2 / mu)
///            omega1 = ((r.s) - omega2 nu) / mu
///            u = u + omega1 r + omega2 s + alpha uHat
///            r = r - omega1 s - omega2 t
///            uHat = uHat - omega1 v - omega2 w
///
/// Shapes:  A n x n; b, u and the work vectors r, uHat, v, w, rTilde, s, t n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r.
/// Fails:   no denominator is tested against 0: u fills with infinities or NaN and the loop runs
///          to maxIter. A solution that is met before the plane step is such a breakdown; so end
///          systems of one and of two unknowns, unless rounding leaves a rest. What a breakdown
///          left in uHat spoils every later solve of that size.
/// Cost:    four products and 20 vector passes an iteration, which does the work of two of
///          BiCGStab; 7 n floats kept.
/// Quirk:   bicgstab2-keeps-direction
/// Source:  [SleijpenFokkema1993]
class BicgStab2Solver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` times two steps.
    BicgStab2Solver(int maxIter, double tol);
    ~BicgStab2Solver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// The even, the odd and the plane step.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    BicgStab2State state_;
};

}  // namespace orv
