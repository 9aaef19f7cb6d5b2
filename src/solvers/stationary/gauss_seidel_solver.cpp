#include "solvers/stationary/gauss_seidel_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv {

GaussSeidelSolver::GaussSeidelSolver(int maxIter, double tol)
    : IterativeLinearSolver(maxIter, tol) {}

std::unique_ptr<RealVector> GaussSeidelSolver::Iterate(const Matrix& A, const RealVector& b,
                                                       std::unique_ptr<RealVector> u) {
    return A.GaussSeidelSweep(b, std::move(u));
}

}  // namespace orv
