#pragma once

#include <memory>

namespace orv {

class Matrix;
class RealVector;

/// A solver of A u = b; the base of all forty-two.
///
/// A is square and of floats. No solver reports an error: a breakdown shows as NaN or infinity
/// in u, and an iteration that does not converge gives its last u.
class LinearSolver {
  public:
    LinearSolver() = default;
    LinearSolver(const LinearSolver&) = delete;
    LinearSolver& operator=(const LinearSolver&) = delete;

    virtual ~LinearSolver();

    /// Tells the solver that A has new values. Only a direct solver has to know.
    virtual void Reset();

    /// Solves A u = b. `rebuild` asks a direct solver to factorise at each call; others drop
    /// it.
    ///
    /// Shapes:  A n x n; b and u n floats. u is the start vector; null starts from a copy of b.
    virtual std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                              bool rebuild, std::unique_ptr<RealVector> u) = 0;

    /// Solves A u = b, keeping factors between calls where there are any.
    virtual std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                              std::unique_ptr<RealVector> u) = 0;
};

}  // namespace orv
