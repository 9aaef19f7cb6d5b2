#include "methods/solver_listing.h"

#include <vector>

#include "methods/json_text.h"
#include "solvers/linear_solver_list.h"

namespace orv {

namespace {

struct Note {
    std::string_view text;
    int above;
};

Note noteOf(int id) {
    constexpr int kJacobi = 1;
    constexpr int kFirstCombined = 27;
    constexpr int kLastCombined = 30;
    if (id == kJacobi) {
        return {"multiplies instead of solving: wrong pictures, for study only", 0};
    }
    if (id >= kFirstCombined && id <= kLastCombined) {
        return {"may break down above 2 solver iterations", 2};
    }
    return {"", 0};
}

std::vector<SolverEntry> listSolvers() {
    LinearSolverList list(50, 10);
    std::vector<SolverEntry> entries;
    for (int id = 0; id < list.count(); ++id) {
        const bool available = list.Create(id, /*maxIter=*/1, /*m=*/2, /*tol=*/1e-4) != nullptr;
        const Note note = noteOf(id);
        entries.push_back({id, list.name(id), list.groupName(list.group(id)),
                           list.description(id), available, note.text, note.above});
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

std::string solversAsJson() {
    JsonText json;
    json.beginArray();
    for (const SolverEntry& entry : solverListing()) {
        json.beginObject();
        json.memberNumber("id", entry.id);
        json.member("name", entry.name);
        json.member("group", entry.group);
        json.member("description", entry.description);
        json.memberBool("works", entry.available);
        json.member("note", entry.note);
        json.end();
    }
    json.end();
    return json.take();
}

std::string solverWarning(int id, int solverIterations) {
    for (const SolverEntry& entry : solverListing()) {
        if (entry.id == id && !entry.note.empty() && solverIterations > entry.noteAbove) {
            return "the solver " + entry.name + " " + std::string(entry.note);
        }
    }
    return {};
}

std::span<const Choice> solverChoices() {
    static const std::vector<Choice> choices = listChoices();
    return choices;
}

}  // namespace orv
