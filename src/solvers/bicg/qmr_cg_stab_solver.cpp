#include "solvers/bicg/qmr_cg_stab_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

QmrCgStabSolver::QmrCgStabSolver(int maxIter, double tol, QmrCgStabStep step)
    : IterativeLinearSolver(maxIter, tol), step_(step) {}

QmrCgStabSolver::~QmrCgStabSolver() = default;

std::unique_ptr<RealVector> QmrCgStabSolver::Solve(const Matrix& A, const RealVector& b,
                                                   std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &rTilde_, &v_, &d_, &dTilde_, &s_, &t_, &xTilde_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, s_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    rTilde_->CopyFrom(*r_);
    alpha_ = 1.0;
    rho_ = 1.0;
    omega_ = 1.0;
    tau_ = std::sqrt(r_->SumOfSquares());
    theta_ = 0.0;
    eta_ = 0.0;
    p_->Fill(0.0F);
    v_->Fill(0.0F);
    d_->Fill(0.0F);
    return RunIterations(A, b, std::move(u));
}

double QmrCgStabSolver::stepLength(double normS) const {
    const double st = s_->Dot(*t_);
    if (step_ == QmrCgStabStep::NormQuotient) {
        return normS / st;  // quirk: qmrcgstab2-step
    }
    return double{toFloat(st)} / t_->SumOfSquares();  // quirk: stab-rounded-step
}

std::unique_ptr<RealVector> QmrCgStabSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                     std::unique_ptr<RealVector> u) {
    const double rhoNew = rTilde_->Dot(*r_);
    beta_ = (rhoNew * alpha_) / (rho_ * omega_);
    rho_ = rhoNew;
    p_->ScaleAddScaled2(toFloat(beta_), 1.0F, *r_, toFloat(-(beta_ * omega_)), *v_);
    v_ = A.Multiply(*p_, std::move(v_));
    alpha_ = rho_ / rTilde_->Dot(*v_);
    s_->CopyFrom(*r_);
    s_->AddScaled(toFloat(-alpha_), *v_);

    const double normS = std::sqrt(s_->SumOfSquares());
    const double thetaTilde = normS / tau_;
    const double cTilde = 1.0 / std::sqrt(thetaTilde * thetaTilde + 1.0);
    const double tauTilde = cTilde * thetaTilde * tau_;
    const double etaTilde = cTilde * cTilde * alpha_;
    dTilde_->CopyFrom(*p_);
    dTilde_->AddScaled(toFloat(theta_ * theta_ * eta_ / alpha_), *d_);
    xTilde_->CopyFrom(*u);
    xTilde_->AddScaled(toFloat(etaTilde), *dTilde_);

    t_ = A.Multiply(*s_, std::move(t_));
    omega_ = stepLength(normS);
    r_->CopyFrom(*s_);
    r_->AddScaled(toFloat(-omega_), *t_);

    const double normR = std::sqrt(r_->SumOfSquares());
    theta_ = normR / tauTilde;
    const double c = 1.0 / std::sqrt(theta_ * theta_ + 1.0);
    tau_ = tauTilde * theta_ * c;
    eta_ = c * c * omega_;
    d_->CopyFrom(*s_);
    d_->AddScaled(toFloat(thetaTilde * thetaTilde * etaTilde / omega_), *dTilde_);
    u->CopyFrom(*xTilde_);
    u->AddScaled(toFloat(eta_), *d_);
    if (std::abs(tau_) >= normR) {  // quirk: qmrcgstab-own-test
        converged_ = true;
    }
    return u;
}

}  // namespace orv
