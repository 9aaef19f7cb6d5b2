#include "solvers/gradient/cgi_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CgiSolver::CgiSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

CgiSolver::~CgiSolver() = default;

std::unique_ptr<RealVector> CgiSolver::Solve(const Matrix& A, const RealVector& b,
                                             std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &vOld_, &v_, &w_});
    r_->CopyFrom(b);  // quirk: cgi-start-residual
    first_ = true;
    v_ = A.Multiply(b, std::move(v_));
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CgiSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                               std::unique_ptr<RealVector> u) {
    w_ = A.Multiply(*v_, std::move(w_));
    const double sigmaOld = sigma_;
    sigma_ = std::sqrt(w_->Dot(*v_));
    const double sigmaSquared = sigma_ * sigma_;
    alpha_ = r_->Dot(*v_) / sigmaSquared;
    u->AddScaled(toFloat(alpha_), *v_);
    r_->AddScaled(toFloat(-alpha_), *w_);
    if (IsBelowTolerance(*r_)) {
        converged_ = true;
        return u;
    }

    const double ratio = first_ ? 0.0 : sigma_ / sigmaOld;  // quirk: cgi-first-ratio
    beta_ = w_->SumOfSquares() / sigmaSquared;
    // 0 times an infinity or NaN that an earlier solve left in vOld is NaN.
    // quirk: cgi-old-direction
    w_->ScaleAddScaled2(toFloat(1.0 / sigma_), toFloat(-(beta_ / sigma_)), *v_, toFloat(-ratio),
                        *vOld_);
    // vOld = v, v = w; w takes the buffer that is free and is written before it is read.
    std::swap(vOld_, v_);
    std::swap(v_, w_);
    return u;
}

}  // namespace orv
