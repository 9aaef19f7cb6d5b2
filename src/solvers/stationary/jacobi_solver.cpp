#include "solvers/stationary/jacobi_solver.h"

#include <utility>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv {

JacobiSolver::JacobiSolver(int maxIter, double tol) : IterativeLinearSolver(maxIter, tol) {}

JacobiSolver::~JacobiSolver() = default;

std::unique_ptr<RealVector> JacobiSolver::Solve(const Matrix& A, const RealVector& b,
                                                std::unique_ptr<RealVector> u) {
    // Nothing reads the vector, so one of the right size is as good as a new one.
    PrepareWork(A.Rows(), {&work_});
    return IterativeLinearSolver::Solve(A, b, std::move(u));
}

std::unique_ptr<RealVector> JacobiSolver::Iterate(const Matrix& A, const RealVector& b,
                                                  std::unique_ptr<RealVector> u) {
    return A.Multiply(b, std::move(u));  // quirk: jacobi-product
}

}  // namespace orv
