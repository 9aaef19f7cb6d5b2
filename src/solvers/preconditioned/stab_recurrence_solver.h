#pragma once

#include <memory>

#include "solvers/preconditioned/preconditioned_solver.h"

namespace orv {

/// The BiCGStab recurrence with a preconditioner M, for an A without symmetry; what M is, a class
/// tells by MakePreconditioner.
///
///     rhoOld = rho, rho = rTilde.r       beta = alpha / omegaStab rho / rhoOld
///     p = beta p + r - beta omegaStab v
///     y = M-inverse p                    v = A y
///     alpha = rho / rTilde.v             s = r - alpha v
///     z = M-inverse s                    t = A z
///     omegaStab = s.t / t.t, with s.t in single precision
///     u = u + alpha y + omegaStab z      r = s - omegaStab t
///
/// with r = b - A u, rTilde = p = r, v = A u and all scalars 1 at the start.
///
/// Shapes:  A n x n; b, u and the work vectors r, p, v, rTilde, s, t, y, z n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; also
///          sqrt(s.s) < tol, where u takes its first half step alone; at most maxIter iterations.
/// Fails:   rho, rTilde.v, t.t and omegaStab of 0 are not tested: u fills with NaN and the loop
///          runs to maxIter.
/// Cost:    two products, two applications of M, six dot products and four updates an iteration;
///          8 n floats kept, M made at each `Solve`.
/// Quirk:   stab-first-direction
/// Source:  [VanDerVorst1992]
class StabRecurrenceSolver : public PreconditionedSolver {
  public:
    ~StabRecurrenceSolver() override;

    /// One step.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  protected:
    /// At most `maxIter` steps.
    StabRecurrenceSolver(int maxIter, double tol);

    void PrepareVectors(int n) override;
    bool Start(const Matrix& A, const RealVector& b, const RealVector& u) override;

  private:
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double omegaStab_ = 0.0;
    double rho_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> rTilde_;
    std::unique_ptr<RealVector> s_;
    std::unique_ptr<RealVector> t_;
    std::unique_ptr<RealVector> y_;
    std::unique_ptr<RealVector> z_;
};

}  // namespace orv
