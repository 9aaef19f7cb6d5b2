#pragma once

#include <span>
#include <string>
#include <string_view>

#include "methods/parameter.h"

namespace orv {

/// Where the note of a solver holds. AOS alone starts a line from the solution of the line before,
/// the first one from zeros.
enum class NoteScope { AllSchemes, Lines, Aos };

/// One linear solver as clients list it.
struct SolverEntry {
    int id;
    std::string name;
    std::string group;
    std::string description;
    /// Whether `restore` works with it by its defaults, and 50 iterations bring the systems of
    /// its first step within half a grey level of the exact picture.
    bool suitsLines;   ///< the systems of LOD, AFI, ADI, AOS and AMOS: one line each
    bool suitsPlanes;  ///< those of 2DSemi and 2DImplicit: the whole plane
    /// What the user of a picture must know before choosing it; empty as a rule.
    std::string_view note;
    int noteAbove;  ///< the note holds for more solver iterations than this
    NoteScope noteScope;
};

/// All solvers of the catalogue, in the order of their ids.
///
/// Cost:    made at the first call and kept.
std::span<const SolverEntry> solverListing();

/// Which schemes the solver suits, in a word: "both", "lines", "planes" or "none".
std::string_view suitabilityOf(const SolverEntry& entry);

/// The listing as JSON text: an array of objects, indented by two spaces, with a line break at
/// the end.
std::string solversAsJson();

/// What to warn of when a solver runs with a number of iterations on a scheme, as one line; empty
/// when there is nothing.
std::string solverWarning(int id, int solverIterations, int scheme);

/// The same as choices of a parameter: the value is the solver's id.
std::span<const Choice> solverChoices();

}  // namespace orv
