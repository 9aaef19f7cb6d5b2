#pragma once

#include <span>
#include <string>

#include "methods/parameter.h"

namespace orv {

/// One linear solver as clients list it.
struct SolverEntry {
    int id;
    std::string name;
    std::string group;
    std::string description;
    bool available;  ///< whether this build holds it
};

/// All solvers of the catalogue, in the order of their ids.
///
/// Cost:    made at the first call and kept.
std::span<const SolverEntry> solverListing();

/// The same as choices of a parameter: the value is the solver's id.
std::span<const Choice> solverChoices();

}  // namespace orv
