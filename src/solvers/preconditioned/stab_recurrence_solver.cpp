#include "solvers/preconditioned/stab_recurrence_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

StabRecurrenceSolver::StabRecurrenceSolver(int maxIter, double tol)
    : PreconditionedSolver(maxIter, tol) {}

StabRecurrenceSolver::~StabRecurrenceSolver() = default;

void StabRecurrenceSolver::PrepareVectors(int n) {
    PrepareWork(n, {&r_, &p_, &v_, &rTilde_, &s_, &t_, &y_, &z_});
}

bool StabRecurrenceSolver::Start(const Matrix& A, const RealVector& b, const RealVector& u) {
    FormResidual(A, b, u, *r_, v_);
    if (IsBelowTolerance(*r_)) {
        return true;
    }
    rTilde_->CopyFrom(*r_);
    p_->CopyFrom(*r_);
    alpha_ = 1.0;
    omegaStab_ = 1.0;
    rho_ = 1.0;
    return false;
}

std::unique_ptr<RealVector> StabRecurrenceSolver::Iterate(const Matrix& A,
                                                          const RealVector& /*b*/,
                                                          std::unique_ptr<RealVector> u) {
    const double rhoOld = rho_;
    rho_ = rTilde_->Dot(*r_);
    beta_ = (alpha_ / omegaStab_) * (rho_ / rhoOld);
    // p and v are those of the start, r and A u, when the first direction is formed.
    // quirk: stab-first-direction
    p_->ScaleAddScaled2(toFloat(beta_), 1.0F, *r_, toFloat(-(beta_ * omegaStab_)), *v_);
    Precondition(*p_, y_);
    v_ = A.Multiply(*y_, std::move(v_));
    alpha_ = rho_ / rTilde_->Dot(*v_);

    s_->CopyFrom(*r_);
    s_->AddScaled(toFloat(-alpha_), *v_);
    if (IsBelowTolerance(*s_)) {
        converged_ = true;
        u->AddScaled(toFloat(alpha_), *y_);
        return u;
    }

    Precondition(*s_, z_);
    t_ = A.Multiply(*z_, std::move(t_));
    const double ts = toFloat(s_->Dot(*t_));
    omegaStab_ = ts / t_->SumOfSquares();
    u->AddScaled2(toFloat(alpha_), *y_, toFloat(omegaStab_), *z_);
    r_->CopyFrom(*s_);
    r_->AddScaled(toFloat(-omegaStab_), *t_);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
    }
    return u;
}

}  // namespace orv
