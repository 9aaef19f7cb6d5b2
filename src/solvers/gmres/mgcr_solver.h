#pragma once

#include <memory>

#include "solvers/gmres/growing_basis.h"
#include "solvers/gmres/growing_matrix.h"
#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Minimal residuals without rotations, id 26: the basis begins with the residual itself and
/// goes on with the orthonormal images of its vectors.
///
///     V_0 = r                          with r = b - A u
///     t = A V_j                        H(j,i) = t . V_(i+1)            for i = 0 ... j-1
///     V_(j+1) = t - sum of H(j,i) V_(i+1)
///     H(j,j) = |V_(j+1)|,  V_(j+1) /= H(j,j)
///     g_j = V_0 . V_(j+1)              norm = sqrt(norm^2 - g_j^2)
///     H y = g,  u += sum of y_i V_i    at the end, or when there are m columns
///
/// norm follows |r| from column to column without u.
///
/// Shapes:  A n x n; b, u, r, t and V_0 ... V_m n floats; H (m+1) x (m+1); g and y m + 1 floats.
/// Stops:   norm < tol (absolute) or H(j,j) = 0 exactly, and |r| < tol on the start vector; at
///          most maxIter columns. norm is NaN, and stops nothing, once rounding makes the
///          difference under the root negative, as it may for a tol below a thousandth of |r|
///          at the start: columns of rounding errors then follow up to m or maxIter and spoil u.
/// Fails:   a NaN in A, b or u reaches every element of u, and as no further iteration would
///          change it the loop ends there, with `converged` low. It also stays in y for later
///          solves.
/// Cost:    a product and 2 j + 4 vector passes for column j; (c + 2) n floats and an H of up to
///          2 c rows kept, c <= m + 1 the most vectors that a solve has come to.
/// Quirk:   mgcr-stale-coefficient
/// Source:  [WalkerZhou1994]
class MgcrSolver : public IterativeLinearSolver {
  public:
    /// An `m` below 2 becomes 2.
    MgcrSolver(int maxIter, int m, double tol);
    ~MgcrSolver() override;

    using IterativeLinearSolver::Solve;
    /// Grows the basis and forms the update of u; after m columns it starts again from the
    /// residual of u.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// Adds column j to the basis. u is neither read nor written.
    ///
    /// Domain:  called by `Solve`, which prepares the first vector.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

    /// The most columns of the basis.
    int columns() const { return m_; }
    /// The basis vectors that there is memory for; it grows with use up to `columns` + 1.
    int vectorsMade() const { return V_.made(); }
    /// The running residual norm.
    double runningNorm() const { return norm_; }

  private:
    void prepareWork(int n);
    void prepareColumn();
    void startBasis();
    void update(RealVector& u);
    void loseCoefficients(int count);

    int m_;
    int j_ = 0;
    double norm_ = 0.0;
    bool lost_ = false;
    int lostCoefficients_ = 0;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> g_;
    std::unique_ptr<RealVector> y_;
    std::unique_ptr<RealVector> t_;
    GrowingBasis V_;
    GrowingMatrix H_;
};

}  // namespace orv
