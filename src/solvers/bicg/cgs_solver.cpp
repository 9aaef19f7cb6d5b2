#include "solvers/bicg/cgs_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CgsSolver::CgsSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

CgsSolver::~CgsSolver() = default;

std::unique_ptr<RealVector> CgsSolver::Solve(const Matrix& A, const RealVector& b,
                                             std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &v_, &rTilde_, &uHat_, &q_, &w_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, v_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    rTilde_->CopyFrom(*r_);
    p_->CopyFrom(*r_);
    uHat_->CopyFrom(*r_);
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CgsSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                               std::unique_ptr<RealVector> u) {
    v_ = A.Multiply(*p_, std::move(v_));
    const double rho = rTilde_->Dot(*r_);
    alpha_ = rho / rTilde_->Dot(*v_);
    q_->CopyFrom(*uHat_);
    q_->AddScaled(toFloat(-alpha_), *v_);
    uHat_->Add(*q_);
    u->AddScaled(toFloat(alpha_), *uHat_);
    w_ = A.Multiply(*uHat_, std::move(w_));
    r_->AddScaled(toFloat(-alpha_), *w_);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
        return u;
    }

    beta_ = r_->Dot(*rTilde_) / rho;
    uHat_->CopyFrom(*r_);
    uHat_->AddScaled(toFloat(beta_), *q_);
    q_->AddScaled(toFloat(beta_), *p_);
    p_->CopyFrom(*uHat_);
    p_->AddScaled(toFloat(beta_), *q_);
    return u;
}

}  // namespace orv
