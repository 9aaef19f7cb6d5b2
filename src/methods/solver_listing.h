#pragma once

#include <span>
#include <string>
#include <string_view>

#include "methods/parameter.h"

namespace orv {

/// One linear solver as clients list it.
struct SolverEntry {
    int id;
    std::string name;
    std::string group;
    std::string description;
    bool available;  ///< whether this version holds it
    /// What the user of a picture must know before choosing it; empty as a rule.
    std::string_view note;
    int noteAbove;  ///< the note holds for more solver iterations than this
};

/// All solvers of the catalogue, in the order of their ids.
///
/// Cost:    made at the first call and kept.
std::span<const SolverEntry> solverListing();

/// The listing as JSON text: an array of objects, indented by two spaces, with a line break at
/// the end.
std::string solversAsJson();

/// What to warn of when a solver runs with a number of iterations, as one line; empty when there
/// is nothing.
std::string solverWarning(int id, int solverIterations);

/// The same as choices of a parameter: the value is the solver's id.
std::span<const Choice> solverChoices();

}  // namespace orv
