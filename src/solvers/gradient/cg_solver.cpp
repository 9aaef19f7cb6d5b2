#include "solvers/gradient/cg_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CgSolver::CgSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

CgSolver::~CgSolver() = default;

std::unique_ptr<RealVector> CgSolver::Solve(const Matrix& A, const RealVector& b,
                                            std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &q_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, q_);
    rr_ = r_->SumOfSquares();
    if (std::sqrt(rr_) < tol_) {
        return u;
    }
    p_->CopyFrom(*r_);
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CgSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                              std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*p_, std::move(q_));
    const double rrOld = rr_;
    alpha_ = rrOld / p_->Dot(*q_);
    u->AddScaled(toFloat(alpha_), *p_);

    rr_ = r_->AddScaledSumOfSquares(toFloat(-alpha_), *q_);
    if (std::sqrt(rr_) < tol_) {
        converged_ = true;
        return u;
    }
    beta_ = rr_ / rrOld;
    p_->ScaleAdd(toFloat(beta_), *r_);
    return u;
}

}  // namespace orv
