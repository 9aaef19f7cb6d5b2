#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// The two-point gradient method of Barzilai and Borwein for a symmetric positive definite A:
/// the step length comes from the last change of the gradient, and the residual norm may rise
/// from one iteration to the next.
///
///     g = A u - b, alpha = 0.5
///     d = -1/alpha g               u = u + d
///     gNew = A u - b               y = gNew - g
///     alpha = d.y / d.d            or y.y / y.d, by the selector
///
/// alpha is the inverse of a step length, and the first step is -2 g whatever A is. d.d and y.y
/// are rounded to single precision.
///
/// Shapes:  A n x n; b, u and the work vectors g, gNew, d, y n floats.
/// Stops:   sqrt(gNew.gNew) < tol (absolute), after the update of u; there is no test on the
///          start. At most maxIter iterations.
/// Fails:   d.d = 0 is not tested: u fills with NaN and the loop runs to maxIter with
///          `converged` low.
/// Cost:    one product, three dot products and four vector passes an iteration; 4 n floats
///          kept.
/// Source:  [Raydan1991], after [BarzilaiBorwein1988]
class BbSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` steps.
    BbSolver(int maxIter, double tol);
    ~BbSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start gradient and runs the loop; a start that solves the system isn't
    /// noticed.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step and the next step length.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  protected:
    /// The rule for alpha: 1 takes y.y / y.d, any other number d.y / d.d. Nothing in the engine
    /// changes the 0.
    int selector_ = 0;

  private:
    double nextAlpha(float dd) const;

    double alpha_ = 0.0;
    std::unique_ptr<RealVector> g_;
    std::unique_ptr<RealVector> gNew_;
    std::unique_ptr<RealVector> d_;
    std::unique_ptr<RealVector> y_;
};

}  // namespace orv
