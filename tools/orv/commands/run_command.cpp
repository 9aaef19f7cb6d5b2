#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "commands/chain.h"
#include "commands/commands.h"
#include "files/file_format.h"
#include "help/help_text.h"
#include "pipeline/file_plan.h"
#include "pipeline/job_options.h"
#include "recipe/presets.h"
#include "system/file_system.h"
#include "terminal/messages.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

/// Whether a word that names no file names a preset.
bool looksLikePreset(const std::string& word) {
    const std::span<const Preset> all = presets();
    return !leadsSomewhere(word) &&
           std::any_of(all.begin(), all.end(),
                       [&](const Preset& preset) { return preset.name == word; });
}

/// The recipe that the command names: a preset, or the file of the first word, which then goes.
Failure readNamed(const Verb& verb, CommandLine& line, Recipe& recipe) {
    if (line.given("preset")) {
        std::string error = readPreset(line.text("preset"), recipe);
        return error.empty() ? Failure{} : Failure{ExitCode::Usage, "--preset: " + error};
    }
    if (line.words.empty()) {
        return {ExitCode::Usage, missingWord(verb, "the recipe")};
    }
    const std::string& path = line.words.front();
    if (looksLikePreset(path)) {
        return {ExitCode::Usage,
                "run: '" + path + "' is a preset, no file; write --preset " + path};
    }
    if (formatOfName(path) != nullptr) {
        return {ExitCode::Usage, "run: '" + path + "' is a picture; the recipe comes first: " +
                                     "orv run RECIPE IN... (or orv run --preset NAME IN...)"};
    }
    std::string error = readRecipeFile(path, recipe);
    line.words.erase(line.words.begin());
    return error.empty() ? Failure{} : Failure{ExitCode::Input, std::move(error)};
}

}  // namespace

ExitCode runCommand(const Verb& verb, const Words& words) {
    CommandLine line;
    std::string error = readCommandLine(verb, words, line);
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    if (line.given("help")) {
        print(verbHelp(verb));
        return ExitCode::Done;
    }
    JobOptions options;
    error = readJobOptions(line, options);
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    options.command = commandText(verb.name, words);
    Recipe recipe;
    Failure failure = readNamed(verb, line, recipe);
    std::vector<Step> steps;
    if (!failure) {
        error = takeRecipeOptions(recipe, line, options);
        error = error.empty() ? stepsOf(recipe, steps) : error;
        failure = error.empty() ? Failure{} : Failure{ExitCode::Input, "the recipe: " + error};
    }
    FilePlan plan;
    if (!failure) {
        failure = planFiles(verb, line.words, line, options, "restored", plan);
    }
    if (failure) {
        return fail(failure.code, failure.text);
    }
    options.replayed = std::move(recipe);
    return runPlan(plan, steps, options);
}

}  // namespace orv::cli
