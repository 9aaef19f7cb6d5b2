#include "batch/batch_plan.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "batch/batch_folder.h"
#include "batch/finished_work.h"
#include "files/input_files.h"
#include "files/output_names.h"
#include "system/file_system.h"
#include "system/standard_path.h"

namespace orv::cli {

namespace {

/// realPlace() by the standard library, which on Windows follows no links and leaves large and small
/// letters as they were written.
std::string plainPlace(const std::string& path) {
    std::error_code error;
    const std::filesystem::path place =
        std::filesystem::weakly_canonical(standardPath(path), error);
    std::string text = error ? path : pathText(place);
    while (text.size() > 1 && text.back() == '/' && standardPath(text).has_relative_path()) {
        text.pop_back();
    }
    // What doesn't exist yet keeps a path that isn't absolute.
    if (!error && !text.empty() && standardPath(text).is_relative()) {
        text = pathText(std::filesystem::current_path(error) / standardPath(text));
    }
    return text;
}

bool isWithin(const std::string& path, const std::string& folder) {
    return path == folder || (path.size() > folder.size() && path[folder.size()] == '/' &&
                              path.compare(0, folder.size(), folder) == 0);
}

/// Leaves out what lies in the folder of the results without having been named itself.
void dropResults(const BatchOrder& order, std::vector<InputFile>& inputs, BatchPlan& plan) {
    const std::string folder = realPlace(order.folder);
    std::vector<std::string> named;
    for (const std::string& word : order.inputs) {
        const std::string place = realPlace(word);
        if (isWithin(place, folder)) {
            named.push_back(place);
        }
    }
    const auto isResult = [&](const InputFile& input) {
        const std::string place = realPlace(input.path);
        return isWithin(place, folder) &&
               std::none_of(named.begin(), named.end(),
                            [&](const std::string& name) { return isWithin(place, name); });
    };
    const std::size_t before = inputs.size();
    inputs.erase(std::remove_if(inputs.begin(), inputs.end(), isResult), inputs.end());
    if (inputs.size() < before) {
        plan.notes.push_back(order.folder + ": " + std::to_string(before - inputs.size()) +
                             " pictures in it are left out, as the results go there");
    }
}

Failure findInputs(const BatchOrder& order, std::vector<InputFile>& inputs, BatchPlan& plan) {
    InputSettings settings;
    settings.recursive = order.recursive;
    settings.include = order.include;
    std::string error = expandInputs(order.inputs, settings, inputs, plan.notes);
    if (!error.empty()) {
        return {ExitCode::Input, std::move(error)};
    }
    if (!inputs.empty() && inputs.front().path == "-") {
        return {ExitCode::Usage,
                "batch: reads files and folders; for standard input leave the word batch out"};
    }
    dropResults(order, inputs, plan);
    return inputs.empty() ? Failure{ExitCode::Input, "no picture to read is left"} : Failure{};
}

Failure nameOutputs(const BatchOrder& order, const std::vector<InputFile>& inputs,
                    std::vector<std::string>& outputs) {
    OutputOrder names;
    names.output = order.folder;
    names.pattern = order.name;
    names.verb = order.verb;
    names.ending = order.format.empty() ? "" : "." + order.format;
    names.intoFolder = true;
    std::string error = planOutputs(inputs, names, outputs);
    if (!error.empty()) {
        return {ExitCode::Usage, std::move(error)};
    }
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        // A batch that ended half-way would take its own results for pictures.
        if (realPlace(inputs[i].path) == realPlace(outputs[i])) {
            return {ExitCode::Output, outputs[i] +
                                          ": is the picture itself, which a batch never "
                                          "overwrites; take another -o or --name"};
        }
    }
    return {};
}

/// DIR/.orv/a/b.png.json for DIR/a/b.png.
std::string recipeOf(const std::string& folder, const std::string& output) {
    std::size_t start = folder.size();
    while (start < output.size() && output[start] == '/') {
        ++start;
    }
    const std::string gap = folder.back() == '/' ? "" : "/";
    return folder + gap + BatchFolder::kRecords + "/" + output.substr(start) + ".json";
}

/// Refuses a folder that holds results, when nothing says what is to become of them.
Failure refuseExisting(const BatchOrder& order, const BatchPlan& plan) {
    const auto stands = [](const BatchFile& file) { return isTaken(file.output); };
    const auto count = std::count_if(plan.files.begin(), plan.files.end(), stands);
    if (order.resume || order.force || count == 0) {
        return {};
    }
    const auto first = std::find_if(plan.files.begin(), plan.files.end(), stands);
    const std::string many = std::to_string(count) + " of " +
                             std::to_string(plan.files.size()) +
                             (plan.files.size() == 1 ? " result exists" : " results exist");
    return {ExitCode::Output, order.folder + ": " + many + " already, as " + first->output +
                                  "; --resume skips what is finished, --force makes all again"};
}

}  // namespace

int BatchPlan::count(BatchStatus status) const {
    return static_cast<int>(
        std::count_if(files.begin(), files.end(),
                      [status](const BatchFile& file) { return file.status == status; }));
}

std::string realPlace(const std::string& path) {
    const std::string text = plainPlace(path);
    // What exists of it has one name. "C:" alone would be the folder where the program runs.
    for (std::size_t end = text.size();
         end != std::string::npos && standardPath(text.substr(0, end)).has_relative_path();
         end = text.rfind('/', end - 1)) {
        const std::string there = resolvedPath(text.substr(0, end));
        if (!there.empty()) {
            return there + text.substr(end);
        }
    }
    return text;
}

Failure planBatch(const BatchOrder& order, BatchPlan& plan) {
    std::vector<InputFile> inputs;
    Failure failure = findInputs(order, inputs, plan);
    std::vector<std::string> outputs;
    if (!failure) {
        failure = nameOutputs(order, inputs, outputs);
    }
    if (failure) {
        return failure;
    }
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        BatchFile file;
        file.input = inputs[i].path;
        file.output = outputs[i];
        file.recipe = recipeOf(order.folder, outputs[i]);
        readStamp(file.input, file.stamp);
        plan.files.push_back(std::move(file));
    }
    return refuseExisting(order, plan);
}

void settleFinished(const BatchOrder& order, BatchPlan& plan) {
    for (BatchFile& file : plan.files) {
        std::string reason;
        const Finished finished = finishedWork(file, order.request, reason);
        if (finished == Finished::Whole) {
            file.status = BatchStatus::Skipped;
            FileStamp result;
            readStamp(file.output, result);
            file.bytes = result.bytes;
        } else if (finished == Finished::Other && !order.force) {
            file.status = BatchStatus::Failed;
            file.refused = true;
            file.reason = std::move(reason);
        }
    }
}

}  // namespace orv::cli
