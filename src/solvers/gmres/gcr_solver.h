#pragma once

#include <memory>
#include <vector>

#include "solvers/gmres/growing_basis.h"
#include "solvers/gmres/growing_matrix.h"
#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Generalised conjugate residuals, restarted after m directions, id 25.
///
///     ap_j = A p_j                     d_j = ap_j . ap_j
///     alpha = (r . ap_j) / d_j         u += alpha p_j,  r -= alpha ap_j
///     t = A r                          H(i,j) = -(t . ap_i) / d_i      for i = 0 ... j
///     p_(j+1) = r + sum of H(i,j) p_i
///
/// The solve begins with p_0 = r = b - A u, and so does every restart.
///
/// Shapes:  A n x n; b, u, r, t, p_0 ... p_m and ap_0 ... ap_(m-1) n floats; H (m+1) x (m+1).
/// Stops:   |r| < tol (absolute), on the start residual and after the update of r; at most
///          maxIter iterations.
/// Fails:   d_j = 0 is not tested: u fills with NaN, and as no further iteration would change
///          it the loop ends there, with `converged` low.
/// Cost:    two products and 2 j + 8 vector passes for direction j; (2 c + 3) n floats and an H
///          of up to 2 c rows kept, c <= m the most directions that a solve has come to.
/// Source:  [EisenstatElmanSchultz1983]
class GcrSolver : public IterativeLinearSolver {
  public:
    /// An `m` below 2 becomes 2.
    GcrSolver(int maxIter, int m, double tol);
    ~GcrSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the loop with its restarts.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One step along p_j, and direction j + 1.
    ///
    /// Domain:  called by `Solve`, which prepares the first direction.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

    /// The most directions between restarts.
    int directions() const { return m_; }
    /// The directions that there is memory for; it grows with use up to `directions` + 1.
    int directionsMade() const { return p_.made(); }

  private:
    void prepareDirection();
    void formDirection(const Matrix& A);

    int m_;
    int j_ = 0;
    bool lost_ = false;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> t_;
    GrowingBasis p_;
    GrowingBasis ap_;
    std::vector<double> d_;
    GrowingMatrix H_;
};

}  // namespace orv
