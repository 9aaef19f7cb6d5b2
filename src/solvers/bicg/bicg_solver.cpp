#include "solvers/bicg/bicg_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

BicgSolver::BicgSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

BicgSolver::~BicgSolver() = default;

std::unique_ptr<RealVector> BicgSolver::Solve(const Matrix& A, const RealVector& b,
                                              std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &q_, &rHat_, &pHat_, &qHat_});
    converged_ = false;

    u->Fill(0.0F);  // quirk: bicg-clears-start
    FormResidual(A, b, *u, *r_, q_);
    if (IsBelowTolerance(*r_)) {
        return u;
    }
    rHat_->CopyFrom(*r_);
    p_->CopyFrom(*r_);
    pHat_->CopyFrom(*r_);
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> BicgSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*p_, std::move(q_));
    qHat_ = A.MultiplyTransposed(*pHat_, std::move(qHat_));
    const double rho = rHat_->Dot(*r_);
    alpha_ = rho / pHat_->Dot(*q_);
    u->AddScaled(toFloat(alpha_), *p_);
    r_->AddScaled(toFloat(-alpha_), *q_);
    rHat_->AddScaled(toFloat(-alpha_), *qHat_);
    if (IsBelowTolerance(*r_) && IsBelowTolerance(*rHat_)) {  // quirk: bicg-shadow-residual
        converged_ = true;
        return u;
    }

    beta_ = r_->Dot(*rHat_) / rho;
    p_->ScaleAdd(toFloat(beta_), *r_);
    pHat_->ScaleAdd(toFloat(beta_), *rHat_);
    return u;
}

}  // namespace orv
