#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"
#include "solvers/lanczos/symmetric_lanczos.h"

namespace orv {

/// MINRES for a symmetric A, definite or not, with directions that lag one step behind the
/// Lanczos vectors: a solver for comparisons, not for results.
///
///     (x, y, rot), c, s, v as in SymmetricLanczos
///     q = w           w = w - x p          w = v           w = w - y p
///     p = q / rot     u = u + eta c p      eta = eta s
///
/// The recurrence keeps its order, by which p is made from the w of the iteration before. The
/// first iteration of a fresh solver adds nothing to u, and the first Lanczos vector never
/// reaches it.
///
/// Shapes:  A n x n; b, u and the work vectors r, v, t, vOld, p, q, w n floats.
/// Stops:   sqrt(r.r) < tol on the start residual; then |eta| < tol, both absolute; eta
///          shrinks by the sines whatever u has received, so `converged` says nothing of the
///          residual of u. At most maxIter iterations.
/// Fails:   at beta = 0, which every 1 x 1 system meets at once, v and w fill with NaN while
///          eta = 0 raises `converged`; that w spoils every later solve of this size.
/// Cost:    one product and fourteen vector passes an iteration; 7 n floats kept.
/// Quirk:   minres-kept-direction, minres-lost-vector
/// Source:  [PaigeSaunders1975], section 6
class MinresSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` Lanczos steps.
    MinresSolver(int maxIter, double tol);
    ~MinresSolver() override;

    using IterativeLinearSolver::Solve;
    /// Starts the Lanczos recurrence from the residual of u and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One Lanczos step and its part of the solution.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    SymmetricLanczos lanczos_;
    double eta_ = 0.0;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> q_;
    std::unique_ptr<RealVector> w_;
};

}  // namespace orv
