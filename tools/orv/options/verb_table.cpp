#include <algorithm>
#include <array>

#include "batch/batch_options.h"
#include "commands/commands.h"
#include "commands/compare_options.h"
#include "commands/help_verbs.h"
#include "commands/inspect_command.h"
#include "commands/solve_options.h"
#include "commands/tune_command.h"
#include "methods/automatic.h"
#include "methods/method_catalogue.h"
#include "methods/suggestion.h"
#include "options/common_options.h"
#include "options/verb.h"

namespace orv::cli {

namespace {

constexpr std::array<Option, 1> kPreset{{
    {"preset", '\0', OptionKind::Value, "NAME", "old-print, night, scan, portrait or document",
     "take the steps of a recipe that comes with orv: old-print, night, scan, portrait or "
     "document",
     ValueKind::Words, "old-print night scan portrait document"},
}};
constinit const OptionGroup kPresetOptions{"Recipe", kPreset};

Verb methodVerb(const Method& method) {
    Verb verb;
    verb.name = method.name;
    verb.summary = method.summary;
    verb.words =
        std::string(method.picture) +
        (method.secondPicture.empty() ? "..." : " " + std::string(method.secondPicture)) +
        " [OUT]";
    if (method.name == "restore") {
        verb.groups.push_back(&kPresetOptions);
    }
    if (!method.secondPicture.empty()) {
        verb.groups.push_back(&kSecondOptions);
    }
    verb.groups.insert(verb.groups.end(), {&kFileOptions, &kRecordOptions, &kRunOptions});
    verb.parameters = offeredParameters(method);
    verb.method = &method;
    verb.run = methodCommand;
    return verb;
}

Verb runVerb() {
    Verb verb;
    verb.name = "run";
    verb.summary =
        "Replay a recipe on pictures, and verify the result where the recipe tells it";
    verb.words = "RECIPE IN... [OUT]";
    verb.groups = {&kPresetOptions, &kFileOptions, &kRecordOptions, &kRunOptions};
    verb.example = "orv run --preset scan page.png";
    verb.run = runCommand;
    return verb;
}

Verb batchVerb() {
    Verb verb;
    verb.name = "batch";
    verb.summary = "Run a method or a recipe on many pictures, and go on where it ended";
    verb.words = "VERB IN... -o DIR";
    verb.groups = {&kBatchTargetOptions, &kBatchOptions, &kRunOptions};
    verb.about =
        "VERB is a method or run, with its own options; steps after a comma are taken too. IN "
        "are files, folders or patterns. Every picture is done by a process of its own: a "
        "crash "
        "or a bad file costs that picture alone. DIR holds whole files only, whenever a batch "
        "is stopped, and DIR/.orv the recipe of each.";
    verb.notes =
        "Where results exist already nothing is done, unless --resume skips what is finished "
        "or "
        "--force makes all again. Originals are never overwritten. A picture that needs more "
        "than its share of --max-memory is done at the end, alone. Exit code 1 tells that some "
        "pictures failed; they are listed at the end.";
    verb.example = "orv batch restore scans -o restored --recursive --report report.html";
    verb.run = batchCommand;
    return verb;
}

Verb listingVerb(std::string name, std::string summary,
                 ExitCode (*run)(const Verb&, const Words&)) {
    Verb verb;
    verb.name = std::move(name);
    verb.summary = std::move(summary);
    verb.groups = {&kListingOptions};
    verb.example = "orv " + verb.name + " --json";
    verb.run = run;
    return verb;
}

std::vector<Verb> makeTable() {
    std::vector<Verb> table;
    for (const Method* const method : methodCatalogue()) {
        table.push_back(methodVerb(*method));
    }
    table.push_back(runVerb());
    table.push_back(batchVerb());
    table.push_back(compareVerb());
    table.push_back(solveVerb());
    table.push_back(tuneVerb());
    table.push_back(inspectVerb());
    table.push_back(listingVerb(
        "methods", "List the methods and their parameters, with --json for programs",
        methodsCommand));
    table.push_back(listingVerb("solvers",
                                "List the linear solvers that --solver takes, also with --json",
                                solversCommand));
    table.push_back(helpVerb());
    table.push_back(completionsVerb());
    return table;
}

}  // namespace

const Option* Verb::option(std::string_view optionName) const {
    for (const OptionGroup* const group : groups) {
        for (const Option& candidate : group->options) {
            if (candidate.name == optionName) {
                return &candidate;
            }
        }
    }
    return nullptr;
}

const Parameter* Verb::parameter(std::string_view parameterName) const {
    const auto found = std::find_if(
        parameters.begin(), parameters.end(),
        [&](const Parameter& candidate) { return candidate.name == parameterName; });
    return found == parameters.end() ? nullptr : &*found;
}

std::span<const Verb> verbTable() {
    static const std::vector<Verb> table = makeTable();
    return table;
}

const Verb* findVerb(std::string_view name) {
    for (const Verb& verb : verbTable()) {
        if (verb.name == name) {
            return &verb;
        }
    }
    return nullptr;
}

std::string didYouMeanVerb(std::string_view word) {
    std::vector<std::string_view> names;
    for (const Verb& verb : verbTable()) {
        names.push_back(verb.name);
    }
    return didYouMean(word, names);
}

}  // namespace orv::cli
