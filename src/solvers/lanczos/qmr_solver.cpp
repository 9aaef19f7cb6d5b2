#include "solvers/lanczos/qmr_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

QmrSolver::QmrSolver(int maxIter, double tol) : CountingSolver(maxIter, tol) {}

QmrSolver::~QmrSolver() = default;

std::unique_ptr<RealVector> QmrSolver::Solve(const Matrix& A, const RealVector& b,
                                             std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &d_, &s_, &v_, &w_, &vTilde_, &wTilde_, &p_, &pTilde_, &q_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, pTilde_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    v_->CopyFrom(*r_);
    w_->CopyFrom(*r_);
    vTilde_->CopyFrom(*r_);
    wTilde_->CopyFrom(*r_);
    rho_ = std::sqrt(vTilde_->SumOfSquares());
    xi_ = std::sqrt(wTilde_->SumOfSquares());
    xiCopy_ = xi_;
    gamma_ = 1.0;
    theta_ = 0.0;
    epsilon_ = 0.0;
    eta_ = -1.0;
    k_ = 1;
    return RunCounted(A, b, std::move(u));
}

std::unique_ptr<RealVector> QmrSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                               std::unique_ptr<RealVector> u) {
    if (!findDirections(A)) {
        return u;
    }
    const double rhoOld = rho_;
    extendLanczos(A);
    const double thetaOld = theta_;
    if (!findStep(rhoOld)) {
        return u;
    }
    combine(thetaOld);
    u->Add(*d_);
    r_->AddScaled(-1.0F, *s_);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
    }
    return u;
}

// p, q, pTilde, epsilon and beta; false at a breakdown.
bool QmrSolver::findDirections(const Matrix& A) {
    if (rho_ == 0.0 || xi_ == 0.0) {
        return false;
    }
    v_->DivideScalar(toFloat(rho_));  // quirk: qmr-shrinking-vectors
    w_->DivideScalar(toFloat(xi_));
    const double delta = v_->Dot(*w_);
    if (delta == 0.0) {
        return false;
    }
    if (k_ == 1) {
        p_->CopyFrom(*v_);
        q_->CopyFrom(*w_);
    } else {
        p_->ScaleAdd(toFloat(-(delta * xi_ / epsilon_)), *v_);
        q_->ScaleAdd(toFloat(-(delta * rho_ / epsilon_)), *w_);
    }
    pTilde_ = A.Multiply(*p_, std::move(pTilde_));
    epsilon_ = q_->Dot(*pTilde_);
    if (epsilon_ == 0.0) {
        return false;
    }
    beta_ = epsilon_ / delta;
    return beta_ != 0.0;
}

// vTilde, wTilde and their norms.
void QmrSolver::extendLanczos(const Matrix& A) {
    vTilde_->CopyFrom(*pTilde_);
    vTilde_->AddScaled(toFloat(-beta_), *v_);
    rho_ = std::sqrt(vTilde_->SumOfSquares());
    wTilde_ = A.MultiplyTransposed(*q_, std::move(wTilde_));
    wTilde_->AddScaled(toFloat(-beta_), *w_);
    xi_ = std::sqrt(wTilde_->SumOfSquares());
}

// theta, gamma and eta; false at a breakdown.
bool QmrSolver::findStep(double rhoOld) {
    const double gammaOld = gamma_;
    theta_ = rho_ / (gammaOld * beta_);
    gamma_ = 1.0 / std::sqrt(theta_ * theta_ + 1.0);
    if (gamma_ == 0.0) {
        return false;
    }
    eta_ = -(gamma_ * eta_ * gamma_ * rhoOld) / ((gammaOld * beta_) * gammaOld);
    return true;
}

// The step d of u and the step s of r.
void QmrSolver::combine(double thetaOld) {
    const float eta = toFloat(eta_);
    if (k_ == 1) {
        d_->SetScaled(eta, *p_);
        s_->SetScaled(eta, *pTilde_);
        return;
    }
    const float h = toFloat((gamma_ * thetaOld) * (gamma_ * thetaOld));
    d_->ScaleAddScaled(h, eta, *p_);
    s_->ScaleAddScaled(h, eta, *pTilde_);
}

}  // namespace orv
