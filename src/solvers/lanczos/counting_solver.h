#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// Base of the solvers whose iterations know their number, from 1 on.
class CountingSolver : public IterativeLinearSolver {
  public:
    /// At most `maxIter` iterations, none for 0 or less.
    CountingSolver(int maxIter, double tol);

  protected:
    /// `RunIterations` with k counted up after each `Iterate`. The class sets k to 1 before;
    /// an `Iterate` that is called without `Solve` finds k as it was left.
    std::unique_ptr<RealVector> RunCounted(const Matrix& A, const RealVector& b,
                                           std::unique_ptr<RealVector> u);

    int k_ = 0;
};

}  // namespace orv
