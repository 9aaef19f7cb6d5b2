#pragma once

namespace orv::cli {

/// Takes SIGINT, SIGTERM and SIGHUP while it lives, so that work can be ended in order. On Windows
/// it takes what a console asks for.
///
/// A signal that is ignored, as under nohup, stays so. One at a time.
class StopSignal {
  public:
    StopSignal();
    /// The signals do again what they did before.
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// What to poll for reading: something is there once a signal came. -1 on Windows.
    int descriptor() const;
    /// The signal that came first, or 0.
    int received() const;

    /// Ends this process as that signal does. Call it when no StopSignal lives.
    static void endBy(int signal);
};

}  // namespace orv::cli
