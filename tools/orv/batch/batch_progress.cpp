#include "batch/batch_progress.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "batch/batch_summary.h"
#include "files/path_names.h"
#include "terminal/messages.h"
#include "terminal/terminal.h"

namespace orv::cli {

namespace {

constexpr int kBarWidth = 20;
/// A bar shorter than this tells nothing.
constexpr int kLeastBarWidth = 8;
/// Seconds before the first line where there is no terminal.
constexpr double kQuickElsewhere = 5.0;
/// Seconds between two lines: on a terminal, and of JSON.
constexpr double kRedraw = 0.1;
constexpr double kEventGap = 0.5;

std::string number(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2f", value);
    return text.data();
}

std::string_view statusWord(BatchStatus status) {
    return status == BatchStatus::Done      ? "done"
           : status == BatchStatus::Skipped ? "skipped"
                                            : "failed";
}

}  // namespace

std::string batchLine(const std::string& count, int percent, const std::string& times,
                      const std::string& names, int width) {
    std::string line = count + (percent < 10 ? "   " : "  ") + std::to_string(percent) + " %";
    const auto room = [&] { return width - static_cast<int>(line.size()); };
    const int timesWidth = times.empty() ? 0 : static_cast<int>(times.size()) + 2;
    const int bar = std::min(kBarWidth, room() - 2 - timesWidth);
    if (bar >= kLeastBarWidth) {
        const int full = percent * bar / 100;
        line += "  " + std::string(static_cast<std::size_t>(full), '#') +
                std::string(static_cast<std::size_t>(bar - full), '.');
    }
    if (timesWidth > 0 && timesWidth <= room()) {
        line += "  " + times;
    }
    if (!names.empty() && static_cast<int>(names.size()) + 2 <= room()) {
        line += "  " + names;
    }
    return line.substr(0, static_cast<std::size_t>(std::max(width, 0)));
}

BatchProgress::BatchProgress(const BatchOrder& order, const BatchPlan& plan)
    : order_(order),
      plan_(plan),
      style_(order.quiet ? ProgressStyle::None : styleFor(order.progress)),
      work_(order.jobs),
      made_(std::chrono::steady_clock::now()) {
    for (const BatchFile& file : plan.files) {
        places_.push_back(static_cast<std::size_t>(-1));
        if (file.status == BatchStatus::Waiting) {
            places_.back() = running_.size();
            running_.push_back(0);  // counts what is to be done, for now
            const std::size_t dot = file.input.find_last_of('.');
            work_.add(dot == std::string::npos ? std::string() : file.input.substr(dot),
                      file.stamp.bytes);
        } else {
            ++finished_;
            failed_ += file.status == BatchStatus::Failed ? 1 : 0;
        }
    }
    running_.clear();
    if (style_ == ProgressStyle::Json) {
        line("{\"event\":\"start\",\"verb\":" + jsonQuoted(order.verb) +
             ",\"files\":" + std::to_string(plan.files.size()) +
             ",\"skipped\":" + std::to_string(plan.count(BatchStatus::Skipped)) +
             ",\"jobs\":" + std::to_string(order.jobs) + "}");
    }
    // A long list of refusals stands at the end alone.
    const bool few = plan.files.size() <= kListedFailures;
    for (const BatchFile& file : plan.files) {
        if (file.status == BatchStatus::Failed && (few || style_ == ProgressStyle::Json)) {
            fileEvent(file);
        }
    }
}

BatchProgress::~BatchProgress() {
    clear();
}

double BatchProgress::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - made_).count();
}

double BatchProgress::interval() const {
    return style_ == ProgressStyle::None ? -1.0 : style_ == ProgressStyle::Bar ? kRedraw : 0.5;
}

void BatchProgress::line(const std::string& text) const {
    std::fputs((text + "\n").c_str(), stderr);
}

void BatchProgress::clear() {
    if (lineOpen_) {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
        lineOpen_ = false;
    }
}

void BatchProgress::started(std::size_t file) {
    running_.push_back(file);
    work_.start(places_[file], seconds());
}

void BatchProgress::advanced(std::size_t file, double share) {
    work_.advance(places_[file], share);
}

void BatchProgress::postponed(std::size_t file) {
    running_.erase(std::remove(running_.begin(), running_.end(), file), running_.end());
    work_.postpone(places_[file]);
}

