#pragma once

#include <string>

namespace orv::cli {

/// Lets SIGINT, SIGTERM and SIGHUP tidy up before they end the process: unfinished files go,
/// an open line on standard error ends, and SIGINT says that nothing was written. On Windows
/// Ctrl-C is SIGINT, and a console that closes is SIGTERM.
///
/// A signal that is ignored, as under nohup, stays so.
void watchInterruptions();

/// The place of what an interruption won't remove.
inline constexpr int kNotWatched = -1;

/// Enters a file, or a folder if it is empty by then, that an interruption has to remove. Those
/// entered last go first.
///
/// Fails:   kNotWatched when all 24 places are taken or the path is too long to be kept.
int addUnfinished(const std::string& path, bool folder = false);

/// Strikes an entry out by the place that addUnfinished() gave.
void dropUnfinished(int place);

/// Whether standard error holds a line without its end.
void setLineOpen(bool open);

/// From now on the result is written, and an interruption has nothing to say.
void setResultWritten();

/// Keeps the three signals away while it lives. In the main thread alone; one may live in another.
class InterruptionPause {
  public:
    /// Blocks them.
    InterruptionPause();
    ~InterruptionPause();
    InterruptionPause(const InterruptionPause&) = delete;
    InterruptionPause& operator=(const InterruptionPause&) = delete;
};

}  // namespace orv::cli
