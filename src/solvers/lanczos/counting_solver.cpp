#include "solvers/lanczos/counting_solver.h"

#include <climits>
#include <utility>

#include "algebra/real_vector.h"

namespace orv {

CountingSolver::CountingSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

std::unique_ptr<RealVector> CountingSolver::RunCounted(const Matrix& A, const RealVector& b,
                                                       std::unique_ptr<RealVector> u) {
    converged_ = false;
    for (int it = 0; it < maxIter_ && !converged_; ++it) {
        u = Iterate(A, b, std::move(u));
        // Iterations that a breakdown leaves at once are cheap enough to come to the limit.
        if (k_ < INT_MAX) {
            ++k_;
        }
    }
    return u;
}

}  // namespace orv
