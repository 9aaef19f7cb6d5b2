#pragma once

#include <memory>

#include "solvers/preconditioned/ssor_relaxation.h"
#include "solvers/preconditioned/stab_recurrence_solver.h"

namespace orv {

/// BiCGStab with an SSOR preconditioner, ids 35 ("SGS-BiCGStab") and 39 ("SSOR-BiCGStab"), for an
/// A without symmetry.
///
/// Quirk:   stab-first-direction
/// Source:  [VanDerVorst1992]
class PreconditionedBicgStabSolver : public StabRecurrenceSolver {
  public:
    /// At most `maxIter` steps; `sgs` relaxes the preconditioner by 1 instead of 1.1.
    PreconditionedBicgStabSolver(int maxIter, double tol, bool sgs);
    ~PreconditionedBicgStabSolver() override;

    std::unique_ptr<Matrix> MakePreconditioner(const Matrix& A) override;

    /// The relaxation of the last preconditioner, 1 before the first.
    double omega() const { return relaxation_.omega(); }

  private:
    SsorRelaxation relaxation_;
};

}  // namespace orv
