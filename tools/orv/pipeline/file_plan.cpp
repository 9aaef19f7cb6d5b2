#include "pipeline/file_plan.h"

#include <cstddef>
#include <utility>

#include "files/file_format.h"
#include "files/input_files.h"
#include "files/output_file.h"
#include "files/output_names.h"
#include "system/file_system.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

/// What forbids a file of records beside the pictures of a plan; empty when nothing does.
std::string recordRefusal(const std::string& option, const std::string& record,
                          const std::string& other, const FilePlan& plan) {
    if (record.empty()) {
        return {};
    }
    if (record == "-") {
        return option + ": takes a file, not standard output";
    }
    if (plan.files.size() > 1) {
        return option + ": is for one picture, and these are " +
               std::to_string(plan.files.size()) +
               (option == "--recipe" ? "; orv batch keeps a recipe of each" : "");
    }
    for (const JobFiles& files : plan.files) {
        if (isSameFile(record, files.input)) {
            return option + ": " + record + " is the picture that is read";
        }
        if (isSameFile(record, files.output) || record == other) {
            return option + ": " + record + " is written already; name another file";
        }
    }
    return {};
}

/// Whether a second word that is to be written exists and may be meant to be read.
bool mayBeAnInput(const std::string& path) {
    return formatOfName(path) != nullptr && isRegularFile(path);
}

}  // namespace

Failure planFiles(const Verb& verb, const Words& words, const CommandLine& line,
                  const JobOptions& options, std::string_view suffix, FilePlan& plan) {
    if (words.empty()) {
        return {ExitCode::Usage, missingWord(verb, "the picture to read")};
    }
    Words named = words;
    OutputOrder order;
    order.output = line.text("output");
    order.suffix = suffix;
    order.verb = verb.name;
    order.ending = options.format.empty() ? std::string() : "." + options.format;
    if (order.output.empty() && named.size() == 2) {
        order.output = named.back();
        named.pop_back();
        if (!options.force && mayBeAnInput(order.output)) {
            return {ExitCode::Output,
                    order.output +
                        ": exists already, and the second word is the file to write; "
                        "-o FOLDER reads both pictures, --force overwrites it"};
        }
    }
    InputSettings settings;
    settings.suffixes = {std::string(suffix)};
    std::vector<InputFile> inputs;
    std::string error = expandInputs(named, settings, inputs, plan.notes);
    if (!error.empty()) {
        return {ExitCode::Input, std::move(error)};
    }
    order.severalNamed = named.size() > 1;
    std::vector<std::string> outputs;
    error = planOutputs(inputs, order, outputs);
    if (!error.empty()) {
        return {ExitCode::Output, std::move(error)};
    }
    const auto count = static_cast<int>(inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        plan.files.push_back({inputs[i].path, outputs[i], static_cast<int>(i) + 1, count});
    }
    error = recordRefusal("--recipe", options.recipe, options.comparison, plan);
    if (error.empty()) {
        error = recordRefusal("--compare", options.comparison, options.recipe, plan);
    }
    if (!error.empty()) {
        return {ExitCode::Usage, std::move(error)};
    }
    return {};
}

ExitCode runPlan(const FilePlan& plan, const std::vector<Step>& steps,
                 const JobOptions& options) {
    if (!options.quiet) {
        for (const std::string& note : plan.notes) {
            warn(note);
        }
    }
    int failed = 0;
    ExitCode code = ExitCode::Done;
    for (const JobFiles& files : plan.files) {
        code = runJob(steps, options, files);
        failed += code == ExitCode::Done ? 0 : 1;
    }
    const auto count = static_cast<int>(plan.files.size());
    if (count == 1 || failed == 0) {
        return count == 1 ? code : ExitCode::Done;
    }
    return fail(ExitCode::SomeFailed,
                std::to_string(failed) + " of " + std::to_string(count) + " pictures failed");
}

}  // namespace orv::cli
