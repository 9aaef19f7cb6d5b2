#include "solvers/preconditioned/preconditioned_bicg_stab2_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

PreconditionedBicgStab2Solver::PreconditionedBicgStab2Solver(int maxIter, double tol, bool sgs)
    : PreconditionedSolver(maxIter, tol), relaxation_(sgs) {}

PreconditionedBicgStab2Solver::~PreconditionedBicgStab2Solver() = default;

std::unique_ptr<Matrix> PreconditionedBicgStab2Solver::MakePreconditioner(const Matrix& A) {
    return relaxation_.MakePreconditioner(A);
}

void PreconditionedBicgStab2Solver::PrepareVectors(int n) {
    PrepareWork(n, {&r_, &uHat_, &v_, &w_, &rTilde_, &s_, &t_, &z1_, &z2_, &z3_, &z4_});
}

// uHat stays as the last run left it: alpha = 0 takes it out of the first direction.
bool PreconditionedBicgStab2Solver::Start(const Matrix& A, const RealVector& b,
                                          const RealVector& u) {
    FormResidual(A, b, u, *r_, s_);
    if (IsBelowTolerance(*r_)) {
        return true;
    }
    rTilde_->CopyFrom(*r_);
    rho0_ = 1.0;
    omega2_ = 1.0;
    alpha_ = 0.0;
    return false;
}

std::unique_ptr<RealVector> PreconditionedBicgStab2Solver::Iterate(
    const Matrix& A, const RealVector& /*b*/, std::unique_ptr<RealVector> u) {
    rho0_ = -(omega2_ * rho0_);
    evenStep(A, *u);
    oddStep(A);
    minimise(*u);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
        return u;
    }
    uHat_->AddScaled2(toFloat(-omega1_), *v_, toFloat(-omega2_), *w_);
    return u;
}

void PreconditionedBicgStab2Solver::evenStep(const Matrix& A, RealVector& u) {
    rho1_ = rTilde_->Dot(*r_);
    beta_ = rho1_ * alpha_ / rho0_;
    rho0_ = rho1_;
    uHat_->ScaleAdd(toFloat(-beta_), *r_);
    Precondition(*uHat_, z1_);
    v_ = A.Multiply(*z1_, std::move(v_));
    gamma_ = v_->Dot(*rTilde_);
    alpha_ = rho0_ / gamma_;
    r_->AddScaled(toFloat(-alpha_), *v_);
    Precondition(*r_, z2_);
    s_ = A.Multiply(*z2_, std::move(s_));
    u.AddScaled(toFloat(alpha_), *z1_);
}

void PreconditionedBicgStab2Solver::oddStep(const Matrix& A) {
    rho1_ = rTilde_->Dot(*s_);
    beta_ = rho1_ * alpha_ / rho0_;
    rho0_ = rho1_;
    v_->ScaleAdd(toFloat(-beta_), *s_);
    Precondition(*v_, z3_);
    w_ = A.Multiply(*z3_, std::move(w_));
    gamma_ = w_->Dot(*rTilde_);
    alpha_ = rho0_ / gamma_;
    uHat_->ScaleAdd(toFloat(-beta_), *r_);
    r_->AddScaled(toFloat(-alpha_), *v_);
    s_->AddScaled(toFloat(-alpha_), *w_);
    Precondition(*s_, z4_);
    t_ = A.Multiply(*z4_, std::move(t_));
}

void PreconditionedBicgStab2Solver::minimise(RealVector& u) {
    omega1_ = r_->Dot(*s_);
    const double mu = s_->SumOfSquares();
    const double nu = s_->Dot(*t_);
    const double tauSq = t_->SumOfSquares();
    omega2_ = (r_->Dot(*t_) - nu * omega1_ / mu) / (tauSq - nu * nu / mu);
    omega1_ = (omega1_ - omega2_ * nu) / mu;
    // z1 and z2 belong to uHat and r before the odd step.
    // quirk: stab2-stale-direction
    u.AddScaled3(toFloat(omega1_), *z2_, toFloat(omega2_), *z4_, toFloat(alpha_), *z1_);
    r_->AddScaled2(toFloat(-omega1_), *s_, toFloat(-omega2_), *t_);
}

}  // namespace orv
