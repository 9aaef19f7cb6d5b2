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

/// What the names of results beside their source get: the name of a single method, "restored"
/// for chains and for restore itself.
std::string suffixOf(const Chain& chain) {
    const bool restored = chain.steps.size() > 1 || chain.steps[0].method->name == "restore";
    return restored ? "restored" : std::string(chain.steps[0].method->name);
}

/// Puts the steps of a preset in the place of the method's own.
std::string takePreset(Chain& chain, JobOptions& options) {
    const std::string name = chain.line.text("preset");
    if (name.empty()) {
        return {};
    }
    if (chain.steps.size() > 1 || !chain.line.parameters.empty()) {
        return "--preset: brings steps and parameters of its own; leave out " +
               (chain.steps.size() > 1 ? std::string("the steps after ','")
                                       : "--" + chain.line.parameters.front().first);
    }
    Recipe recipe;
    std::string error = readPreset(name, recipe);
    if (!error.empty()) {
        return "--preset: " + error;
    }
    chain.steps.clear();
    error = stepsOf(recipe, chain.steps);
    return error.empty() ? takeRecipeOptions(recipe, chain.line, options) : error;
}

}  // namespace

ExitCode methodCommand(const Verb& verb, const Words& words) {
    Chain chain;
    std::string error = readChain(verb, words, chain);
    if (error.empty() && chain.help != nullptr) {
        print(verbHelp(*chain.help));
        return ExitCode::Done;
    }
    JobOptions options;
    if (error.empty()) {
        error = readJobOptions(chain.line, options);
    }
    if (error.empty()) {
        error = takePreset(chain, options);
    }
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    options.command = commandText(verb.name, words);
    FilePlan plan;
    const Failure failure =
        planFiles(verb, chain.line.words, chain.line, options, suffixOf(chain), plan);
    if (failure) {
        return fail(failure.code, failure.text);
    }
    for (const Step& step : chain.steps) {
        for (const std::string& warning : warningsOf(step)) {
            if (!options.quiet) {
                warn(warning);
            }
        }
    }
    return runPlan(plan, chain.steps, options);
}

}  // namespace orv::cli
