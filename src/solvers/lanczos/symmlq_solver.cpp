#include "solvers/lanczos/symmlq_solver.h"

#include <cmath>
#include <utility>

#include "base/rounding.h"

namespace orv {

SymmlqSolver::SymmlqSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

SymmlqSolver::~SymmlqSolver() = default;

std::unique_ptr<RealVector> SymmlqSolver::Solve(const Matrix& A, const RealVector& b,
                                                std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&lanczos_.r, &lanczos_.v, &lanczos_.t, &lanczos_.vOld, &wBar_});
    converged_ = false;

    FormResidual(A, b, *u, *lanczos_.r, lanczos_.t);
    const double norm = std::sqrt(lanczos_.r->SumOfSquares());
    if (norm < tol_) {
        return u;
    }
    beta1_ = norm;
    lanczos_.Begin(beta1_);
    residual_ = beta1_;
    rhs_ = beta1_;
    // zeta is what the last solve, of whatever size, left in it.
    // quirk: symmlq-zeta-stays
    wBar_->CopyFrom(*lanczos_.v);
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> SymmlqSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                  std::unique_ptr<RealVector> u) {
    const SymmetricLanczos::Column column = lanczos_.Advance(A);
    const double c = lanczos_.c;
    const double s = lanczos_.s;

    zetaBar_ = rhs_ - column.x * zeta_;
    rhs_ = -(column.y * zeta_);
    zeta_ = zetaBar_ / column.rot;
    u->AddScaled2(toFloat(zeta_ * c), *wBar_, toFloat(zeta_ * s), *lanczos_.v);
    wBar_->ScaleAddScaled(toFloat(s), toFloat(-c), *lanczos_.v);

    residual_ = std::sqrt(zetaBar_ * zetaBar_ + rhs_ * rhs_);
    if (residual_ < tol_) {
        converged_ = true;
    }
    return u;
}

}  // namespace orv
