#pragma once

#include <memory>

#include "solvers/preconditioned/preconditioned_solver.h"
#include "solvers/preconditioned/ssor_relaxation.h"

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
/// Quirk:   stab2-stale-direction
/// Source:  [SleijpenFokkema1993]
class PreconditionedBicgStab2Solver : public PreconditionedSolver {
  public:
    /// At most `maxIter` double steps; `sgs` relaxes M by 1 instead of 1.1.
    PreconditionedBicgStab2Solver(int maxIter, double tol, bool sgs);
    ~PreconditionedBicgStab2Solver() override;

    /// One double step.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

    std::unique_ptr<Matrix> MakePreconditioner(const Matrix& A) override;

    /// The relaxation of the last preconditioner, 1 before the first.
    double omega() const { return relaxation_.omega(); }

  protected:
    void PrepareVectors(int n) override;
    bool Start(const Matrix& A, const RealVector& b, const RealVector& u) override;

  private:
    void evenStep(const Matrix& A, RealVector& u);
    void oddStep(const Matrix& A);
    void minimise(RealVector& u);

    SsorRelaxation relaxation_;
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double gamma_ = 0.0;
    double rho0_ = 0.0;
    double rho1_ = 0.0;
    double omega1_ = 0.0;
    double omega2_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> uHat_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> w_;
    std::unique_ptr<RealVector> rTilde_;
    std::unique_ptr<RealVector> s_;
    std::unique_ptr<RealVector> t_;
    std::unique_ptr<RealVector> z1_;
    std::unique_ptr<RealVector> z2_;
    std::unique_ptr<RealVector> z3_;
    std::unique_ptr<RealVector> z4_;
};

}  // namespace orv
