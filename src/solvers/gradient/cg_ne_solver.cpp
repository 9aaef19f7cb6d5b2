#include "solvers/gradient/cg_ne_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CgNeSolver::CgNeSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

CgNeSolver::~CgNeSolver() = default;

std::unique_ptr<RealVector> CgNeSolver::Solve(const Matrix& A, const RealVector& b,
                                              std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &q_, &w_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, q_);
    rr_ = r_->SumOfSquares();
    if (std::sqrt(rr_) < tol_) {
        return u;
    }
    p_ = A.MultiplyTransposed(*r_, std::move(p_));
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CgNeSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*p_, std::move(q_));
    const double rrOld = rr_;
    alpha_ = rrOld / p_->SumOfSquares();
    u->AddScaled(toFloat(alpha_), *p_);
    r_->AddScaled(toFloat(-alpha_), *q_);

    rr_ = r_->SumOfSquares();
    if (std::sqrt(rr_) < tol_) {
        converged_ = true;
        return u;
    }
    beta_ = rr_ / rrOld;
    p_->MultiplyScalar(toFloat(beta_));
    w_ = A.MultiplyTransposed(*r_, std::move(w_));
    p_->Add(*w_);
    return u;
}

}  // namespace orv
