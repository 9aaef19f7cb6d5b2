#include <algorithm>
#include <cstddef>
#include <string>

#include "commands/commands.h"
#include "help/help_text.h"
#include "methods/method_catalogue.h"
#include "methods/solver_listing.h"
#include "options/command_line.h"
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

std::string solversText() {
    std::size_t nameWidth = 0;
    std::size_t groupWidth = 0;
    for (const SolverEntry& entry : solverListing()) {
        nameWidth = std::max(nameWidth, entry.name.size());
        groupWidth = std::max(groupWidth, entry.group.size());
    }
    std::string text = "id  " + padded("name", nameWidth + 2) + padded("suits", 8) +
                       padded("group", groupWidth + 2) + "description\n";
    for (const SolverEntry& entry : solverListing()) {
        text += padded(std::to_string(entry.id), 4) + padded(entry.name, nameWidth + 2) +
                padded(suitabilityOf(entry), 8) + padded(entry.group, groupWidth + 2) +
                entry.description +
                (entry.note.empty() ? "" : "; NOTE: " + std::string(entry.note)) + "\n";
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
