#include <string>
#include <utility>

#include "commands/chain.h"
#include "commands/commands.h"
#include "help/help_text.h"
#include "pipeline/file_plan.h"
#include "pipeline/job_options.h"
#include "recipe/presets.h"
#include "terminal/messages.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

/// The recipe that the command names: a preset, or the file of the first word, which then goes.
Failure readNamed(const Verb& verb, CommandLine& line, Recipe& recipe) {
    if (line.given("preset")) {
        std::string error = readPreset(line.text("preset"), recipe);
        return error.empty() ? Failure{} : Failure{ExitCode::Usage, "--preset: " + error};
    }
    if (line.words.empty()) {
        return {ExitCode::Usage, missingWord(verb, "the recipe")};
    }
    std::string error = readRecipeFile(line.words.front(), recipe);
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
