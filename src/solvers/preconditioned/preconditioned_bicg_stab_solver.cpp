#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"

#include "algebra/matrix.h"

namespace orv {

PreconditionedBicgStabSolver::PreconditionedBicgStabSolver(int maxIter, double tol, bool sgs)
    : StabRecurrenceSolver(maxIter, tol), relaxation_(sgs) {}

PreconditionedBicgStabSolver::~PreconditionedBicgStabSolver() = default;

std::unique_ptr<Matrix> PreconditionedBicgStabSolver::MakePreconditioner(const Matrix& A) {
    return relaxation_.MakePreconditioner(A);
}

}  // namespace orv
