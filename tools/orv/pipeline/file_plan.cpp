#include "pipeline/file_plan.h"

#include <sys/stat.h>

#include <utility>

#include "messages.h"

namespace orv::cli {

namespace {

bool isFolder(const std::string& path) {
    struct stat status {};
    return (!path.empty() && path.back() == '/') ||
           (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
}

std::string nameOf(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

/// "a/NAME.SUFFIX.EXT" for "a/NAME.EXT".
std::string beside(const std::string& input, std::string_view suffix,
                   const std::string& format) {
    const std::size_t name = input.find_last_of('/') + 1;
    const std::size_t dot = input.find_last_of('.');
    const bool dotted = dot != std::string::npos && dot > name;
    const std::string stem = dotted ? input.substr(0, dot) : input;
    const std::string ending = !format.empty() ? "." + format
                               : dotted        ? input.substr(dot)
                                               : std::string(".png");
    return stem + "." + std::string(suffix) + ending;
}

}  // namespace

Failure planFiles(const Verb& verb, const Words& words, const CommandLine& line,
                  const JobOptions& options, std::string_view suffix, FilePlan& plan) {
    if (words.empty()) {
        return {ExitCode::Usage, missingWord(verb, "the picture to read")};
    }
    std::vector<std::string> inputs = words;
    std::string output = line.text("output");
    if (output.empty() && inputs.size() == 2) {
        output = inputs.back();
        inputs.pop_back();
    }
    const bool folder = !output.empty() && (inputs.size() > 1 || isFolder(output));
    int number = 0;
    for (const std::string& input : inputs) {
        JobFiles files{input, output, ++number, static_cast<int>(inputs.size())};
        if (output.empty()) {
            files.output = beside(input, suffix, options.format);
        } else if (folder) {
            files.output = output + (output.back() == '/' ? "" : "/") + nameOf(input);
        }
        plan.files.push_back(std::move(files));
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
