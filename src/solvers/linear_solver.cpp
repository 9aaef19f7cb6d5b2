#include "solvers/linear_solver.h"

namespace orv {

LinearSolver::~LinearSolver() = default;

void LinearSolver::Reset() {}

}  // namespace orv
