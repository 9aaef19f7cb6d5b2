#pragma once

#include <chrono>
#include <string>

namespace orv::cli {

/// Tells on standard error how far a run is.
///
/// On a terminal one line is kept up to date: percent, bar, time so far and time left. Elsewhere
/// a plain line is written at each tenth, at most ten, and none in the first second. The value
/// never goes back, and 100 appears in finish() alone.
class ProgressBar {
  public:
    /// `label` opens each line; a quiet bar writes nothing.
    ProgressBar(std::string label, bool quiet);
    /// Wipes an unfinished line.
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// `done` runs from 0 to 1.
    void update(double done);
    /// Shows 100 %, if anything was shown.
    void finish();
    /// Seconds since the bar was made.
    double seconds() const;

  private:
    void draw(int percent, double done);

    std::string label_;
    bool quiet_;
    bool terminal_;
    bool shown_ = false;
    bool finished_ = false;
    int percent_ = 0;
    int tenth_ = 0;
    double drawnAt_ = 0.0;
    std::chrono::steady_clock::time_point start_;
};

}  // namespace orv::cli
