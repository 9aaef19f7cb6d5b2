#include "pipeline/job.h"

#include <cstddef>
#include <utility>

#include "memory/job_limit.h"
#include "pipeline/job_records.h"
#include "pipeline/job_target.h"
#include "pipeline/step_runner.h"
#include "terminal/interruption.h"
#include "terminal/messages.h"
#include "terminal/progress_bar.h"

namespace orv::cli {

namespace {

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
          bar_(labelOf(steps, files), options.quiet ? ProgressStyle::None : options.progress),
          target_(files, options),
          records_(files, options) {}

    ExitCode run() {
        for (const auto stage : {&Job::look, &Job::open, &Job::read, &Job::work, &Job::write}) {
            const Failure failure = (this->*stage)();
            if (failure) {
                bar_.clear();
                return fail(failure.code, failure.text);
            }
        }
        bar_.finish();
        tell();
        return records_.differs() ? fail(ExitCode::Refused, records_.verdict())
                                  : ExitCode::Done;
    }

  private:
    /// Everything that can be refused before the samples are read.
    Failure look() {
        std::string error = openPicture(files_.input, source_, header_);
        if (!error.empty()) {
            return {ExitCode::Input, std::move(error)};
        }
        Failure failure = target_.choose(header_);
        return failure ? failure : memoryFailure(source_.name, header_, steps_, options_);
    }

    Failure open() {
        Failure failure = records_.open();
        return failure ? failure : target_.open();
    }

    Failure read() {
        bar_.phase("reading", files_.input);
        std::string error = readPicture(source_, picture_);
        source_ = {};
        if (!error.empty()) {
            return {ExitCode::Input, std::move(error)};
        }
        records_.takeInput(picture_);
        if (options_.maxSide > 0) {
            error = scaleDown(picture_, options_.maxSide);
        }
        if (!error.empty()) {
            return {ExitCode::Refused, "--max-side: " + error};
        }
        if (options_.alpha == AlphaMode::Drop) {
            dropAlpha(picture_);
        }
        records_.takeBefore(picture_);
        return target_.check(picture_);
    }

    Failure work() {
        return runSteps(steps_, options_.alpha, target_.settings().format->deepest, picture_,
                        bar_);
    }

    /// The picture comes last: it never stands without its recipe.
    Failure write() {
        bar_.phase("writing", files_.output);
        Failure failure = records_.write(steps_, picture_);
        if (!failure) {
            failure = target_.write(picture_);
        }
        if (!failure) {
            failure = records_.commit();
        }
        return failure ? failure : target_.commit();
    }

    void tell() const {
        if (options_.quiet) {
            return;
        }
        for (const std::string& warning : picture_.warnings) {
            warn(warning);
        }
        if (files_.output == "-") {
            return;
        }
        print(automaticLine(steps_, files_, options_) +
              target_.resultLine(picture_, bar_.seconds()));
        if (!records_.verdict().empty() && !records_.differs()) {
            print(records_.verdict() + "\n");
        }
    }

    std::vector<Step> steps_;  // with what was chosen for this picture
    const JobOptions& options_;
    const JobFiles& files_;
    ProgressBar bar_;
    PictureSource source_;
    PictureHeader header_;
    Picture picture_;
    JobTarget target_;
    JobRecords records_;
};

}  // namespace

ExitCode runJob(const std::vector<Step>& steps, const JobOptions& options,
                const JobFiles& files) {
    watchInterruptions();
    return Job(steps, options, files).run();
}

}  // namespace orv::cli
