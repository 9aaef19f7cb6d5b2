#include "methods/solver_listing.h"

#include <array>
#include <cstddef>
#include <vector>

#include "methods/json_text.h"
#include "operators/diffusion/scheme_table.h"
#include "solvers/linear_solver_list.h"

namespace orv {

namespace {

constexpr int kSolverCount = 42;

/// What is known of a solver on the systems of a photo.
struct Advice {
    bool lines;
    bool planes;
    std::string_view note = {};
    int noteAbove = 0;
    NoteScope noteScope = NoteScope::AllSchemes;
};

constexpr Advice kBoth{true, true};
constexpr Advice kNotOnAos{false, true, "breaks down on AOS", 0, NoteScope::Aos};
constexpr Advice kWrong{false, false, "doesn't reach the solution: for study only"};

// By id.
constexpr std::array<Advice, kSolverCount> kAdvice{{
    kBoth,                                                                            // Thomas
    {false, false, "multiplies instead of solving: wrong pictures, for study only"},  // Jacobi
    kBoth,                                                                            // GS
    kBoth,                                                                            // SOR
    kBoth,                                                                            // Descent
    {false, true, "may break down on lines, once it is as exact as it can be", 10,
     NoteScope::Lines},                                                         // BB
    kBoth,                                                                      // CBB
    kBoth,                                                                      // CG
    kBoth,                                                                      // CG-NE
    kBoth,                                                                      // CG-NR
    kBoth,                                                                      // CGS-LS
    {false, false, "solves a shifted system: wrong pictures, for study only"},  // CGS-LSsh
    kWrong,                                                                     // CGi
    kWrong,                                                                     // MINRES
    kWrong,                                                                     // MR
    kNotOnAos,                                                                  // SYMMLQ
    kWrong,                                                                     // QMR
    kWrong,                                                                     // TFQMR
    kBoth,                                                                      // BiCG
    kBoth,                                                                      // CGS
    kNotOnAos,                                                                  // BiCGStab
    {false, false,
     "knows no tolerance: breaks down beyond convergence, and on AOS"},            // QmrCGStab
    {false, true, "stalls above its tolerance, and breaks down on AOS and AMOS"},  // QmrCGStab2
    kNotOnAos,                                                      // BiCGStab(2)
    kBoth,                                                          // GMRES(m)
    kBoth,                                                          // GCR(m)
    kWrong,                                                         // MGCR(m)
    kBoth,                                                          // GMRESR
    kNotOnAos,                                                      // GMRESRAlt
    {false, false, "may break down above 2 solver iterations", 2},  // GMRES*-CBB
    kBoth,                                                          // GMRES*-BiCGstab
    kWrong,                                                         // RRMR
    {false, false,
     "returns what it starts from, the picture or black: for study only"},  // RRGMRES(m)
    kBoth,                                                                  // SGS-BB
    kBoth,                                                                  // SGS-CG
    kBoth,                                                                  // SGS-BiCGStab
    kWrong,                                                                 // SGS-BiCGStab(2)
    kBoth,                                                                  // SSOR-BB
    kBoth,                                                                  // SSOR-CG
    kBoth,                                                                  // SSOR-BiCGStab
    kWrong,                                                                 // SSOR-BiCGStab(2)
    {false, true},                                                          // ILU0-BiCGStab
}};

bool covers(NoteScope scope, int scheme) {
    switch (scope) {
        case NoteScope::Aos:
            return scheme == kSchemeAos;
        case NoteScope::Lines:
            return !isUnsplitScheme(scheme);
        default:
            return true;
    }
}

std::vector<SolverEntry> listSolvers() {
    const LinearSolverList list(50, 10);
    std::vector<SolverEntry> entries;
    for (int id = 0; id < list.count(); ++id) {
        const Advice& advice = kAdvice[static_cast<std::size_t>(id)];
        entries.push_back({id, list.name(id), list.groupName(list.group(id)),
                           list.description(id), advice.lines, advice.planes, advice.note,
                           advice.noteAbove, advice.noteScope});
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

std::string_view suitabilityOf(const SolverEntry& entry) {
    if (entry.suitsLines && entry.suitsPlanes) {
        return "both";
    }
    return entry.suitsLines ? "lines" : entry.suitsPlanes ? "planes" : "none";
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
        json.memberBool("suitsLines", entry.suitsLines);
        json.memberBool("suitsPlanes", entry.suitsPlanes);
        json.member("note", entry.note);
        json.end();
    }
    json.end();
    return json.take();
}

std::string solverWarning(int id, int solverIterations, int scheme) {
    for (const SolverEntry& entry : solverListing()) {
        if (entry.id == id && !entry.note.empty() && solverIterations > entry.noteAbove &&
            covers(entry.noteScope, scheme)) {
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
