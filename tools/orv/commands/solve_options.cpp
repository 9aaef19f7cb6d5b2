#include "commands/solve_options.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "methods/diffusion_choices.h"
#include "methods/method_catalogue.h"
#include "methods/solver_listing.h"
#include "methods/suggestion.h"

namespace orv::cli {

namespace {

constexpr std::array<TextOption, 1> kTexts{{
    {"solvers", "NAMES", "all, or names or numbers from orv solvers with commas between",
     "which solvers run: all, or names or numbers from orv solvers with commas between "
     "[default: all]"},
}};

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
    return "--solvers: " + problem + " (expected " + std::string(kTexts[0].expected) + ")";
}

std::string_view trimmed(std::string_view word) {
    const std::size_t from = std::min(word.find_first_not_of(' '), word.size());
    word.remove_prefix(from);
    return word.substr(0, word.find_last_not_of(' ') + 1);
}

}  // namespace

Syntax solveSyntax() {
    static const std::vector<Parameter> parameters = makeParameters();
    Syntax syntax;
    syntax.verb = "solve";
    syntax.picture = "IN";
    syntax.parameters = parameters;
    syntax.texts = kTexts;
    syntax.outputExpected = "a file that ends in .html, .csv or .json";
    return syntax;
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
