#include "solvers/preconditioned/preconditioned_cg_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

PreconditionedCgSolver::PreconditionedCgSolver(int maxIter, double tol, bool sgs)
    : SsorPreconditioned(maxIter, tol, sgs) {}

PreconditionedCgSolver::~PreconditionedCgSolver() = default;

void PreconditionedCgSolver::PrepareVectors(int n) {
    PrepareWork(n, {&g_, &p_, &q_, &z_});
}

bool PreconditionedCgSolver::Start(const Matrix& A, const RealVector& b, const RealVector& u) {
    FormGradient(A, b, u, g_);
    if (IsBelowTolerance(*g_)) {
        return true;
    }
    Precondition(*g_, z_);
    gz_ = g_->Dot(*z_);
    p_->Fill(0.0F);
    p_->AddScaled(-1.0F, *z_);
    return false;
}

std::unique_ptr<RealVector> PreconditionedCgSolver::Iterate(const Matrix& A,
                                                            const RealVector& /*b*/,
                                                            std::unique_ptr<RealVector> u) {
    q_ = A.Multiply(*p_, std::move(q_));
    const double gz = toFloat(gz_);
    alpha_ = gz / p_->Dot(*q_);
    u->AddScaled(toFloat(alpha_), *p_);
    g_->AddScaled(toFloat(alpha_), *q_);
    if (IsBelowTolerance(*g_)) {
        converged_ = true;
        return u;
    }

    Precondition(*g_, z_);
    gz_ = g_->Dot(*z_);
    beta_ = gz_ / gz;
    p_->ScaleAddScaled(toFloat(beta_), -1.0F, *z_);
    return u;
}

}  // namespace orv
