#include "solvers/iterative_linear_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv {

IterativeLinearSolver::IterativeLinearSolver(int maxIter, double tol)
    : maxIter_(maxIter), tol_(tol) {}

std::unique_ptr<RealVector> IterativeLinearSolver::Solve(const Matrix& A, const RealVector& b,
                                                         bool /*rebuild*/,
                                                         std::unique_ptr<RealVector> u) {
    return Solve(A, b, std::move(u));
}

std::unique_ptr<RealVector> IterativeLinearSolver::Solve(const Matrix& A, const RealVector& b,
                                                         std::unique_ptr<RealVector> u) {
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> IterativeLinearSolver::RunIterations(
    const Matrix& A, const RealVector& b, std::unique_ptr<RealVector> u) {
    converged_ = false;
    for (int it = 0; it < maxIter_ && !converged_; ++it) {
        u = Iterate(A, b, std::move(u));
    }
    return u;
}

std::unique_ptr<RealVector> IterativeLinearSolver::StartVector(const RealVector& b,
                                                               std::unique_ptr<RealVector> u) {
    return u ? std::move(u) : std::make_unique<RealVector>(b);
}

void IterativeLinearSolver::PrepareWork(
    int n, std::initializer_list<std::unique_ptr<RealVector>*> work) {
    if (HasSize(**work.begin(), n)) {
        return;
    }
    for (std::unique_ptr<RealVector>* const vector : work) {
        *vector = std::make_unique<RealVector>(n);
    }
}

bool IterativeLinearSolver::HasSize(const std::unique_ptr<RealVector>& first, int n) {
    return first && first->size() == n;
}

void IterativeLinearSolver::FormResidual(const Matrix& A, const RealVector& b,
                                         const RealVector& u, RealVector& r,
                                         std::unique_ptr<RealVector>& product) {
    product = A.Multiply(u, std::move(product));
    r.CopyFrom(b);
    r.AddScaled(-1.0F, *product);
}

bool IterativeLinearSolver::IsBelowTolerance(const RealVector& r) const {
    return std::sqrt(r.SumOfSquares()) < tol_;
}

}  // namespace orv
