#pragma once

#include <memory>

#include "solvers/iterative_linear_solver.h"

namespace orv {

/// The frame of the solvers with a preconditioner M, which is made anew in every `Solve`, also
/// when no iteration follows, and released at its end.
///
/// A start vector that ends `Solve` at the start test leaves M in place until the next `Solve`
/// or the end of the solver.
///
/// Fails:   where M gives nothing, because none was made or the matrix has no such factors, its
///          result is NaN in every element: u fills with NaN in the first iteration, as in any
///          other breakdown.
class PreconditionedSolver : public IterativeLinearSolver {
  public:
    ~PreconditionedSolver() override;

    using IterativeLinearSolver::Solve;
    /// Prepares u and the work vectors, makes M, runs the start steps and the loop.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) final;

    /// A new preconditioner for A, to be applied by `Matrix::Solve`; may be null.
    virtual std::unique_ptr<Matrix> MakePreconditioner(const Matrix& A) = 0;

  protected:
    /// At most `maxIter` iterations.
    PreconditionedSolver(int maxIter, double tol);

    /// Makes the work vectors for n unknowns, or keeps those of that size.
    virtual void PrepareVectors(int n) = 0;

    /// The start steps of the method. Returns whether the start vector solves the system.
    virtual bool Start(const Matrix& A, const RealVector& b, const RealVector& u) = 0;

    /// y = M-inverse x.
    void Precondition(const RealVector& x, std::unique_ptr<RealVector>& y) const;

    /// g = A u - b, the residual with the opposite sign.
    static void FormGradient(const Matrix& A, const RealVector& b, const RealVector& u,
                             std::unique_ptr<RealVector>& g);

  private:
    std::unique_ptr<Matrix> M_;
};

}  // namespace orv
