#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Biconjugate gradients for an A without symmetry: the residual r of A u = b and a shadow
/// residual rHat of the transposed system are reduced side by side.
///
///     r = rHat = p = pHat = b                  u = 0
///
///     q = A p,  qHat = A-transposed pHat       rho = rHat.r,  alpha = rho / pHat.q
///     u = u + alpha p                          r = r - alpha q,  rHat = rHat - alpha qHat
///     beta = (r.rHat) / rho                    p = beta p + r,  pHat = beta pHat + rHat
///
/// For a symmetric A both residuals are one and these are conjugate gradients.
///
/// Shapes:  A n x n; b, u and the work vectors r, p, q, rHat, pHat, qHat n floats. The start
///          vector gives u its memory and no more: every solve starts from 0.
/// Stops:   sqrt(r.r) < tol and sqrt(rHat.rHat) < tol as well (absolute), after the update of
///          both; on r alone before the first iteration.
/// Fails:   rho and pHat.q are not tested against 0: u fills with infinities or NaN and the loop
///          runs to maxIter.
/// Cost:    a product with A, one with its transpose and nine or ten vector passes an iteration;
///          6 n floats kept.
/// Quirk:   bicg-clears-start, bicg-shadow-residual
/// Source:  [Fletcher1976]
class BicgSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` steps.
    BicgSolver(int maxIter, double tol);
    ~BicgSolver() override;

    using IterativeLinearSolver::Solve;
    /// Clears u, forms both start residuals and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step of both recurrences.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double alpha_ = 0.0;
    double beta_ = 0.0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> p_;
    std::unique_ptr<RealVector> q_;
    std::unique_ptr<RealVector> rHat_;
    std::unique_ptr<RealVector> pHat_;
    std::unique_ptr<RealVector> qHat_;
};

}  // namespace orv
