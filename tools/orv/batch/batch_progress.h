#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "batch/batch_plan.h"
#include "batch/time_left.h"
#include "terminal/progress_style.h"

namespace orv::cli {

/// Tells on standard error how far a batch is.
///
/// On a terminal one line is kept up to date: how many pictures are finished, the share of the
/// work, time so far and time left, and what is worked on. Elsewhere a line is written at each
/// tenth, and none unless the batch takes longer than five seconds. Failures stand above as
/// lines of their own. As JSON there is an object a line:
///
///     {"event":"start","verb":"restore","files":200,"skipped":12,"jobs":2}
///     {"event":"file","file":"a.png","output":"out/a.png","status":"done","seconds":0.4,
///      "reason":"","finished":13,"of":200}
///     {"event":"progress","done":0.42,"seconds":3.1,"left":4.3,"finished":84,"of":200}
///     {"event":"end","done":180,"skipped":12,"failed":8,"seconds":61.2}
class BatchProgress {
  public:
    /// Pictures that need no work count as finished.
    BatchProgress(const BatchOrder& order, const BatchPlan& plan);
    /// Wipes an unfinished line.
    ~BatchProgress();
    BatchProgress(const BatchProgress&) = delete;
    BatchProgress& operator=(const BatchProgress&) = delete;

    void started(std::size_t file);
    void advanced(std::size_t file, double share);
    void finished(std::size_t file);
    /// A picture that was begun goes back among those to be done.
    void postponed(std::size_t file);
    void warn(const BatchFile& file, const std::string& text);
    /// Shows on a terminal what goes on beside the pictures.
    void phase(const std::string& what);
    /// Shows what has changed; called ten times a second or so.
    void show();
    /// Wipes the line, so that another can be written to standard error.
    void clear();
    /// The end of all.
    void end();

    double seconds() const;
    /// Seconds after which show() is due again, or -1 when it needn't be called at all.
    double interval() const;

  private:
    void line(const std::string& text) const;
    std::string runningNames() const;
    void fileEvent(const BatchFile& file);
    void progressEvent(double left) const;

    const BatchOrder& order_;
    const BatchPlan& plan_;
    ProgressStyle style_;  // never Automatic
    TimeLeft work_;
    std::vector<std::size_t> places_;  // of the files in work_
    std::vector<std::size_t> running_;
    int finished_ = 0;
    int failed_ = 0;
    int told_ = 0;
    double shown_ = -1.0;
    bool lineOpen_ = false;
    std::chrono::steady_clock::time_point made_;
};

/// The line of a batch, at most `width` characters.
///
/// `times` and `names` are left out, the names first, where there is no room.
std::string batchLine(const std::string& count, int percent, const std::string& times,
                      const std::string& names, int width);

}  // namespace orv::cli
