#pragma once

#include <memory>

#include "solvers/preconditioned/ssor_preconditioned.h"
#include "solvers/preconditioned/stab_recurrence_solver.h"

namespace orv {

/// BiCGStab with an SSOR preconditioner, ids 35 ("SGS-BiCGStab") and 39 ("SSOR-BiCGStab"), for an
/// A without symmetry.
///
/// Quirk:   stab-first-direction
/// Source:  [VanDerVorst1992]
class PreconditionedBicgStabSolver : public SsorPreconditioned<StabRecurrenceSolver> {
  public:
    /// At most `maxIter` steps; `sgs` relaxes the preconditioner by 1 instead of 1.1.
    PreconditionedBicgStabSolver(int maxIter, double tol, bool sgs);
    ~PreconditionedBicgStabSolver() override;
};

}  // namespace orv
