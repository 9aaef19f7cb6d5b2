#pragma once

#include <string>

#include "studies/study_system.h"

namespace orv {

/// The shape of a task for a solver.
struct SolverTask {
    int scheme;
    int width;
    int height;
    int solverIterations;
};

/// Why a solver can't or shouldn't run on a task, in words; empty when it can.
///
/// `named` says that the user asked for this solver: then a long time is no reason.
///
/// Domain:  an id of the catalogue.
std::string skipReason(int id, const SolverTask& task, bool named);

}  // namespace orv
