#pragma once

#include <memory>

#include "solvers/preconditioned/stab_recurrence_solver.h"

namespace orv {

/// BiCGStab with an incomplete LU preconditioner, id 41 ("ILU0-BiCGStab"), for an A without
/// symmetry that has incomplete factors: a BandMatrix or a FullMatrix.
///
/// Fails:   on a matrix without incomplete factors u fills with NaN, and `converged` stays low.
/// Cost:    that of the recurrence, and a factorisation at each `Solve`, which prints its work
///          row for each row of a BandMatrix unless a SilencedOutput stands.
/// Quirk:   stab-first-direction, incomplete-lu0-prints
/// Source:  [VanDerVorst1992]; [Saad2003], section 10.3
class Ilu0BicgStabSolver : public StabRecurrenceSolver {
  public:
    /// At most `maxIter` steps.
    Ilu0BicgStabSolver(int maxIter, double tol);
    ~Ilu0BicgStabSolver() override;

    std::unique_ptr<Matrix> MakePreconditioner(const Matrix& A) override;
};

}  // namespace orv
