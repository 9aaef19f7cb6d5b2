#include <string>

#include "commands/commands.h"
#include "compare/comparison.h"
#include "compare/comparison_numbers.h"
#include "files/image_file.h"
#include "files/output_file.h"
#include "help/help_text.h"
#include "options/command_line.h"
#include "pipeline/job_options.h"
#include "system/file_system.h"
#include "terminal/interruption.h"
#include "terminal/messages.h"
#include "terminal/progress_bar.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

/// "out.html: 5.2 MB"
std::string writtenLine(const std::string& path) {
    return printable(path) + ": " + sizeText(fileBytes(path)) + "\n";
}

/// What the command line asks for.
struct CompareRequest {
    ComparisonFacts facts;
    std::string output;  ///< empty for none
    bool force = false;
    bool quiet = false;
    bool json = false;
    ProgressStyle progress = ProgressStyle::Automatic;
};

/// Writes the file that -o names under its other name, and gives it its own.
///
/// Fails:   with one line; an empty text means success.
std::string writeFile(const CompareRequest& request, const Comparison& comparison,
                      OutputFile& output) {
    const std::string error =
        writeComparison(comparison, output.temporaryPath(), comparisonFormatOf(request.output));
    return error.empty() ? output.commit() : request.output + ": can't be written: " + error;
}

std::string readBoth(const ComparisonFacts& facts, ProgressBar& bar, Picture& before,
                     Picture& after) {
    bar.phase("reading", facts.beforePath);
    std::string error = readPicture(facts.beforePath, before);
    if (error.empty()) {
        bar.phase("reading", facts.afterPath);
        error = readPicture(facts.afterPath, after);
    }
    return error.empty() ? sizeRefusal(facts.beforePath, before, facts.afterPath, after)
                         : error;
}

void printResult(const CompareRequest& request, const Comparison& comparison) {
    const bool writes = !request.output.empty();
    if (request.json) {
        print(comparisonJson(comparison));
    } else if (!request.quiet || !writes) {
        print(comparisonTable(comparison));
        if (writes) {
            print("\n" + writtenLine(request.output));
        }
    }
}

ExitCode process(const CompareRequest& request) {
    const bool writes = !request.output.empty();
    std::string error = writes ? comparisonRefusal(request.output) : std::string();
    if (writes && (isSameFile(request.output, request.facts.beforePath) ||
                   isSameFile(request.output, request.facts.afterPath))) {
        error = request.output + ": is one of the pictures that are compared";
    }
    if (!error.empty()) {
        return fail(ExitCode::Output, error);
    }
    watchInterruptions();
    ProgressBar bar("compare", request.quiet ? ProgressStyle::None : request.progress);
    Picture before;
    Picture after;
    error = readBoth(request.facts, bar, before, after);
    if (!error.empty()) {
        bar.clear();
        return fail(ExitCode::Input, error);
    }
    OutputFile output;
    if (writes) {
        error = output.open(request.output, request.force);
    }
    if (!error.empty()) {
        bar.clear();
        return fail(ExitCode::Output, error);
    }
    bar.phase("comparing", request.facts.afterPath);
    const PictureComparison figures = comparePictures(before, after);
    const Comparison comparison{before, after, request.facts, figures};
    if (writes) {
        bar.phase("writing", request.output);
        error = writeFile(request, comparison, output);
    }
    bar.clear();
    if (!error.empty()) {
        return fail(ExitCode::Output, error);
    }
    printResult(request, comparison);
    return ExitCode::Done;
}

}  // namespace

ExitCode compareCommand(const Verb& verb, const Words& words) {
    CommandLine line;
    std::string error = readCommandLine(verb, words, line);
    if (error.empty() && line.given("help")) {
        print(verbHelp(verb));
        return ExitCode::Done;
    }
    if (error.empty() && line.words.size() != 2) {
        error = line.words.size() > 2    ? wordTooMany(verb, line.words[2])
                : line.words.size() == 1 ? missingWord(verb, "the picture to compare with")
                                         : missingWord(verb, "the picture to read");
    }
    JobOptions common;
    if (error.empty()) {
        error = readJobOptions(line, common);
    }
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    return process({{line.words[0], line.words[1], commandText(verb.name, words)},
                    line.text("output"),
                    common.force,
                    common.quiet,
                    line.given("json"),
                    common.progress});
}

}  // namespace orv::cli
