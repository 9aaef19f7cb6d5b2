#include "solvers/bicg/bicg_stab_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

BicgStabSolver::BicgStabSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

BicgStabSolver::~BicgStabSolver() = default;

std::unique_ptr<RealVector> BicgStabSolver::Solve(const Matrix& A, const RealVector& b,
                                                  std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &v_, &rTilde_, &s_, &t_, &t2_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, v_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    rTilde_->CopyFrom(*r_);
    p_->CopyFrom(*r_);
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> BicgStabSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                    std::unique_ptr<RealVector> u) {
    const double rho = rTilde_->Dot(*r_);
    v_ = A.Multiply(*p_, std::move(v_));
    alpha_ = rho / rTilde_->Dot(*v_);
    s_->CopyFrom(*r_);
    s_->AddScaled(toFloat(-alpha_), *v_);

    t_ = A.Multiply(*s_, std::move(t_));
    t2_ = A.MultiplyConjugate(*s_, std::move(t2_));  // quirk: stab-conjugate-product
    const float ts = toFloat(s_->Dot(*t_));          // quirk: stab-rounded-step
    omega_ = double{ts} / t2_->Dot(*t_);
    u->AddScaled2(toFloat(alpha_), *p_, toFloat(omega_), *s_);
    r_->CopyFrom(*s_);
    r_->AddScaled(toFloat(-omega_), *t_);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
        return u;
    }

    beta_ = rTilde_->Dot(*r_) / rho;
    p_->ScaleAddScaled2(toFloat(beta_ * alpha_ / omega_), 1.0F, *r_, toFloat(-(beta_ * alpha_)),
                        *v_);
    return u;
}

}  // namespace orv
