#pragma once

#include <initializer_list>
#include <memory>

#include "solvers/linear_solver.h"

namespace orv {

/// Base of all solvers that iterate: the limit, the tolerance and the default loop.
///
/// Stopping is absolute: a class compares the norm of its residual b - A u with `tol`,
/// strictly below, unless it tells otherwise.
class IterativeLinearSolver : public LinearSolver {
  public:
    /// At most `maxIter` iterations, none for 0 or less.
    IterativeLinearSolver(int maxIter, double tol);

    /// Drops `rebuild`: there is nothing to factorise.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b, bool rebuild,
                                      std::unique_ptr<RealVector> u) final;

    /// The default loop: `Iterate` until `converged` is raised, at most `maxIter` times.
    ///
    /// Fails:   with maxIter of 0 or less u comes back as it came, null included.
    std::unique_ptr<RealVector> Solve(const Matrix& A, const RealVector& b,
                                      std::unique_ptr<RealVector> u) override;

    /// One iteration of the method; raises `converged` when the stopping test holds.
    virtual std::unique_ptr<RealVector> Iterate(const Matrix& A, const RealVector& b,
                                                std::unique_ptr<RealVector> u) = 0;

    /// The iteration limit.
    int maxIter() const { return maxIter_; }
    /// The tolerance.
    double tol() const { return tol_; }
    /// Whether the stopping test held in the last `Solve`; a start vector that solves the
    /// system already leaves it low.
    bool converged() const { return converged_; }

  protected:
    /// u, or a new copy of b when u is null: such a solve starts from b and not from zero.
    static std::unique_ptr<RealVector> StartVector(const RealVector& b,
                                                   std::unique_ptr<RealVector> u);

    /// Makes all work vectors anew with n zeros, unless the first has n elements already; they
    /// are then kept with their contents.
    static void PrepareWork(int n, std::initializer_list<std::unique_ptr<RealVector>*> work);

    /// Whether `PrepareWork` would keep the vectors that `first` stands for.
    static bool HasSize(const std::unique_ptr<RealVector>& first, int n);

    /// r = b - A u.
    ///
    /// Shapes:  r n floats; `product` receives A u.
    static void FormResidual(const Matrix& A, const RealVector& b, const RealVector& u,
                             RealVector& r, std::unique_ptr<RealVector>& product);

    /// Whether sqrt(r.r) < tol; never for NaN.
    bool IsBelowTolerance(const RealVector& r) const;

    /// Lowers `converged` and calls `Iterate` until it is raised, at most `maxIter` times.
    std::unique_ptr<RealVector> RunIterations(const Matrix& A, const RealVector& b,
                                              std::unique_ptr<RealVector> u);

    int maxIter_;
    double tol_;
    bool converged_ = false;
};

}  // namespace orv
