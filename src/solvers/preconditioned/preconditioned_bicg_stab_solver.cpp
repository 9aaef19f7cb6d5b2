#include "solvers/preconditioned/preconditioned_bicg_stab_solver.h"

#include "algebra/matrix.h"

namespace orv {

PreconditionedBicgStabSolver::PreconditionedBicgStabSolver(int maxIter, double tol, bool sgs)
    : SsorPreconditioned(maxIter, tol, sgs) {}

PreconditionedBicgStabSolver::~PreconditionedBicgStabSolver() = default;

}  // namespace orv
