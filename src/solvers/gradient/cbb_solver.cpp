#include "solvers/gradient/cbb_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

CbbSolver::CbbSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

CbbSolver::~CbbSolver() = default;

std::unique_ptr<RealVector> CbbSolver::Solve(const Matrix& A, const RealVector& b,
                                             std::unique_ptr<RealVector> u) {
    u = StartVector(b, std::move(u));
    PrepareWork(A.Rows(), {&g_, &q_});
    return RunIterations(A, b, std::move(u));
}

std::unique_ptr<RealVector> CbbSolver::Iterate(const Matrix& A, const RealVector& b,
                                               std::unique_ptr<RealVector> u) {
    g_ = A.Multiply(*u, std::move(g_));
    g_->AddScaled(-1.0F, b);

    const double gg = g_->SumOfSquares();
    if (gg < tol_) {  // quirk: cbb-squared-norm
        converged_ = true;
        return u;
    }

    q_ = A.Multiply(*g_, std::move(q_));
    lambda_ = gg / g_->Dot(*q_);
    u->AddScaled2(toFloat(-2.0 * lambda_), *g_, toFloat(lambda_ * lambda_), *q_);
    return u;
}

}  // namespace orv
