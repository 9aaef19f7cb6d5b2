#include "solvers/preconditioned/ilu0_bicg_stab_solver.h"

#include "algebra/preconditioners/compact_incomplete_lu0.h"

namespace orv {

Ilu0BicgStabSolver::Ilu0BicgStabSolver(int maxIter, double tol)
    : StabRecurrenceSolver(maxIter, tol) {}

Ilu0BicgStabSolver::~Ilu0BicgStabSolver() = default;

std::unique_ptr<Matrix> Ilu0BicgStabSolver::MakePreconditioner(const Matrix& A) {
    return std::make_unique<CompactIncompleteLU0>(A);
}

}  // namespace orv
