#include "pipeline/job.h"

#include <sys/stat.h>

#include <cstdio>
#include <utility>

#include "interruption.h"
#include "messages.h"
#include "output_file.h"
#include "pipeline/job_options.h"
#include "pipeline/step_runner.h"
#include "progress_bar.h"
#include "recipe/pixel_hash.h"

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

/// What opens the lines of progress: "restore", "restore, shock (3 of 10)".
std::string labelOf(const std::vector<Step>& steps, const JobFiles& files) {
    std::string label;
    for (const Step& step : steps) {
        label += (label.empty() ? "" : ", ") + std::string(step.method->name);
    }
    if (files.count > 1) {
        label +=
            " (" + std::to_string(files.number) + " of " + std::to_string(files.count) + ")";
    }
    return label;
}

/// The way of one picture, in the order of the operations.
class Job {
  public:
    Job(const std::vector<Step>& steps, const JobOptions& options, const JobFiles& files)
        : steps_(steps),
          options_(options),
          files_(files),
          bar_(labelOf(steps, files), options.quiet ? ProgressStyle::None : options.progress) {}

    ExitCode run() {
        for (const auto stage :
             {&Job::choose, &Job::read, &Job::open, &Job::work, &Job::write}) {
            const Failure failure = (this->*stage)();
            if (failure) {
                bar_.clear();
                return fail(failure.code, failure.text);
            }
        }
        bar_.finish();
        tell();
        return ExitCode::Done;
    }

  private:
    Failure choose() {
        format_ = formatOfName(options_.format.empty() ? files_.output : "." + options_.format);
        return format_ != nullptr ? Failure{}
                                  : Failure{ExitCode::Output, unknownFormat(files_.output)};
    }

    Failure read() {
        bar_.phase("reading", files_.input);
        std::string error = readPicture(files_.input, picture_);
        if (!error.empty()) {
            return {ExitCode::Input, std::move(error)};
        }
        facts_ = pictureFacts(files_.input, picture_.samples);
        return {};
    }

    Failure open() {
        std::string error = writeRefusal(files_.output, *format_, picture_);
        if (error.empty()) {
            error = output_.open(files_.output, options_.force);
        }
        if (!error.empty()) {
            return {ExitCode::Output, std::move(error)};
        }
        if (picture_.samples.depth == SampleDepth::Bits16 &&
            format_->deepest == SampleDepth::Bits8) {
            picture_.warnings.push_back(files_.output + ": " + std::string(format_->name) +
                                        " holds 8 bits a sample; the picture's 16 are rounded");
        }
        return {};
    }

    Failure work() {
        return runSteps(steps_, options_.alpha, format_->deepest, picture_, bar_);
    }

    Failure write() {
        const std::string ending = files_.output.substr(files_.output.find_last_of('.'));
        bar_.phase("writing", files_.output);
        std::string error = writePicture(output_.temporaryPath(), *format_, picture_, ending);
        if (!error.empty()) {
            return {ExitCode::Output, files_.output + ": can't be written: " + error};
        }
        error = output_.commit();
        return error.empty() ? Failure{} : Failure{ExitCode::Output, std::move(error)};
    }

    void tell() const {
        if (options_.quiet) {
            return;
        }
        for (const std::string& warning : picture_.warnings) {
            warn(warning);
        }
        print(resultLine(files_.output, picture_, bar_.seconds()));
    }

    const std::vector<Step>& steps_;
    const JobOptions& options_;
    const JobFiles& files_;
    ProgressBar bar_;
    const FormatEntry* format_ = nullptr;
    Picture picture_;
    PictureFacts facts_;
    OutputFile output_;
};

}  // namespace

ExitCode runJob(const std::vector<Step>& steps, const JobOptions& options,
                const JobFiles& files) {
    watchInterruptions();
    return Job(steps, options, files).run();
}

}  // namespace orv::cli
