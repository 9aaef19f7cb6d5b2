#include "solvers/bicg/bicg_stab2_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

BicgStab2Solver::BicgStab2Solver(int maxIter, double tol)
    : IterativeLinearSolver(maxIter, tol) {}

BicgStab2Solver::~BicgStab2Solver() = default;

std::unique_ptr<RealVector> BicgStab2Solver::Solve(const Matrix& A, const RealVector& b,
                                                   std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &uHat_, &v_, &w_, &rTilde_, &s_, &t_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, s_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    rTilde_->CopyFrom(*r_);
    rho0_ = 1.0;
    omega2_ = 1.0;
    // The first even step multiplies what uHat holds by 0.
    alpha_ = 0.0;  // quirk: bicgstab2-keeps-direction
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> BicgStab2Solver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                     std::unique_ptr<RealVector> u) {
    rho0_ = -(omega2_ * rho0_);
    evenStep(A, *u);
    oddStep(A);
    planeStep(*u);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
        return u;
    }
    uHat_->AddScaled2(toFloat(-omega1_), *v_, toFloat(-omega2_), *w_);
    return u;
}

void BicgStab2Solver::evenStep(const Matrix& A, RealVector& u) {
    rho1_ = rTilde_->Dot(*r_);
    beta_ = rho1_ * alpha_ / rho0_;
    rho0_ = rho1_;
    uHat_->ScaleAdd(toFloat(-beta_), *r_);
    v_ = A.Multiply(*uHat_, std::move(v_));
    gamma_ = v_->Dot(*rTilde_);
    alpha_ = rho0_ / gamma_;
    r_->AddScaled(toFloat(-alpha_), *v_);
    s_ = A.Multiply(*r_, std::move(s_));
    u.AddScaled(toFloat(alpha_), *uHat_);
}

// u takes the step alpha uHat of this half in the update of the plane step.
void BicgStab2Solver::oddStep(const Matrix& A) {
    rho1_ = rTilde_->Dot(*s_);
    beta_ = rho1_ * alpha_ / rho0_;
    rho0_ = rho1_;
    v_->ScaleAdd(toFloat(-beta_), *s_);
    w_ = A.Multiply(*v_, std::move(w_));
    gamma_ = w_->Dot(*rTilde_);
    alpha_ = rho0_ / gamma_;
    uHat_->ScaleAdd(toFloat(-beta_), *r_);
    r_->AddScaled(toFloat(-alpha_), *v_);
    s_->AddScaled(toFloat(-alpha_), *w_);
    t_ = A.Multiply(*s_, std::move(t_));
}

void BicgStab2Solver::planeStep(RealVector& u) {
    omega1_ = r_->Dot(*s_);
    const double mu = s_->SumOfSquares();
    const double nu = s_->Dot(*t_);
    const double tauSq = t_->SumOfSquares();
    omega2_ = (r_->Dot(*t_) - nu * omega1_ / mu) / (tauSq - nu * nu / mu);
    omega1_ = (omega1_ - omega2_ * nu) / mu;
    u.AddScaled3(toFloat(omega1_), *r_, toFloat(omega2_), *s_, toFloat(alpha_), *uHat_);
    r_->AddScaled2(toFloat(-omega1_), *s_, toFloat(-omega2_), *t_);
}

}  // namespace orv
