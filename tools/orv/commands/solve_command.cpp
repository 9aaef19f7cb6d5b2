#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "commands/commands.h"
#include "commands/solve_options.h"
#include "files/image_file.h"
#include "files/output_file.h"
#include "help/help_text.h"
#include "methods/diffusion_choices.h"
#include "methods/interleaved_planes.h"
#include "methods/plane_run.h"
#include "methods/solver_listing.h"
#include "methods/suggestion.h"
#include "options/command_line.h"
#include "pipeline/job_options.h"
#include "report/study_report.h"
#include "report/study_table.h"
#include "studies/solver_study.h"
#include "terminal/interruption.h"
#include "terminal/messages.h"
#include "terminal/progress_bar.h"
#include "terminal/shell_text.h"

namespace orv::cli {

namespace {

/// The middle `size` x `size` samples of a picture, or all for 0.
StudiedPicture partOf(const std::string& path, const Picture& picture, int size) {
    StudiedPicture part;
    part.name = path.substr(path.find_last_of('/') + 1);
    part.width = picture.samples.width;
    part.height = picture.samples.height;
    part.usedWidth = size == 0 ? part.width : std::min(size, part.width);
    part.usedHeight = size == 0 ? part.height : std::min(size, part.height);
    part.x = (part.width - part.usedWidth) / 2;
    part.y = (part.height - part.usedHeight) / 2;
    return part;
}

/// The brightness of that part by Rec. 601.
std::unique_ptr<FloatImage> brightnessOf(const Planes& planes, const StudiedPicture& part) {
    auto plane = std::make_unique<FloatImage>(part.usedWidth, part.usedHeight);
    for (int x = 0; x < part.usedWidth; ++x) {
        float* const column = plane->row(x);
        for (int y = 0; y < part.usedHeight; ++y) {
            const auto sample = [&](std::size_t channel) {
                return static_cast<double>(planes[channel]->row(part.x + x)[part.y + y]);
            };
            column[y] = planes.size() == 1
                            ? planes[0]->row(part.x + x)[part.y + y]
                            : static_cast<float>(0.299 * sample(0) + 0.587 * sample(1) +
                                                 0.114 * sample(2));
        }
    }
    return plane;
}

/// What forbids studying the scheme that is given, though restore takes it.
std::string schemeRefusal(const Verb& verb, const CommandLine& line) {
    for (const auto& [name, text] : line.parameters) {
        double value = 0.0;
        const bool known =
            name == "scheme" && parseValue(*verb.parameter(name), text, value).empty();
        if (name != "scheme" || known) {
            continue;
        }
        for (const Choice& scheme : schemeChoices()) {
            if (sameWord(scheme.name, text)) {
                return "--scheme: '" + text +
                       "' is a scheme of restore that solve doesn't study (expected " +
                       expectation(*verb.parameter(name)) + ")";
            }
        }
    }
    return {};
}

/// Why nothing at all was measured, in words; empty when something was.
std::string nothingMeasured(const SolverStudy& study) {
    for (const SolverRecordOfStudy& record : study.solvers) {
        if (record.status != SolverStatus::Skipped) {
            return {};
        }
    }
    const SolverRecordOfStudy& first = study.solvers.front();
    return "nothing to measure: " + solverListing()[static_cast<std::size_t>(first.id)].name +
           ": " + first.reason;
}

SolverStudy run(const FloatImage& plane, const Arguments& arguments, StudyOrder order,
                ProgressBar& bar) {
    order.settings = {arguments.integer("scheme"), arguments.real("tau"),
                      arguments.real("sigma"),     arguments.real("contrast"),
                      arguments.integer("flow"),   arguments.integer("norm")};
    order.solverIterations = arguments.integer("solver-iterations");
    const auto nameOfSolver = [](int id) {
        return solverListing()[static_cast<std::size_t>(id)].name;
    };
    bar.phase("running", nameOfSolver(order.solvers.front()));
    bar.start();
    return studySolvers(plane, order, [&](double done, int id) {
        bar.setLabel("solve: " + nameOfSolver(id));
        bar.update(done);
        return true;
    });
}

/// What the command line asks for.
struct SolveRequest {
    std::string input;
    std::string output;  ///< empty for none
    std::string command;
    bool force = false;
    bool quiet = false;
    ProgressStyle progress = ProgressStyle::Automatic;
};

/// Tells why nothing comes of it, in the place of the bar.
ExitCode stop(ProgressBar& bar, ExitCode code, const std::string& error) {
    bar.clear();
    return fail(code, error);
}

ExitCode process(const SolveRequest& request, const Arguments& arguments, StudyOrder order) {
    const ReportFormat format = reportFormatOf(request.output);
    if (!request.output.empty() && format == ReportFormat::Unknown) {
        return fail(ExitCode::Output,
                    endingRefusal(request.output, "report", reportExtensions()));
    }
    watchInterruptions();
    ProgressBar bar("solve", request.quiet ? ProgressStyle::None : request.progress);
    bar.phase("reading", request.input);
    Picture picture;
    std::string error = readPicture(request.input, picture);
    if (!error.empty()) {
        return stop(bar, ExitCode::Input, error);
    }
    OutputFile output;
    if (!request.output.empty()) {
        error = output.open(request.output, request.force);
    }
    if (!error.empty()) {
        return stop(bar, ExitCode::Output, error);
    }

    const StudiedPicture part = partOf(request.input, picture, arguments.integer("size"));
    Planes planes = planesOf(picture.samples, picture.colours);
    picture = {};
    error = planesRefusal(planes, "the picture");
    if (!error.empty()) {
        return stop(bar, ExitCode::Refused, "solve: " + error);
    }
    const std::unique_ptr<FloatImage> plane = brightnessOf(planes, part);
    planes.clear();
    const SolverStudy study = run(*plane, arguments, std::move(order), bar);
    error = study.error.empty() ? nothingMeasured(study) : study.error;
    if (!error.empty()) {
        return stop(bar, ExitCode::Refused, "solve: " + error);
    }

    const StudyReport report{request.command, part, arguments, study};
    if (!request.output.empty()) {
        error = writeText(output.temporaryPath(), reportText(report, format));
        if (!error.empty()) {
            return stop(bar, ExitCode::Output, request.output + ": can't be written: " + error);
        }
        error = output.commit();
        if (!error.empty()) {
            return stop(bar, ExitCode::Output, error);
        }
    }
    bar.setLabel("solve");
    bar.finish();
    if (!request.quiet || request.output.empty()) {
        print(studyTable(report) + "\n" + studySummary(report, bar.seconds(), request.output));
    }
    return ExitCode::Done;
}

}  // namespace

ExitCode solveCommand(const Verb& verb, const Words& words) {
    CommandLine line;
    std::string error = readCommandLine(verb, words, line);
    if (error.empty() && line.given("help")) {
        print(verbHelp(verb));
        return ExitCode::Done;
    }
    if (error.empty() && line.words.size() != 1) {
        error = line.words.empty() ? missingWord(verb, "the picture to read")
                                   : wordTooMany(verb, line.words[1]);
    }
    Arguments arguments(verb.parameters);
    if (error.empty()) {
        error = schemeRefusal(verb, line);
    }
    if (error.empty()) {
        error = setArguments(line, arguments);
    }
    StudyOrder order;
    if (error.empty()) {
        error = readSolvers(line.given("solvers") ? line.text("solvers") : "all", order.solvers,
                            order.named);
    }
    JobOptions common;
    if (error.empty()) {
        error = readJobOptions(line, common);
    }
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    const SolveRequest request{
        line.words[0], line.text("output"), commandText(verb.name, words),
        common.force,  common.quiet,        common.progress};
    return process(request, arguments, std::move(order));
}

}  // namespace orv::cli