void BatchProgress::finished(std::size_t file) {
    running_.erase(std::remove(running_.begin(), running_.end(), file), running_.end());
    const BatchFile& told = plan_.files[file];
    work_.finish(places_[file], seconds(), told.status == BatchStatus::Done);
    ++finished_;
    failed_ += told.status == BatchStatus::Failed ? 1 : 0;
    fileEvent(told);
}

void BatchProgress::fileEvent(const BatchFile& file) {
    if (style_ != ProgressStyle::Json) {
        if (file.status == BatchStatus::Failed) {
            clear();
            fail(ExitCode::SomeFailed, file.input + ": " + file.reason);
        }
        return;
    }
    line("{\"event\":\"file\",\"file\":" + jsonQuoted(file.input) + ",\"output\":" +
         jsonQuoted(file.output) + ",\"status\":\"" + std::string(statusWord(file.status)) +
         "\",\"seconds\":" + number(file.seconds) + ",\"reason\":" + jsonQuoted(file.reason) +
         ",\"finished\":" + std::to_string(finished_) +
         ",\"of\":" + std::to_string(plan_.files.size()) + "}");
}

void BatchProgress::warn(const BatchFile& file, const std::string& text) {
    if (order_.quiet) {
        return;
    }
    clear();
    const bool named = text.compare(0, file.input.size(), file.input) == 0 ||
                       text.compare(0, file.output.size(), file.output) == 0;
    orv::cli::warn(named ? text : file.input + ": " + text);
}

std::string BatchProgress::runningNames() const {
    std::string names;
    for (const std::size_t file : running_) {
        names += (names.empty() ? "" : ", ") + printable(fileNameOf(plan_.files[file].input));
    }
    return names;
}

void BatchProgress::progressEvent(double left) const {
    std::string names;
    for (const std::size_t file : running_) {
        names += (names.empty() ? "" : ",") + jsonQuoted(plan_.files[file].input);
    }
    line("{\"event\":\"progress\",\"done\":" + number(work_.doneShare()) + ",\"seconds\":" +
         number(seconds()) + ",\"left\":" + (left < 0.0 ? "null" : number(left)) +
         ",\"finished\":" + std::to_string(finished_) +
         ",\"of\":" + std::to_string(plan_.files.size()) + ",\"running\":[" + names + "]}");
}

void BatchProgress::show() {
    const double now = seconds();
    const double gap = style_ == ProgressStyle::Bar ? kRedraw : kEventGap;
    if (style_ == ProgressStyle::None || (shown_ >= 0.0 && now - shown_ < gap)) {
        return;
    }
    shown_ = now;
    const double left = work_.secondsLeft(now);
    if (style_ == ProgressStyle::Json) {
        progressEvent(left);
        return;
    }
    const int percent = std::clamp(static_cast<int>(work_.doneShare() * 100.0), 0, 99);
    const std::string count =
        std::to_string(finished_) + " of " + std::to_string(plan_.files.size()) +
        (failed_ > 0 ? ", " + std::to_string(failed_) + " failed" : std::string());
    const std::string times =
        wholeSeconds(now) + (left < 0.0 ? "" : ", " + wholeSeconds(left) + " left");
    if (style_ == ProgressStyle::Bar) {
        told_ = std::max(told_, percent);
        std::fprintf(stderr, "\r\033[K%s",
                     batchLine(count, told_, times, runningNames(), terminalWidth()).c_str());
        std::fflush(stderr);
        lineOpen_ = true;
    } else if (now >= kQuickElsewhere && percent / 10 > told_ / 10) {
        told_ = percent;
        line("batch " + order_.verb + ": " + count + ", " + std::to_string(percent) + " %, " +
             times);
    }
}

void BatchProgress::phase(const std::string& what) {
    if (style_ == ProgressStyle::Bar) {
        std::fprintf(stderr, "\r\033[K%s ...", what.c_str());
        std::fflush(stderr);
        lineOpen_ = true;
    }
}

void BatchProgress::end() {
    clear();
    if (style_ == ProgressStyle::Json) {
        line("{\"event\":\"end\",\"done\":" + std::to_string(plan_.count(BatchStatus::Done)) +
             ",\"skipped\":" + std::to_string(plan_.count(BatchStatus::Skipped)) +
             ",\"failed\":" + std::to_string(plan_.count(BatchStatus::Failed)) +
             ",\"seconds\":" + number(seconds()) + "}");
    }
}

}  // namespace orv::cli
