#include "commands/solve_options.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "commands/commands.h"
#include "methods/diffusion_choices.h"
#include "methods/method_catalogue.h"
#include "methods/solver_listing.h"
#include "methods/suggestion.h"
#include "options/common_options.h"

namespace orv::cli {

namespace {

constexpr std::string_view kSolverNames =
    "all, or names or numbers from orv solvers with commas between";

constexpr std::array<Option, 3> kOptions{{
    {"solvers", '\0', OptionKind::Value, "NAMES", kSolverNames,
     "which solvers run: all, or names or numbers from orv solvers with commas between "
     "[default: all]"},
    {"output", 'o', OptionKind::Value, "FILE", "a file that ends in .html, .csv or .json",
     "write a report: .html is a page with plots that needs nothing else, .csv has a line for "
     "each solver and limit, .json has all",
     ValueKind::File},
    {"force", 'f', OptionKind::Flag, "", "", "overwrite FILE if it exists"},
}};
constinit const OptionGroup kSolveOptions{"Report", kOptions};

constexpr std::string_view kAbout =
    "The system is that of the first time step of orv restore with the same values, on the "
    "brightness (Rec. 601, 0 to 255) of the middle of the picture. Each solver runs with "
    "growing "
    "iteration limits, and each result is compared in double precision with the exact "
    "solution.";

constexpr std::string_view kNotes =
    "Status of a solver: converged (stopped by its own test or came to rest, as exact as it "
    "can "
    "be), limit (used all iterations, or stopped short of its tolerance), broke down (gave "
    "samples "
    "that are no numbers), wrong (left more than half of the error it began with, or never "
    "moved), skipped (wasn't run, for the reason that is told).\n"
    "The line (exact as floats) is the exact solution rounded to floats: no solver can do "
    "better. "
    "Only the first time step is studied, on the brightness alone: a solver that does well "
    "there "
    "may still break down in a later step.";

/// The schemes whose systems can be studied, the unsplit one first.
std::span<const Choice> studiedSchemes() {
    static const std::vector<Choice> schemes = [] {
        std::vector<Choice> chosen;
        for (const std::string_view name : {"2DSemi", "LOD", "AOS"}) {
            const std::span<const Choice> all = schemeChoices();
            std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                         [&](const Choice& scheme) { return scheme.name == name; });
        }
        return chosen;
    }();
    return schemes;
}

/// The parameters of `restore` that make the system, and the size of the picture's middle.
std::vector<Parameter> makeParameters() {
    const Method* const restore = findMethod("restore");
    std::vector<Parameter> chosen;
    for (const std::string_view name :
         {"scheme", "flow", "tau", "sigma", "contrast", "norm", "solver-iterations"}) {
        const std::span<const Parameter> all = restore->parameters;
        std::copy_if(all.begin(), all.end(), std::back_inserter(chosen),
                     [&](const Parameter& parameter) { return parameter.name == name; });
    }
    Parameter& scheme = chosen.front();
    scheme.choices = studiedSchemes;
    scheme.defaultValue = studiedSchemes().front().value;
    chosen.push_back(integer("size", "pixels", 256, 0, 100000,
                             "side of the square in the middle; 0 takes the whole picture"));
    return chosen;
}

const SolverEntry* solverOf(std::string_view word) {
    const bool number = !word.empty() && word.find_first_not_of("0123456789") == word.npos;
    for (const SolverEntry& entry : solverListing()) {
        if (number ? std::to_string(entry.id) == word : sameWord(entry.name, word)) {
            return &entry;
        }
    }
    return nullptr;
}

std::string unknownSolver(std::string_view word) {
    std::vector<std::string_view> names{"all"};
    for (const SolverEntry& entry : solverListing()) {
        names.push_back(entry.name);
    }
    const std::string problem =
        sameWord(word, "all")
            ? "'all' goes with no other name"
            : "'" + std::string(word) + "' is not known" + didYouMean(word, names);
    return "--solvers: " + problem + " (expected " + std::string(kSolverNames) + ")";
}

std::string_view trimmed(std::string_view word) {
    const std::size_t from = std::min(word.find_first_not_of(' '), word.size());
    word.remove_prefix(from);
    return word.substr(0, word.find_last_not_of(' ') + 1);
}

}  // namespace

Verb solveVerb() {
    Verb verb;
    verb.name = "solve";
    verb.summary = "Compare the linear solvers on the system of a picture";
    verb.words = "IN";
    verb.groups = {&kSolveOptions, &kReportRunOptions};
    verb.parameters = makeParameters();
    verb.parametersTitle = "System";
    verb.about = kAbout;
    verb.notes = kNotes;
    verb.example = "orv solve photo.jpg --scheme 2DSemi --solvers Thomas,CG -o solvers.html";
    verb.run = solveCommand;
    return verb;
}

std::string readSolvers(std::string_view text, std::vector<int>& ids, bool& named) {
    ids.clear();
    named = !sameWord(trimmed(text), "all");
    if (!named) {
        for (const SolverEntry& entry : solverListing()) {
            ids.push_back(entry.id);
        }
        return {};
    }
    std::size_t from = 0;
    while (from <= text.size()) {
        const std::size_t end = std::min(text.find(',', from), text.size());
        const std::string_view word = trimmed(text.substr(from, end - from));
        const SolverEntry* const found = solverOf(word);
        if (found == nullptr) {
            return unknownSolver(word);
        }
        ids.push_back(found->id);
        from = end + 1;
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return {};
}

}  // namespace orv::cli
