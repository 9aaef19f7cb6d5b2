#include "progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "messages.h"

namespace orv::cli {

namespace {

constexpr int kBarWidth = 30;
/// Seconds before the first sign: quick runs stay silent.
constexpr double kQuick = 1.0;
/// Seconds between two drawings of the line.
constexpr double kRedraw = 0.1;

bool isTerminal() {
    const char* const kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) != 0 && (kind == nullptr || std::strcmp(kind, "dumb") != 0);
}

std::string wholeSeconds(double seconds) {
    const long whole = static_cast<long>(seconds + 0.5);
    return whole < 60 ? std::to_string(whole) + " s" : durationText(static_cast<double>(whole));
}

}  // namespace

ProgressBar::ProgressBar(std::string label, bool quiet)
    : label_(std::move(label)),
      quiet_(quiet),
      terminal_(isTerminal()),
      start_(std::chrono::steady_clock::now()) {}

ProgressBar::~ProgressBar() {
    if (terminal_ && shown_ && !finished_) {
        std::fputs("\r\033[K", stderr);
    }
}

double ProgressBar::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

void ProgressBar::update(double done) {
    if (quiet_ || finished_) {
        return;
    }
    percent_ = std::max(percent_, std::clamp(static_cast<int>(done * 100.0), 0, 99));
    const double now = seconds();
    if (now < (terminal_ ? kQuick / 2 : kQuick)) {
        return;
    }
    if (terminal_) {
        if (!shown_ || now - drawnAt_ >= kRedraw) {
            drawnAt_ = now;
            draw(percent_, done);
        }
    } else if (percent_ / 10 > tenth_) {
        tenth_ = percent_ / 10;
        draw(tenth_ * 10, done);
    }
}

void ProgressBar::finish() {
    if (!quiet_ && shown_ && !finished_) {
        draw(100, 1.0);
        if (terminal_) {
            std::fputc('\n', stderr);
        }
    }
    finished_ = true;
}

void ProgressBar::draw(int percent, double done) {
    shown_ = true;
    const double elapsed = seconds();
    std::string times = wholeSeconds(elapsed);
    if (percent < 100 && done > 0.0) {
        times += ", " + wholeSeconds(elapsed * (1.0 - done) / done) + " left";
    }
    if (!terminal_) {
        std::fprintf(stderr, "%s: %d %%, %s\n", label_.c_str(), percent, times.c_str());
        return;
    }
    const auto full = static_cast<std::size_t>(percent * kBarWidth / 100);
    const std::string bar = std::string(full, '#') + std::string(kBarWidth - full, '.');
    std::fprintf(stderr, "\r\033[K%s %3d %% %s %s", label_.c_str(), percent, bar.c_str(),
                 times.c_str());
    std::fflush(stderr);
}

}  // namespace orv::cli
