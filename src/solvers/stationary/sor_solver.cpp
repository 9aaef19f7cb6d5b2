#include "solvers/stationary/sor_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"
#include "base/rounding.h"

namespace orv {

SorSolver::SorSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

std::unique_ptr<RealVector> SorSolver::Iterate(const Matrix& A, const RealVector& b,
                                               std::unique_ptr<RealVector> u) {
    return A.SorSweep(b, toFloat(omega_), std::move(u));
}

}  // namespace orv
