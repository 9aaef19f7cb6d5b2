#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// The combined solvers, ids 27 to 30: an outer loop of generalised conjugate residuals with at
/// most l directions, each of them found by a few steps of an inner solver.
///
///     z = inner(A, r, z)               image_k = A z
///     e = -(image_i . image_k),  image_k += e image_i,  z += e search_i    for i < k
///     h = |image_k|                    image_k /= h,  search_k = z / h
///     alpha = image_k . r              u += alpha search_k,  r -= alpha image_k
///
/// After l directions all of them are dropped at once and z starts again from r.
///
/// Shapes:  A n x n; b, u, r, t, z and two vectors for each direction n floats.
/// Stops:   sqrt(r.r) < tol (absolute), on the start residual and after the update of r; at
///          most maxIter outer iterations.
/// Fails:   h = 0 is not tested: u fills with NaN, and as no further iteration would change it
///          the loop ends there, with `converged` low; if there were iterations left, the inner
///          solver meets the NaN once, for what it keeps between solves. This comes near
///          when the inner solver gives its start vector back, as CBB does for residuals below
///          0.01, since the new direction is then the old one. Few iterations, up to 5 on lines
///          of grey levels, stay clear of it as a rule.
/// Cost:    an inner solve, a product and 3 k + 8 vector passes an iteration;
///          (2 d + 3) n floats kept, d the most directions that a solve has come to, at most l:
///          each is made when it is first needed.
/// Source:  [VanDerVorstVuik1994]
class CombinedKrylovSolver : public IterativeLinearSolver {
  public:
    /// An `l` below 2 becomes 2.
    ///
    /// Owns:    the inner solver, which must not be null.
    CombinedKrylovSolver(int maxIter, int l, std::unique_ptr<LinearSolver> inner, double tol);
    ~CombinedKrylovSolver() override;

    using IterativeLinearSolver::Solve;
    /// Forms the start residual and runs the outer loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// Adds direction k.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

    /// The most directions that are held at a time.
    int directions() const { return l_; }
    /// The directions that there is memory for; it grows with use up to `directions`.
    int directionsMade() const { return static_cast<int>(search_.size()); }
    /// The solver that finds the directions.
    const LinearSolver& inner() const { return *inner_; }

  private:
    void prepareWork(int n);
    void prepareDirection(std::size_t k);
    void dropDirections();

    int l_;
    std::unique_ptr<LinearSolver> inner_;
    int k_ = 0;
    bool lost_ = false;
    std::unique_ptr<RealVector> r_;
    std::unique_ptr<RealVector> t_;
    std::unique_ptr<RealVector> z_;
    std::vector<std::unique_ptr<RealVector>> search_;
    std::vector<std::unique_ptr<RealVector>> image_;
};

}  // namespace orv
