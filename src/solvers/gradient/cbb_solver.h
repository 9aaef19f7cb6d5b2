#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Cauchy-Barzilai-Borwein descent for a symmetric positive definite A: two steepest descent
/// steps of the same Cauchy length from one pair of products, in closed form.
///
///     g = A u - b            gg = g.g
///     q = A g                lambda = gg / g.q
///     u = u - 2 lambda g + lambda^2 q
///
/// Shapes:  A n x n; b, u and the work vectors g, q n floats.
/// Stops:   g.g < tol, the squared norm without a root, before the update; at most maxIter
///          iterations.
/// Fails:   g.q = 0 is not tested: u fills with NaN and the loop runs to maxIter.
/// Cost:    two products, two dot products and two updates an iteration; 2 n floats kept.
/// Quirk:   cbb-squared-norm
/// Source:  [Raydan2002]
class CbbSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` pairs of steps.
    CbbSolver(int maxIter, double tol);
    ~CbbSolver() override;

    using IterativeLinearSolver::Solve;
    /// Prepares u and the work vectors and runs the loop; there is no start phase.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One pair of steps.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    double lambda_ = 0.0;
    std::unique_ptr<RealVector> g_;
    std::unique_ptr<RealVector> q_;
};

}  // namespace orv
