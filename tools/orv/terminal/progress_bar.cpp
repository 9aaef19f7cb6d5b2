#include "terminal/progress_bar.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <utility>

#include "terminal/interruption.h"
#include "terminal/messages.h"
#include "terminal/terminal.h"

namespace orv::cli {

namespace {

constexpr int kBarWidth = 30;
/// A bar shorter than this tells nothing.
constexpr int kLeastBarWidth = 8;
/// The share of a run that is left for writing the file.
constexpr double kWorkShare = 0.98;
/// Seconds of work before the first bar on a terminal, and before the first line elsewhere.
constexpr double kQuickOnTerminal = 0.5;
constexpr double kQuickElsewhere = 5.0;
/// The time left is a guess until so much is done, or so many seconds have passed.
constexpr double kEnoughDone = 0.05;
constexpr double kEnoughSeconds = 1.0;
/// Seconds between two drawings of the line.
constexpr double kRedraw = 0.1;

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

std::string progressLine(std::string_view label, int percent, std::string_view times,
                         int width) {
    std::string line = std::to_string(percent) + " %";
    const auto room = [&] { return width - static_cast<int>(line.size()); };
    if (room() > static_cast<int>(label.size()) + 2) {
        line.insert(0, std::string(5 - line.size(), ' '));
        line.insert(0, std::string(label) + " ");
    }
    const int timesWidth = times.empty() ? 0 : static_cast<int>(times.size()) + 1;
    const bool timesFit = timesWidth <= room();
    const int bar = std::min(kBarWidth, room() - 1 - (timesFit ? timesWidth : 0));
    if (bar >= kLeastBarWidth) {
        const int full = percent * bar / 100;
        line += " " + std::string(static_cast<std::size_t>(full), '#') +
                std::string(static_cast<std::size_t>(bar - full), '.');
    }
    if (timesFit && timesWidth > 0) {
        line += " " + std::string(times);
    }
    return line;
}

ProgressBar::ProgressBar(std::string label, ProgressStyle style)
    : label_(std::move(label)), style_(styleFor(style)), made_(Clock::now()), started_(made_) {}

ProgressBar::~ProgressBar() {
    clear();
}

void ProgressBar::clear() {
    if (lineOpen_) {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
        lineOpen_ = false;
        setLineOpen(false);
    }
}

double ProgressBar::seconds() const {
    return secondsSince(made_);
}

void ProgressBar::show(const std::string& line) {
    setLineOpen(true);
    lineOpen_ = true;
    std::fprintf(stderr, "\r\033[K%s", line.c_str());
    std::fflush(stderr);
}

void ProgressBar::phase(std::string_view action, const std::string& file) {
    if (style_ == ProgressStyle::Json) {
        std::fprintf(stderr, "{\"event\":\"%s\",\"label\":%s,\"file\":%s}\n",
                     std::string(action).c_str(), jsonQuoted(label_).c_str(),
                     jsonQuoted(file).c_str());
    }
    if (style_ != ProgressStyle::Bar) {
        return;
    }
    const std::string shortForm = std::string(action) + " ...";
    const std::string longForm =
        label_ + ": " + std::string(action) + " " + printable(file) + " ...";
    const auto width = static_cast<std::size_t>(std::max(terminalWidth(), 0));
    show(longForm.size() <= width ? longForm : shortForm.substr(0, width));
}

void ProgressBar::setLabel(std::string label) {
    if (label_ != label) {
        label_ = std::move(label);
        drawnAt_ = -kRedraw;
    }
}

void ProgressBar::start() {
    started_ = Clock::now();
}

void ProgressBar::update(double done) {
    if (style_ == ProgressStyle::None) {
        return;
    }
    percent_ =
        std::max(percent_, std::clamp(static_cast<int>(done * kWorkShare * 100.0), 0, 99));
    const double now = secondsSince(started_);
    if (style_ == ProgressStyle::Json) {
        if (percent_ > told_ && now - drawnAt_ >= kRedraw) {
            told_ = percent_;
            drawnAt_ = now;
            writeJson(done);
        }
        return;
    }
    const bool bar = style_ == ProgressStyle::Bar;
    if (now < (bar ? kQuickOnTerminal : kQuickElsewhere)) {
        return;
    }
    if (bar) {
        if (!drawn_ || now - drawnAt_ >= kRedraw) {
            drawnAt_ = now;
            draw(percent_, done);
        }
    } else if (percent_ / 10 > told_ / 10) {
        told_ = percent_ / 10 * 10;
        draw(told_, done);
    }
}

void ProgressBar::finish() {
    if (style_ == ProgressStyle::Json) {
        percent_ = 100;
        writeJson(1.0);
    } else if (!drawn_) {
        clear();
    } else if (style_ != ProgressStyle::None) {
        draw(100, 1.0);
        if (style_ == ProgressStyle::Bar) {
            std::fputc('\n', stderr);
        }
        lineOpen_ = false;
        setLineOpen(false);
    }
}

double ProgressBar::secondsLeft(int percent, double done) const {
    const double elapsed = secondsSince(started_);
    const bool known =
        percent < 100 && done > 0.0 && (done >= kEnoughDone || elapsed >= kEnoughSeconds);
    return known ? elapsed * (1.0 - done) / done : -1.0;
}

std::string ProgressBar::times(int percent, double done) const {
    const double left = secondsLeft(percent, done);
    return wholeSeconds(seconds()) + (left < 0.0 ? "" : ", " + wholeSeconds(left) + " left");
}

void ProgressBar::writeJson(double done) const {
    const double left = percent_ == 100 ? 0.0 : secondsLeft(percent_, done);
    std::fprintf(stderr,
                 "{\"event\":\"progress\",\"label\":%s,\"done\":%.2f,\"seconds\":%.1f,"
                 "\"left\":%s}\n",
                 jsonQuoted(label_).c_str(), percent_ / 100.0, seconds(),
                 left < 0.0 ? "null" : oneDecimal(left).c_str());
}

void ProgressBar::draw(int percent, double done) {
    drawn_ = true;
    if (style_ == ProgressStyle::Bar) {
        show(progressLine(label_, percent, times(percent, done), terminalWidth()));
        return;
    }
    std::fprintf(stderr, "%s: %d %%, %s\n", label_.c_str(), percent,
                 times(percent, done).c_str());
}

}  // namespace orv::cli
