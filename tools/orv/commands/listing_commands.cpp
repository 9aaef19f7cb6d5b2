#include <algorithm>
#include <cstddef>
#include <string>

#include "commands/commands.h"
#include "help/help_layout.h"
#include "help/help_text.h"
#include "methods/method_catalogue.h"
#include "methods/solver_listing.h"
#include "options/command_line.h"
#include "system/console.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

std::string padded(std::string_view text, std::size_t width) {
    std::string result(text);
    result.resize(std::max(width, result.size()), ' ');
    return result;
}

std::string methodsText() {
    std::string text;
    for (const Method* const method : methodCatalogue()) {
        text += text.empty() ? "" : "\n";
        text += std::string(method->name) + ": " + std::string(method->summary) + "\n";
        for (const Parameter& parameter : method->parameters) {
            text += "  " + padded(parameter.name, 20) + expectation(parameter) + "\n";
        }
    }
    return text;
}

/// What is said of a solver in words.
std::string wordsOn(const SolverEntry& entry) {
    return entry.description + (entry.note.empty() ? "" : "; NOTE: " + std::string(entry.note));
}

/// A row a solver where programs read it; on a terminal the words stand below, folded.
std::string solversText() {
    const bool folded = isTerminal(Stream::Output);
    std::size_t nameWidth = 0;
    std::size_t groupWidth = 0;
    for (const SolverEntry& entry : solverListing()) {
        nameWidth = std::max(nameWidth, entry.name.size());
        groupWidth = folded ? 0 : std::max(groupWidth, entry.group.size() + 2);
    }
    const auto row = [&](std::string_view id, std::string_view name, std::string_view suits,
                         std::string_view group, const std::string& words) {
        return padded(id, 4) + padded(name, nameWidth + 2) + padded(suits, 8) +
               padded(group, groupWidth) +
               (folded ? "\n" + helpRow("", words, 4) : words + "\n");
    };
    std::string text = row("id", "name", "suits", "group", "description");
    for (const SolverEntry& entry : solverListing()) {
        text += row(std::to_string(entry.id), entry.name, suitabilityOf(entry), entry.group,
                    wordsOn(entry));
    }
    return text;
}

/// Reads a command line without words, and prints help, JSON or text.
ExitCode listing(const Verb& verb, const Words& words, std::string (*json)(),
                 std::string (*text)()) {
    CommandLine line;
    std::string error = readCommandLine(verb, words, line);
    if (error.empty() && !line.words.empty()) {
        error = wordTooMany(verb, line.words.front());
    }
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    print(line.given("help") ? verbHelp(verb) : line.given("json") ? json() : text());
    return ExitCode::Done;
}

}  // namespace

ExitCode methodsCommand(const Verb& verb, const Words& words) {
    return listing(verb, words, catalogueAsJson, methodsText);
}

ExitCode solversCommand(const Verb& verb, const Words& words) {
    return listing(verb, words, solversAsJson, solversText);
}

}  // namespace orv::cli
