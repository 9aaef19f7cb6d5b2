#include "solvers/gradient/descent_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

DescentSolver::DescentSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

DescentSolver::~DescentSolver() = default;

std::unique_ptr<RealVector> DescentSolver::Solve(const Matrix& A, const RealVector& b,
                                                 std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &q_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, q_);
    rr_ = r_->SumOfSquares();
    if (std::sqrt(rr_) < tol_) {
        return u;
    }
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> DescentSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                   std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*r_, std::move(q_));
    lambda_ = rr_ / r_->Dot(*q_);
    u->AddScaled(toFloat(lambda_), *r_);
    r_->AddScaled(toFloat(-lambda_), *q_);

    rr_ = r_->SumOfSquares();
    if (std::sqrt(rr_) < tol_) {
        converged_ = true;
    }
    return u;
}

}  // namespace orv
