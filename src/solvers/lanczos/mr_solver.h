#pragma once

#include <memory>

#include "solvers/lanczos/counting_solver.h"

namespace orv {

/// Minimal residuals for a symmetric A after Calvetti, on the Krylov space of b ("MR") or, with
/// restricted range, of A b ("RRMR").
///
///     t = A v - beta vOld          alpha = v.t          t = t - alpha v
///     betaOld = beta, beta = |t|   vOld = v             v = (1 / beta) t
///     k = 1:   f = beta            dBar = alpha         phi = 1
///              rBar = sqrt(beta^2 + alpha^2)
///              xiOld = xi          xi = betaOld / rBar  step = betaOld alpha / rBar
///     k > 1:   c = dBar / rBar     s = betaOld / rBar
///              e2 = c f + s alpha  e3 = s beta          dBar = s f - c alpha
///              f = -(beta c)       rBar = sqrt(dBar^2 + beta^2)
///              xi, xiOld = -(e3Old xiOld + e2 xi) / rBar, xi
///              phi = s phi         step = dBar beta phi / rBar
///     w = (-e2 w + v - e3Old wOld) / rBar
///     u = u + step w ("MR") or u + xi w ("RRMR")
///
/// Shapes:  A n x n; b, u and the work vectors v, t, vOld, w, wOld, wPrev n floats.
/// Stops:   norm of the start vector, b or A b, below tol; then |beta| < tol, the Lanczos norm,
///          both absolute; it says nothing of the residual of u. At most maxIter iterations.
/// Fails:   beta = 0, which every 1 x 1 system meets at once, fills u with NaN and raises
///          `converged`.
/// Cost:    one product and ten vector passes an iteration; 6 n floats kept.
/// Quirk:   mr-cleared-direction, mr-lanczos-norm, mr-start-kept
/// Source:  [CalvettiLewisReichel2001]
class MrSolver : public CountingSolver {
  public:
    /// At most `maxIter` Lanczos steps; `rangeRestricted` false is "MR", true is "RRMR".
    MrSolver(int maxIter, double tol, bool rangeRestricted);
    ~MrSolver() override;

    /// Whether this is "RRMR".
    bool rangeRestricted() const { return rangeRestricted_; }

    using IterativeLinearSolver::Solve;
    /// Starts the recurrence from b or A b, whatever u is, and runs the loop, which adds to u.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One Lanczos step and its part of the solution.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double advance(const Matrix& A, double& betaOld);
    double rotateFirst(double alpha, double betaOld);
    double rotate(double alpha, double betaOld, double e3Old);

    bool rangeRestricted_;
    double xi_ = 0.0;
    double xiOld_ = 0.0;
    double c_ = 0.0;
    double s_ = 0.0;
    double beta_ = 0.0;
    double phi_ = 0.0;
    double e2_ = 0.0;
    double e3_ = 0.0;
    double rBar_ = 0.0;
    double dBar_ = 0.0;
    double f_ = 0.0;
    std::unique_ptr<RealVector> v_;
    std::unique_ptr<RealVector> t_;
    std::unique_ptr<RealVector> vOld_;
    std::unique_ptr<RealVector> w_;
    std::unique_ptr<RealVector> wOld_;
    std::unique_ptr<RealVector> wPrev_;
};

}  // namespace orv
