#pragma once

#include <memory>

#include "solvers/gmres/growing_basis.h"
#include "solvers/gmres/growing_matrix.h"
#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Generalised minimal residuals with a basis of at most m columns, ids 24 and 32: modified
/// Gram-Schmidt and one Givens rotation a column.
///
///     V_0 = r / beta,  g_0 = beta                        with r = b - A u, beta = |r|
///     w = A V_j;   H(i,j) = V_i . w,  w -= H(i,j) V_i    for i = 0 ... j
///     H(j+1,j) = |w|,  V_(j+1) = w / |w|                 column j rotated to upper triangle
///     g_j, g_(j+1) rotated alike;   relRes = |g_(j+1)| / |b|
///     u += sum of y_i V_i,  H y = g                      at the end, or when there are m columns
///
/// Elements of H, g and the rotations are floats; a rotation of two elements is summed in
/// double and rounded once.
///
/// Shapes:  A n x n; b, u, r, t, w and V_0 ... V_m n floats; H (m+1) x (m+1); g and the cosines
///          and sines of the rotations m + 1 floats.
/// Stops:   relRes < tol in the loop, relative to |b| (1 if b = 0); on the start vector |r| < tol
///          (absolute) or |r| / |b| <= tol; at most maxIter columns. With range restriction
///          every start vector comes back untouched for a tol of 0 and more.
/// Fails:   |w| = 0 is not tested. For a tol above 0 it raises `converged`, and u is exact but
///          for a zero on the diagonal of H, as a singular A may leave it: u then has
///          infinities or NaN with `converged` high. For any other tol u fills with NaN, and as
///          no further iteration would change that the loop ends there, with `converged` low.
/// Cost:    a product and 2 j + 5 vector passes for column j; (c + 3) n floats and an H of up to
///          2 c rows kept, c <= m + 1 the most vectors that a solve has come to.
/// Quirk:   gmres-no-restart, gmres-sinking-tolerance, rrgmres-start-untouched
/// Source:  [SaadSchultz1986]; [CalvettiLewisReichel2001] for the restricted range
class GmresSolver : public IterativeLinearSolver {
  public:
    /// An `m` below 2 becomes 2. `rangeRestricted` selects the start of id 32.
    GmresSolver(int maxIter, int m, double tol, bool rangeRestricted);
    ~GmresSolver() override;

    using IterativeLinearSolver::Solve;
    /// Grows the basis and forms the update of u. A start vector that is accepted for its
    /// relative residual lowers `tol` to it, for this and all later solves.
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
    /// The estimate |g_(j+1)| / |b| of the last column, or |r| / |b| of the start vector.
    double relativeResidual() const { return relRes_; }

  private:
    void prepareWork(int n);
    void prepareColumn();
    void formStartResidual(const Matrix& A, const RealVector& b, const RealVector& u);
    void startBasis();
    void rotateColumn();
    void update(RealVector& u);
    void restart(const Matrix& A, const RealVector& b, const RealVector& u);

    int m_;
    bool rangeRestricted_;
    int j_ = 0;
    double bNorm_ = 0.0;
    double beta_ = 0.0;
    double relRes_ = 0.0;
    bool lost_ = false;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> t_;
    std::unique_ptr<RealVector> w_;
    std::unique_ptr<RealVector> g_;
    std::unique_ptr<RealVector> cs_;
    std::unique_ptr<RealVector> sn_;
    GrowingBasis V_;
    GrowingMatrix H_;
};

}  // namespace orv
