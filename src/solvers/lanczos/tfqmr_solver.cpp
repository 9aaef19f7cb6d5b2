#include "solvers/lanczos/tfqmr_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

TfqmrSolver::TfqmrSolver(int maxIter, double tol) : CountingSolver(maxIter, tol) {}

TfqmrSolver::~TfqmrSolver() = default;

std::unique_ptr<RealVector> TfqmrSolver::Solve(const Matrix& A, const RealVector& b,
                                               std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&y_, &rTilde_, &v_, &z_, &w_, &d_});
    converged_ = false;

    FormResidual(A, b, *u, *y_, v_);
    const double norm = std::sqrt(y_->SumOfSquares());
    if (norm < tol_) {
        return u;
    }
    rTilde_->CopyFrom(*y_);
    w_->CopyFrom(*y_);
    d_->Fill(0.0F);
    v_ = A.Multiply(*u, std::move(v_));  // quirk: tfqmr-start-image
    z_->CopyFrom(*v_);
    rho_ = rTilde_->Dot(*y_);
    tau_ = norm;
    theta_ = 0.0;
    eta_ = 0.0;
    k_ = 1;
    return RunCounted(A, b, std::move(u));
}

std::unique_ptr<RealVector> TfqmrSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                 std::unique_ptr<RealVector> u) {
    const double sigma = rTilde_->Dot(*z_);
    if (sigma == 0.0) {
        return u;
    }
    const double rhoOld = rho_;
    const double alpha = rhoOld / sigma;
    y_->AddScaled(toFloat(-alpha), *z_);
    w_->AddScaled(toFloat(-alpha), *v_);
    halfStep(alpha, *u);
    v_ = A.Multiply(*y_, std::move(v_));
    w_->AddScaled(toFloat(-alpha), *v_);
    halfStep(alpha, *u);
    if (IsBelowTolerance(*y_)) {
        converged_ = true;
        return u;
    }

    rho_ = rTilde_->Dot(*w_);
    if (rhoOld == 0.0) {
        return u;
    }
    const double beta = rho_ / rhoOld;
    y_->ScaleAdd(toFloat(beta), *w_);
    z_->ScaleAddScaled(toFloat(beta * beta), toFloat(beta), *v_);
    v_ = A.Multiply(*y_, std::move(v_));
    z_->Add(*v_);
    return u;
}

// The rotation of one search vector, and its part of the solution.
void TfqmrSolver::halfStep(double alpha, RealVector& u) {
    const double thetaOld = theta_;
    theta_ = std::sqrt(w_->SumOfSquares()) / tau_;
    const double c = 1.0 / std::sqrt(theta_ * theta_ + 1.0);
    tau_ = theta_ * tau_ * c;
    const double etaOld = eta_;
    eta_ = c * c * alpha;
    d_->ScaleAdd(toFloat(etaOld * thetaOld * thetaOld / alpha), *y_);
    u.AddScaled(toFloat(eta_), *d_);
}

}  // namespace orv
