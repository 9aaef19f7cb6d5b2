#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "terminal/progress_style.h"

namespace orv::cli {

/// Tells on standard error how far a run is.
///
/// On a terminal one line is kept up to date and never wider than the terminal: what is read or
/// written, and during the work percent, bar, time so far and time left. Elsewhere a plain line
/// is written at each tenth, and none unless the work takes longer than five seconds. As JSON
/// there is an object a line at each hundredth:
///
///     {"event":"progress","label":"restore","done":0.42,"seconds":3.1,"left":4.3}
///
/// `left` is null while it would be a guess. The value never goes back, and 100 appears in
/// finish() alone.
class ProgressBar {
  public:
    /// `label` opens each line.
    ProgressBar(std::string label, ProgressStyle style);
    /// Wipes an unfinished line.
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Changes what opens each line from now on; the next update shows it at once.
    void setLabel(std::string label);
    /// Shows on a terminal what goes on outside the work: "reading", "writing", and which file.
    void phase(std::string_view action, const std::string& file);
    /// The work begins: the time left is reckoned from now on.
    void start();
    /// `done` is the share of the work, from 0 to 1.
    void update(double done);
    /// Shows 100 %, if anything was shown.
    void finish();
    /// Wipes the line, so that another can be written to standard error.
    void clear();
    /// Seconds since the bar was made.
    double seconds() const;

  private:
    using Clock = std::chrono::steady_clock;

    void draw(int percent, double done);
    void show(const std::string& line);
    void writeJson(double done) const;
    double secondsLeft(int percent, double done) const;
    std::string times(int percent, double done) const;

    std::string label_;
    ProgressStyle style_;  // never Automatic
    bool lineOpen_ = false;
    bool drawn_ = false;
    int percent_ = 0;
    int told_ = 0;  // the percent of the last line
    double drawnAt_ = 0.0;
    Clock::time_point made_;
    Clock::time_point started_;
};

/// The line of a bar, at most `width` characters: as much of label, bar and times as fits, and
/// the percent in any case.
std::string progressLine(std::string_view label, int percent, std::string_view times,
                         int width);

}  // namespace orv::cli
