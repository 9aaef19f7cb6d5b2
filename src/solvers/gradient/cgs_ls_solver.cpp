#include "solvers/gradient/cgs_ls_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CgsLsSolver::CgsLsSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

CgsLsSolver::~CgsLsSolver() = default;

std::unique_ptr<RealVector> CgsLsSolver::Solve(const Matrix& A, const RealVector& b,
                                               std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &q_, &s_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, s_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    p_ = A.MultiplyTransposed(*r_, std::move(p_));
    s_->CopyFrom(*p_);
    gamma_ = s_->SumOfSquares();
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CgsLsSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                 std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*p_, std::move(q_));
    alpha_ = gamma_ / q_->SumOfSquares();
    u->AddScaled(toFloat(alpha_), *p_);
    r_->AddScaled(toFloat(-alpha_), *q_);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
        return u;
    }

    s_ = A.MultiplyTransposed(*r_, std::move(s_));
    const double gammaNew = s_->SumOfSquares();
    beta_ = gammaNew / gamma_;
    gamma_ = gammaNew;
    p_->ScaleAdd(toFloat(beta_), *s_);
    return u;
}

}  // namespace orv
