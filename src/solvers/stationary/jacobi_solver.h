#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Id 1, "Jacobi": not Jacobi's method but the plain product u = A b, `maxIter` times.
///
/// Nothing of the old u enters the result and the iterations repeat each other; the true sweep
/// is `Matrix::JacobiSweep`, which no solver calls.
///
/// Shapes:  A n x n; b and u n floats.
/// Stops:   after exactly maxIter products; tol is not read.
/// Fails:   maxIter of 0 or less gives u back as it came.
/// Cost:    one product an iteration.
/// Quirk:   jacobi-product
class JacobiSolver : public IterativeLinearSolver {
  public:
    /// `maxIter` products; `tol` is stored alone.
    JacobiSolver(int maxIter, double tol);
    ~JacobiSolver() override;

    using IterativeLinearSolver::Solve;
    /// Prepares the work vector, which nothing reads, and runs the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// u = A b.
    std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                        std::unique_ptr<RealVector> u) override;

  private:
    std::unique_ptr<RealVector> work_;
};

}  // namespace orv
