#include "solvers/preconditioned/preconditioned_bb_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

namespace {

constexpr double kFirstInverseStep = 0.5;

}  // namespace

PreconditionedBbSolver::PreconditionedBbSolver(int maxIter, double tol, bool sgs)
    : SsorPreconditioned(maxIter, tol, sgs) {}

PreconditionedBbSolver::~PreconditionedBbSolver() = default;

void PreconditionedBbSolver::PrepareVectors(int n) {
    PrepareWork(n, {&g_, &w_, &z_});
}

bool PreconditionedBbSolver::Start(const Matrix& A, const RealVector& b, const RealVector& u) {
    FormGradient(A, b, u, g_);
    alpha_ = kFirstInverseStep;
    return false;
}

std::unique_ptr<RealVector> PreconditionedBbSolver::Iterate(const Matrix& A,
                                                            const RealVector& /*b*/,
                                                            std::unique_ptr<RealVector> u) {
    Precondition(*g_, z_);
    const float gz = toFloat(g_->Dot(*z_));
    w_ = A.Multiply(*z_, std::move(w_));

    const float step = toFloat(-1.0 / alpha_);
    u->AddScaled(step, *z_);
    g_->AddScaled(step, *w_);
    if (IsBelowTolerance(*g_)) {
        converged_ = true;
        return u;
    }

    alpha_ = z_->Dot(*w_) / double{gz};
    return u;
}

}  // namespace orv
