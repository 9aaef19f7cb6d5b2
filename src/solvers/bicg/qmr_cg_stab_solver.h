#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// How `QmrCgStabSolver` chooses the length omega of its second step.
enum class QmrCgStabStep {
    MinimalResidual,  ///< (s.t) / (t.t), the step that makes s - omega t smallest
    NormQuotient,     ///< |s| / (s.t), which does not
};

/// "QmrCGStab" and "QmrCGStab2": BiCGStab with a quasi-minimisation after each of its two steps,
/// which smooths the way of u; r is the residual of the BiCGStab beneath, not that of u.
///
///     rTilde = r = b - A u,  p = v = d = 0     alpha = rho = omega = 1
///     tau = |r|,  theta = eta = 0
///
///     beta = (rTilde.r) alpha / (rho omega)    rho = rTilde.r
///     p = beta p + r - beta omega v            v = A p,  alpha = rho / rTilde.v
///     s = r - alpha v
///     thetaTilde = |s| / tau                   c = 1 / sqrt(thetaTilde^2 + 1)
///     tauTilde = c thetaTilde tau              etaTilde = c^2 alpha
///     dTilde = p + (theta^2 eta / alpha) d     xTilde = u + etaTilde dTilde
///     t = A s,  omega as `QmrCgStabStep` says, r = s - omega t
///     theta = |r| / tauTilde                   c = 1 / sqrt(theta^2 + 1)
///     tau = tauTilde theta c                   eta = c^2 omega
///     d = s + (thetaTilde^2 etaTilde / omega) dTilde
///     u = xTilde + eta d
///
/// Shapes:  A n x n; b, u and the work vectors r, p, rTilde, v, d, dTilde, s, t, xTilde n floats.
/// Stops:   sqrt(r.r) < tol (absolute) on the start residual alone. In the loop |tau| >= |r|,
///          without a tolerance: tau is below |r| by its formula, so that the test holds when
///          r is 0 or theta^2 vanishes against 1; other runs take all of maxIter.
/// Fails:   rho, alpha, omega, tau, tauTilde, rTilde.v, t.t and s.t are not tested against 0: u
///          fills with infinities or NaN and the loop runs to maxIter. So ends a limit far beyond
///          what the system needs: r falls on and on, and with |s| around 1e-23 the rounded s.t
///          is 0.
/// Cost:    two products and 19 vector passes an iteration; 9 n floats kept.
/// Quirk:   qmrcgstab-own-test, qmrcgstab2-step, stab-rounded-step
/// Source:  [ChanGallopoulosSimonciniSzetoTong1994]
class QmrCgStabSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` steps of each kind.
    QmrCgStabSolver(int maxIter, double tol, QmrCgStabStep step);
    ~QmrCgStabSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step of each kind, each with its quasi-minimisation.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

    /// How omega is chosen.
    QmrCgStabStep step() const { return step_; }

  private:
    /// omega, from s, its norm and t = A s.
    double stepLength(double normS) const;

    QmrCgStabStep step_;
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double rho_ = 0.0;
    double omega_ = 0.0;
    double tau_ = 0.0;
    double theta_ = 0.0;
    double eta_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> rTilde_;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> d_;
    std::unique_ptr<RealVector> dTilde_;
    std::unique_ptr<RealVector> s_;
    std::unique_ptr<RealVector> t_;
    std::unique_ptr<RealVector> xTilde_;
};

}  // namespace orv
