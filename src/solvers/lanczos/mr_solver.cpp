#include "solvers/lanczos/mr_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

MrSolver::MrSolver(int maxIter, double tol, bool rangeRestricted)
    : CountingSolver(maxIter, tol), rangeRestricted_(rangeRestricted) {}

MrSolver::~MrSolver() = default;

std::unique_ptr<RealVector> MrSolver::Solve(const Matrix& A, const RealVector& b,
                                            std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));  // quirk: mr-start-kept
    PrepareWork(A.Rows(), {&v_, &t_, &vOld_, &w_, &wOld_, &wPrev_});
    converged_ = false;

    if (rangeRestricted_) {
        v_ = A.Multiply(b, std::move(v_));
    } else {
        v_->CopyFrom(b);
    }
    vOld_->Fill(0.0F);
    wOld_->Fill(0.0F);
    w_->Fill(0.0F);
    c_ = 1.0;
    s_ = 0.0;
    xi_ = 0.0;
    xiOld_ = 0.0;
    e2_ = 0.0;
    e3_ = 0.0;
    const double norm = std::sqrt(v_->SumOfSquares());
    if (norm < tol_) {
        return u;
    }
    beta_ = norm;
    v_->DivideScalar(toFloat(beta_));
    k_ = 1;
    return RunCounted(A, b, std::move(u));
}

// The Lanczos step: gives alpha, moves beta on and leaves the one before in betaOld.
double MrSolver::advance(const Matrix& A, double& betaOld) {
    t_ = A.Multiply(*v_, std::move(t_));
    t_->AddScaled(toFloat(-beta_), *vOld_);
    const double alpha = v_->Dot(*t_);
    t_->AddScaled(toFloat(-alpha), *v_);
    betaOld = beta_;
    beta_ = std::sqrt(t_->SumOfSquares());
    vOld_->CopyFrom(*v_);
    v_->SetScaled(toFloat(1.0 / beta_), *t_);
    return alpha;
}

double MrSolver::rotateFirst(double alpha, double betaOld) {
    f_ = beta_;
    dBar_ = alpha;
    xiOld_ = xi_;
    phi_ = 1.0;
    rBar_ = std::sqrt(beta_ * beta_ + alpha * alpha);
    xi_ = betaOld / rBar_;
    return (betaOld * alpha) / rBar_;
}

double MrSolver::rotate(double alpha, double betaOld, double e3Old) {
    c_ = dBar_ / rBar_;
    s_ = betaOld / rBar_;
    e2_ = c_ * f_ + s_ * alpha;
    e3_ = s_ * beta_;
    dBar_ = s_ * f_ - c_ * alpha;
    f_ = -(beta_ * c_);
    rBar_ = std::sqrt(dBar_ * dBar_ + beta_ * beta_);
    const double xi = -(e3Old * xiOld_ + e2_ * xi_) / rBar_;
    xiOld_ = xi_;
    xi_ = xi;
    phi_ = s_ * phi_;
    return (dBar_ * beta_ * phi_) / rBar_;
}

std::unique_ptr<RealVector> MrSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                              std::unique_ptr<RealVector> u) {
    double betaOld = 0.0;
    const double alpha = advance(A, betaOld);
    const double e3Old = e3_;
    const double step = k_ == 1 ? rotateFirst(alpha, betaOld) : rotate(alpha, betaOld, e3Old);

    wPrev_->CopyFrom(*w_);  // quirk: mr-cleared-direction
    w_->ScaleAddScaled2(toFloat(-e2_), 1.0F, *v_, toFloat(-e3Old), *wOld_);
    w_->DivideScalar(toFloat(rBar_));
    u->AddScaled(toFloat(rangeRestricted_ ? xi_ : step), *w_);
    if (std::abs(beta_) < tol_) {  // quirk: mr-lanczos-norm
        converged_ = true;
    }
    return u;
}

}  // namespace orv
