#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"
#include "solvers/lanczos/symmetric_lanczos.h"

namespace orv {

/// SYMMLQ for a symmetric A, definite or not: the iterate of least error in the Krylov space,
/// built from the LQ factors of the Lanczos matrix.
///
///     (x, y, rot), c, s, v as in SymmetricLanczos
///     zetaBar = rhs - x zeta       rhs = -(y zeta)      zeta = zetaBar / rot
///     u = u + zeta c wBar + zeta s v                    wBar = s wBar - c v
///     residual = sqrt(zetaBar^2 + rhs^2)
///
/// Shapes:  A n x n; b, u and the work vectors r, v, t, vOld, wBar n floats.
/// Stops:   sqrt(r.r) < tol on the start residual; then residual < tol, the estimate; both
///          absolute; at most maxIter iterations.
/// Fails:   beta = 0, which every 1 x 1 system meets at once, fills u with NaN. The estimate of
///          that step is still a number: if it is below tol, `converged` is raised with it.
/// Cost:    one product and nine vector passes an iteration; 5 n floats kept.
/// Quirk:   symmlq-zeta-stays
/// Source:  [PaigeSaunders1975], section 5
class SymmlqSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` Lanczos steps.
    SymmlqSolver(int maxIter, double tol);
    ~SymmlqSolver() override;

    using IterativeLinearSolver::Solve;
    /// Starts the Lanczos recurrence from the residual of u and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One Lanczos step and its part of the solution.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    SymmetricLanczos lanczos_;
    double beta1_ = 0.0;
    double residual_ = 0.0;
    double zeta_ = 0.0;
    double zetaBar_ = 0.0;
    double rhs_ = 0.0;
    std::unique_ptr<RealVector> wBar_;
};

}  // namespace orv
