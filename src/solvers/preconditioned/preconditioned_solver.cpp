#include "solvers/preconditioned/preconditioned_solver.h"

#include <limits>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv {

PreconditionedSolver::PreconditionedSolver(int maxIter, double tol)
    : IterativeLinearSolver(maxIter, tol) {}

PreconditionedSolver::~PreconditionedSolver() = default;

std::unique_ptr<RealVector> PreconditionedSolver::Solve(const Matrix& A, const RealVector& b,
                                                        std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareVectors(A.Rows());
    converged_ = false;
    M_ = MakePreconditioner(A);
    if (Start(A, b, *u)) {
        return u;
    }
    u = RunIterations(A, b, std::move(u));
    M_.reset();
    return u;
}

void PreconditionedSolver::Precondition(const RealVector& x,
                                        std::unique_ptr<RealVector>& y) const {
    y = M_ != nullptr ? M_->Solve(x, std::move(y)) : nullptr;
    if (y == nullptr) {
        y = std::make_unique<RealVector>(x.size(), std::numeric_limits<float>::quiet_NaN());
    }
}

void PreconditionedSolver::FormGradient(const Matrix& A, const RealVector& b,
                                        const RealVector& u, std::unique_ptr<RealVector>& g) {
    g = A.Multiply(u, std::move(g));
    g->AddScaled(-1.0F, b);
}

}  // namespace orv
