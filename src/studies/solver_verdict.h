#pragma once

#include "studies/solver_curve.h"
#include "studies/solver_study.h"

namespace orv {

/// Writes all of a record but its id from a traced curve.
///
/// Shapes:  `study` holds what it tells of the systems.
void judgeSolver(const SolverCurve& curve, const SolverStudy& study, int solverIterations,
                 SolverRecordOfStudy& record);

}  // namespace orv
