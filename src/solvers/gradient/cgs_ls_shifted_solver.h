#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Conjugate gradients in the least squares form for the system of Tikhonov and Phillips,
/// (A^T A + shift I) u = A^T b, which damps what A all but annihilates.
///
///     r = b - A u, s = A^T r - shift u, p = s, gamma = s.s
///     q = A p                      alpha = gamma / (q.q + shift p.p)
///     u = u + alpha p
///     r = r - alpha q
///     s = A^T r, s = s - shift u   beta = (s.s) / gamma, gamma = s.s
///     p = beta p + s
///
/// Shapes:  A n x n; b, u and the work vectors s, p, r, q n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and at the end of an iteration,
///          at most maxIter of them. The test is on b - A u, which the solution of the shifted
///          system leaves above 0, and may never hold.
/// Fails:   a denominator of 0 is not tested: u fills with NaN, as also when s is 0 to the bit,
///          which small systems reach. A limit far above the iterations that the shifted
///          system needs is no gain: alpha and beta are then ratios of rounding errors, and u
///          can leave the solution again.
/// Cost:    a product with A and one with A^T, four dot products and four updates an iteration;
///          4 n floats kept.
/// Quirk:   shifted-unshifted-test
/// Source:  [Bjorck1996], section 7.4
class CgsLsShiftedSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` directions, with a shift of 0.2.
    CgsLsShiftedSolver(int maxIter, double tol);
    ~CgsLsShiftedSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residuals and runs the loop, unless b - A u is small enough.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step along p and the next p.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

    /// Changes the shift of the solves that follow; 0 gives plain least squares.
    virtual void SetShift(double shift);

    /// The shift, also called the regularisation parameter.
    double shift() const { return shift_; }

  private:
    double shift_ = 0.2;
    // The tolerance once more. It keeps its place; the stopping tests read that of the base.
    [[maybe_unused]] double tolCopy_;
    double alpha_ = 0.0;
    double beta_ = 0.0;
    double gamma_ = 0.0;
    std::unique_ptr<RealVector> s_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> q_;
};

}  // namespace orv
