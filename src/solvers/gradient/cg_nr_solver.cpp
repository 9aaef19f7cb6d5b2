#include "solvers/gradient/cg_nr_solver.h"

#include <cmath>
#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CgNrSolver::CgNrSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

CgNrSolver::~CgNrSolver() = default;

std::unique_ptr<RealVector> CgNrSolver::Solve(const Matrix& A, const RealVector& b,
                                              std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&r_, &p_, &q_, &t_});
    converged_ = false;

    FormResidual(A, b, *u, *r_, q_);
    rr_ = r_->SumOfSquares();
    if (std::sqrt(rr_) < tol_) {
        return u;
    }
    p_ = A.MultiplyTransposed(*r_, std::move(p_));
    r_->CopyFrom(*p_);
    rr_ = r_->SumOfSquares();
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CgNrSolver::Iterate(const Matrix& A, const RealVector& /*b*/,
                                                std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*p_, std::move(q_));
    t_ = A.MultiplyConjugate(*p_, std::move(t_));
    const double rrOld = rr_;
    alpha_ = rrOld / t_->Dot(*q_);
    u->AddScaled(toFloat(alpha_), *p_);
    t_ = A.MultiplyTransposed(*q_, std::move(t_));
    r_->AddScaled(toFloat(-alpha_), *t_);

    rr_ = r_->SumOfSquares();
    if (std::sqrt(rr_) < tol_) {  // quirk: cg-nr-two-tests
        converged_ = true;
        return u;
    }
    beta_ = rr_ / rrOld;
    p_->MultiplyScalar(toFloat(beta_));
    p_->Add(*r_);
    return u;
}

}  // namespace orv
