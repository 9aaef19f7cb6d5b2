#include "solvers/gradient/cgs_ls_shifted_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CgsLsShiftedSolver::CgsLsShiftedSolver(int maxIter, double tol)
    : IterativeLinearSolver(maxIter, tol), tolCopy_(tol) {}

CgsLsShiftedSolver::~CgsLsShiftedSolver() = default;

std::unique_ptr<RealVector> CgsLsShiftedSolver::Solve(const Matrix& A, const RealVector& b,
                                                      std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&s_, &p_, &r_, &q_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, s_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    s_ = A.MultiplyTransposed(*r_, std::move(s_));
    s_->AddScaled(toFloat(-shift_), *u);
    p_->CopyFrom(*s_);
    gamma_ = s_->SumOfSquares();
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CgsLsShiftedSolver::Iterate(const Matrix& A,
                                                        const RealVector& /*b*/,
                                                        std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*p_, std::move(q_));
    alpha_ = gamma_ / (q_->SumOfSquares() + shift_ * p_->SumOfSquares());
    u->AddScaled(toFloat(alpha_), *p_);
    r_->AddScaled(toFloat(-alpha_), *q_);
    s_ = A.MultiplyTransposed(*r_, std::move(s_));
    s_->AddScaled(toFloat(-shift_), *u);
    if (IsBelowTolerance(*r_)) {  // quirk: shifted-unshifted-test
        converged_ = true;
        return u;
    }

    const double gammaNew = s_->SumOfSquares();
    beta_ = gammaNew / gamma_;
    gamma_ = gammaNew;
    p_->ScaleAdd(toFloat(beta_), *s_);
    return u;
}

void CgsLsShiftedSolver::SetShift(double shift) {
    shift_ = shift;
}

}  // namespace orv
