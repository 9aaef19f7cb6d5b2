#include "commands/tune_command.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "files/output_file.h"
#include "help/help_text.h"
#include "memory/memory_limit.h"
#include "methods/method_catalogue.h"
#include "methods/suggestion.h"
#include "options/command_line.h"
#include "options/common_options.h"
#include "pipeline/job_options.h"
#include "terminal/interruption.h"
#include "terminal/messages.h"
#include "terminal/progress_bar.h"
#include "tune/tune_request.h"
#include "tune/tune_sheet.h"

namespace orv::cli {

namespace {

constexpr std::array<Option, 6> kOptions{{
    {"output", 'o', OptionKind::Value, "SHEET", "the file to write",
     "the sheet, in any format that orv writes [default: NAME.tune.png beside IN]",
     ValueKind::File},
    {"crop", '\0', OptionKind::Value, "WxH+X+Y", "WIDTHxHEIGHT or WIDTHxHEIGHT+X+Y",
     "the part that is shown [default: the most detailed 256x256]"},
    {"at", '\0', OptionKind::Value, "X,Y", "X,Y in pixels", "the middle of that part"},
    {"json", '\0', OptionKind::Flag, "", "", "print values, commands and figures as JSON text"},
    {"force", 'f', OptionKind::Flag, "", "", "overwrite SHEET if it exists"},
    {"max-memory", '\0', OptionKind::Value, "SIZE", "a size such as 2G, 500M or 75%",
     "the most memory to use, as 2G, 500M or 75% [default: 75% of what is free]"},
}};
constinit const OptionGroup kTuneOptions{"Sheet", kOptions};

constexpr std::string_view kAbout =
    "VERB is a method. One or two of its parameters take several values: a list as 5,10,20 or "
    "LOD,AOS, a range as 1..8 (four values) or 1..8:2 (in steps of 2). The others keep one "
    "value. The sheet shows the original and a part of each result at 100 percent, with the "
    "estimated noise and the PSNR against the original.";
constexpr std::string_view kNotes =
    "Up to 4 megapixels each cell is cut from the result for the whole picture, as orv VERB "
    "gives it. Above, the method runs on the part and 256 pixels around it: nearly the same "
    "for "
    "most, while retinex, recolor and wide blurs see less of the picture than they would. "
    "Automation measures the whole picture in any case. Low noise with a high PSNR is good; "
    "the "
    "PSNR to a noisy original alone falls with every noise that goes, so look at the pictures.";

/// The verb of the method that is tuned, with the options of a sheet in place of its own.
Verb verbOf(const Verb& tune, const Verb& method) {
    Verb verb = tune;
    verb.name = "tune " + method.name;
    verb.words = method.method->picture;
    if (!method.method->secondPicture.empty()) {
        verb.words += " " + std::string(method.method->secondPicture);
        verb.groups.push_back(&kSecondOptions);
    }
    verb.parameters = method.parameters;
    return verb;
}

std::string unknownMethod(const std::string& word) {
    std::vector<std::string_view> names;
    for (const Method* const method : methodCatalogue()) {
        names.push_back(method->name);
    }
    return "tune: '" + word + "' is no method" + didYouMean(word, names) +
           " (orv methods lists all)";
}

/// What forbids the work because of its memory, with the planes that are kept meanwhile.
Failure checkMemory(const std::string& name, const PictureHeader& header,
                    const TuneRequest& request) {
    std::optional<double> limit;
    std::string error = readMemorySize(request.common.memory, availableMemory(), limit);
    if (!error.empty()) {
        return {ExitCode::Usage, std::move(error)};
    }
    if (!limit) {
        return {};
    }
    PictureSize whole = sizeOf(header);
    PictureSize part = whole;
    const double pixels = static_cast<double>(whole.width) * whole.height;
    if (pixels > kMostTunedWhole) {
        part.width = std::min(whole.width, request.crop.width + 2 * kTuneMargin);
        part.height = std::min(whole.height, request.crop.height + 2 * kTuneMargin);
    }
    const double kept =
        8.0 * part.colours * part.width * static_cast<double>(part.height) +
        3.0 * sheetPixels(request.sheet, request.crop.width, request.crop.height);
    double needed = jobBytes({}, {whole}) + 8.0 * whole.colours * pixels;
    for (const TuneCell& cell : request.sheet.cells) {
        needed = std::max(needed, jobBytes({cell.step}, {part, part}) + kept);
    }
    if (needed <= *limit) {
        return {};
    }
    return {ExitCode::Memory, name + ": needs " + memoryText(needed) +
                                  " of memory, and may take " + memoryText(*limit) +
                                  "; take --max-memory " +
                                  std::to_string(static_cast<long>(needed / 1e6) + 1) + "M"};
}

Failure readInput(const TuneRequest& request, ProgressBar& bar, Picture& picture) {
    PictureSource source;
    PictureHeader header;
    std::string error = openPicture(request.sheet.input, source, header);
    if (!error.empty()) {
        return {ExitCode::Input, std::move(error)};
    }
    Failure failure = checkMemory(source.name, header, request);
    if (failure) {
        return failure;
    }
    bar.phase("reading", request.sheet.input);
    error = readPicture(source, picture);
    return error.empty() ? Failure{} : Failure{ExitCode::Input, std::move(error)};
}

/// Draws and writes the sheet, with the colour profile of the picture.
Failure writeSheet(const TuneRequest& request, const Picture& picture, OutputFile& output) {
    Picture sheet = drawSheet(request.sheet);
    if (picture.colours == 3) {
        sheet.metadata = picture.metadata;
    }
    WriteSettings settings;
    settings.format = formatOfName(request.output);
    settings.ending = endingOfName(request.output);
    settings.strip = Strip::All;
    std::string error = writePicture(output.temporaryPath(), settings, sheet);
    if (!error.empty()) {
        return {ExitCode::Output, request.output + ": can't be written: " + error};
    }
    error = output.commit();
    return error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
}

Failure openOutput(const TuneRequest& request, OutputFile& output) {
    std::string error;
    const FormatEntry* const format = formatOfName(request.output);
    if (format == nullptr) {
        error = endingRefusal(request.output, "format", writableExtensions());
    } else if (isSameFile(request.output, request.sheet.input)) {
        error = request.output + ": is the picture that is read";
    } else {
        // A sheet is a picture in colour of 8 bits without alpha.
        error = writeRefusal(request.output, {format, endingOfName(request.output)}, Picture{});
    }
    if (error.empty()) {
        error = output.open(request.output, request.common.force);
    }
    return error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
}

void tell(const TuneRequest& request, double seconds) {
    if (!request.common.quiet) {
        for (const TuneCell& cell : request.sheet.cells) {
            if (!cell.error.empty()) {
                warn(valuesText(request.sheet, cell) + ": " + cell.error);
            }
        }
    }
    if (request.json) {
        print(tuneAsJson(request.sheet, request.output));
    } else if (!request.common.quiet) {
        const CropPlace& crop = request.sheet.crop;
        print(printable(request.output) + ": " + std::to_string(request.sheet.cells.size()) +
              " results, " + std::to_string(crop.width) + " x " + std::to_string(crop.height) +
              " pixels from (" + std::to_string(crop.x) + ", " + std::to_string(crop.y) +
              "), in " + durationText(seconds) + "\n");
    }
}

ExitCode process(TuneRequest& request) {
    watchInterruptions();
    ProgressBar bar("tune " + request.sheet.verb,
                    request.common.quiet ? ProgressStyle::None : request.common.progress);
    OutputFile output;
    Picture picture;
    Failure failure = openOutput(request, output);
    if (!failure) {
        failure = readInput(request, bar, picture);
    }
    if (!failure) {
        failure = runCells(picture, request.crop, request.sheet, bar);
    }
    if (!failure) {
        bar.phase("writing", request.output);
        failure = writeSheet(request, picture, output);
    }
    if (failure) {
        bar.clear();
        return fail(failure.code, failure.text);
    }
    bar.finish();
    tell(request, bar.seconds());
    return ExitCode::Done;
}

ExitCode tuneCommand(const Verb& verb, const Words& words) {
    if (words.empty()) {
        return fail(ExitCode::Usage, missingWord(verb, "the method to tune"));
    }
    const Verb* const method = findVerb(words.front());
    const bool known = method != nullptr && method->method != nullptr;
    CommandLine line;
    if (!known && (words.front() == "--help" || words.front() == "-h")) {
        print(verbHelp(verb));
        return ExitCode::Done;
    }
    if (!known) {
        return fail(ExitCode::Usage, unknownMethod(words.front()));
    }
    const Verb tuned = verbOf(verb, *method);
    std::string error = readCommandLine(tuned, Words(words.begin() + 1, words.end()), line);
    if (error.empty() && line.given("help")) {
        print(verbHelp(verb));
        return ExitCode::Done;
    }
    TuneRequest request;
    request.method = method;
    if (error.empty()) {
        error = readTuneRequest(tuned, line, request);
    }
    return error.empty() ? process(request) : fail(ExitCode::Usage, error);
}

}  // namespace

Verb tuneVerb() {
    Verb verb;
    verb.name = "tune";
    verb.summary = "Show a method over ranges of its parameters on a labelled contact sheet";
    verb.words = "VERB IN --PARAMETER VALUES";
    verb.groups = {&kTuneOptions, &kReportRunOptions};
    verb.about = kAbout;
    verb.notes = kNotes;
    verb.example = "orv tune restore photo.jpg --tau 1..8 --contrast 5,10,20 -o sheet.png";
    verb.run = tuneCommand;
    return verb;
}

}  // namespace orv::cli
