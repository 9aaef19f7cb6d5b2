#include <sys/stat.h>

#include <chrono>
#include <string>
#include <utility>

#include "commands/command_line.h"
#include "commands/commands.h"
#include "help_text.h"
#include "image_file.h"
#include "interruption.h"
#include "messages.h"
#include "methods/interleaved_planes.h"
#include "methods/solver_listing.h"
#include "output_file.h"
#include "progress_bar.h"

namespace orv::cli {

namespace {

std::string unknownFormat(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
        return path + ": is a folder; name a file in it";
    }
    return path + ": the ending names no format that orv writes (" + writableExtensions() + ")";
}

std::string resultLine(const std::string& path, const Picture& picture, double seconds) {
    struct stat status {};
    const double bytes =
        stat(path.c_str(), &status) == 0 ? static_cast<double>(status.st_size) : 0.0;
    const InterleavedSamples& samples = picture.samples;
    std::string text = path + ": " + std::to_string(samples.width) + " x " +
                       std::to_string(samples.height) + " pixels, ";
    text += samples.depth == SampleDepth::Float
                ? "float "
                : std::to_string(8 * bytesOf(samples.depth)) + "-bit ";
    text += picture.colours == 1 ? "grey" : "colour";
    text += picture.alpha ? " with alpha" : "";
    return text + ", " + sizeText(bytes) + ", in " + durationText(seconds) + "\n";
}

/// Runs the method on the colours of a picture and puts the result in their place.
///
/// `second` is empty for methods that take one picture.
MethodResult runOn(Picture& picture, Planes second, const Method& method,
                   const Arguments& arguments, const FormatEntry& format, ProgressBar& bar) {
    Planes planes = planesOf(picture.samples, picture.colours);
    const Progress progress = [&bar](double done) {
        bar.update(done);
        return true;
    };
    bar.start();
    MethodResult result =
        method.secondPicture.empty()
            ? method.run(std::move(planes), arguments, progress)
            : method.runWithSecond(std::move(planes), std::move(second), arguments, progress);
    if (!result.planes.empty()) {
        if (format.deepest == SampleDepth::Bits8) {
            picture.samples = narrowed(std::move(picture.samples));
        }
        if (result.planes.size() == 3 && picture.colours == 1) {
            picture.samples = coloured(picture.samples);
            picture.colours = 3;
        }
        storePlanes(result.planes, picture.samples);
        result.planes.clear();
    }
    return result;
}

/// Reads the picture that a method learns from; alpha and metadata of it aren't needed.
std::string readSecond(const std::string& path, Planes& planes) {
    Picture picture;
    std::string error = readPicture(path, picture);
    if (error.empty()) {
        planes = planesOf(picture.samples, picture.colours);
    }
    return error;
}

ExitCode process(const Method& method, const Arguments& arguments, const CommandLine& line) {
    const FormatEntry* const format = formatOfName(line.output);
    if (format == nullptr) {
        return fail(ExitCode::File, unknownFormat(line.output));
    }
    watchInterruptions();
    ProgressBar bar(std::string(method.name), line.quiet);
    bar.phase("reading", line.input);
    Picture picture;
    std::string error = readPicture(line.input, picture);
    Planes second;
    if (error.empty() && !line.second.empty()) {
        bar.phase("reading", line.second);
        error = readSecond(line.second, second);
    }
    if (error.empty()) {
        error = writeRefusal(line.output, *format, picture);
    }
    OutputFile output;
    if (error.empty()) {
        error = output.open(line.output, line.force);
    }
    if (!error.empty()) {
        bar.clear();
        return fail(ExitCode::File, error);
    }

    if (picture.samples.depth == SampleDepth::Bits16 && format->deepest == SampleDepth::Bits8) {
        picture.warnings.push_back(line.output + ": " + std::string(format->name) +
                                   " holds 8 bits a sample; the picture's 16 are rounded");
    }
    const MethodResult result =
        runOn(picture, std::move(second), method, arguments, *format, bar);
    if (!result.error.empty()) {
        bar.clear();
        return fail(ExitCode::Refused, std::string(method.name) + ": " + result.error);
    }
    const std::string ending = line.output.substr(line.output.find_last_of('.'));
    bar.phase("writing", line.output);
    error = writePicture(output.temporaryPath(), *format, picture, ending);
    if (!error.empty()) {
        bar.clear();
        return fail(ExitCode::File, line.output + ": can't be written: " + error);
    }
    error = output.commit();
    if (!error.empty()) {
        bar.clear();
        return fail(ExitCode::File, error);
    }
    bar.finish();
    if (!line.quiet) {
        for (const std::string& warning : picture.warnings) {
            warn(warning);
        }
        print(resultLine(line.output, picture, bar.seconds()));
    }
    return ExitCode::Done;
}

}  // namespace

ExitCode methodCommand(const Method& method, int argc, const char* const* argv) {
    CommandLine line;
    const Syntax syntax{method.name, /*json=*/false, method.picture, method.secondPicture,
                        method.parameters};
    std::string error = readCommandLine(syntax, argc, argv, line);
    if (!error.empty()) {
        return fail(ExitCode::Usage, error);
    }
    if (line.help) {
        print(methodHelp(method));
        return ExitCode::Done;
    }
    Arguments arguments(method.parameters);
    for (const auto& [name, text] : line.values) {
        error = arguments.set(name, text);
        if (!error.empty()) {
            return fail(ExitCode::Usage, error);
        }
    }
    const std::string warning =
        solverWarning(arguments.integer("solver"), arguments.integer("solver-iterations"),
                      arguments.integer("scheme"));
    if (!warning.empty() && !line.quiet) {
        warn(warning);
    }
    return process(method, arguments, line);
}

}  // namespace orv::cli
