#include "methods/solver_listing.h"

#include <vector>

#include "solvers/linear_solver_list.h"

namespace orv {

namespace {

std::vector<SolverEntry> listSolvers() {
    LinearSolverList list(50, 10);
    std::vector<SolverEntry> entries;
    for (int id = 0; id < list.count(); ++id) {
        const bool available = list.Create(id, /*maxIter=*/1, /*m=*/2, /*tol=*/1e-4) != nullptr;
        entries.push_back({id, list.name(id), list.groupName(list.group(id)),
                           list.description(id), available});
    }
    return entries;
}

std::vector<Choice> listChoices() {
    std::vector<Choice> choices;
    for (const SolverEntry& entry : solverListing()) {
        choices.push_back({entry.name, entry.id, entry.description});
    }
    return choices;
}

}  // namespace

std::span<const SolverEntry> solverListing() {
    static const std::vector<SolverEntry> entries = listSolvers();
    return entries;
}

std::span<const Choice> solverChoices() {
    static const std::vector<Choice> choices = listChoices();
    return choices;
}

}  // namespace orv
