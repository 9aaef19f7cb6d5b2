#pragma once

#include <signal.h>

#include <array>

namespace orv::cli {

/// Takes SIGINT, SIGTERM and SIGHUP while it lives, so that work can be ended in order.
///
/// A signal that is ignored, as under nohup, stays so. One at a time.
class StopSignal {
  public:
    StopSignal();
    /// The signals do again what they did before.
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// What to poll for reading: something is there once a signal came.
    int descriptor() const;
    /// The signal that came first, or 0.
    int received() const;

  private:
    std::array<struct sigaction, 3> before_{};
};

}  // namespace orv::cli
