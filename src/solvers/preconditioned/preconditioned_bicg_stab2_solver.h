#pragma once

#include <memory>

#include "solvers/bicg/bicg_stab2_state.h"
#include "solvers/preconditioned/preconditioned_solver.h"
#include "solvers/preconditioned/ssor_preconditioned.h"

namespace orv {

/// BiCGStab(2) with an SSOR preconditioner M, ids 36 ("SGS-BiCGStab(2)") and 40
/// ("SSOR-BiCGStab(2)"), for an A without symmetry: two steps of BiCG, then one step that
/// minimises the residual in two directions.
///
///     rho0 = -omega2 rho0
///     even:  rho1 = rTilde.r, beta = rho1 alpha / rho0, rho0 = rho1
///            uHat = r - beta uHat        z1 = M-inverse uHat    v = A z1
///            alpha = rho0 / v.rTilde     r = r - alpha v
///            z2 = M-inverse r            s = A z2               u = u + alpha z1
///     odd:   rho1 = rTilde.s, beta = rho1 alpha / rho0, rho0 = rho1
///            v = s - beta v              z3 = M-inverse v       w = A z3
///            alpha = rho0 / w.rTilde     uHat = r - beta uHat
///            r = r - alpha v             s = s - alpha w
///            z4 = M-inverse s            t = A z4
///     both:  omega1 = r.s, mu = s.s, nu = s.t, tauSq = t.t
///            omega2 = (r.t - nu omega1 / mu) / (tauSq - nu nu / mu)
///            omega1 = (omega1 - omega2 nu) / mu
///            u = u + omega1 z2 + omega2 z4 + alpha z1
///            r = r - omega1 s - omega2 t
///            uHat = uHat - omega1 v - omega2 w
///
/// The last update of u takes z1 and z2 from the even step, when uHat and r have moved on. So r
/// drifts away from b - A u, and a small r does not say that u solves the system.
///
/// Shapes:  A n x n; b, u and the work vectors r, uHat, v, w, rTilde, s, t, z1 to z4 n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; at most
///          maxIter iterations.
/// Fails:   no denominator is tested: u fills with NaN and the loop runs to maxIter. uHat keeps
///          the NaN, and so does every later `Solve` of the same size.
/// Cost:    four products, four applications of M, ten dot products and ten updates an
///          iteration; 11 n floats kept, M made at each `Solve`.
/// Quirk:   stab2-stale-direction, bicgstab2-keeps-direction
/// Source:  [SleijpenFokkema1993]
class PreconditionedBicgStab2Solver : public SsorPreconditioned<PreconditionedSolver> {
  public:
    /// At most `maxIter` double steps; `sgs` relaxes M by 1 instead of 1.1.
    PreconditionedBicgStab2Solver(int maxIter, double tol, bool sgs);
    ~PreconditionedBicgStab2Solver() override;

    /// One double step.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  protected:
    void PrepareVectors(int n) override;
    bool Start(const Matrix& A, const RealVector& b, const RealVector& u) override;

  private:
    BicgStab2State state_;
    std::unique_ptr<RealVector> z1_;
    std::unique_ptr<RealVector> z2_;
    std::unique_ptr<RealVector> z3_;
    std::unique_ptr<RealVector> z4_;
};

}  // namespace orv
