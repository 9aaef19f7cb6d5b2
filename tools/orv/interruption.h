#pragma once

#include <signal.h>

#include <string>

namespace orv::cli {

/// Lets SIGINT, SIGTERM and SIGHUP tidy up before they end the process: the unfinished file goes,
/// an open line on standard error ends, and SIGINT says that nothing was written.
///
/// A signal that is ignored, as under nohup, stays so.
void watchInterruptions();

/// Names the file that an interruption has to remove; an empty name means none.
///
/// Fails:   false when the name is too long to be kept.
bool setUnfinishedFile(const std::string& name);

/// Whether standard error holds a line without its end.
void setLineOpen(bool open);

/// From now on the result is written, and an interruption has nothing to say.
void setResultWritten();

/// Keeps the three signals away while it lives.
class InterruptionPause {
  public:
    /// Blocks them.
    InterruptionPause();
    ~InterruptionPause();
    InterruptionPause(const InterruptionPause&) = delete;
    InterruptionPause& operator=(const InterruptionPause&) = delete;

  private:
    sigset_t before_;
};

}  // namespace orv::cli
