#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "batch/stop_signal.h"

namespace orv::cli {

/// How a process ended.
struct ProcessEnd {
    bool exited = false;  ///< whether by itself, with `code`
    int code = 0;
    bool killed = false;  ///< whether it was killed, as the system does for want of memory
    std::string crash;    ///< else what it died of, in the words of the system
};

/// One run of this program as a process of its own, whose standard error is read here.
///
/// It dies with the process that started it, and is out of reach of the terminal's Ctrl-C.
class WorkerProcess {
  public:
    /// None yet.
    WorkerProcess() = default;
    /// Kills it, if it still runs.
    ~WorkerProcess();
    WorkerProcess(WorkerProcess&& other) noexcept;
    WorkerProcess& operator=(WorkerProcess&& other) noexcept;

    /// Starts the program on these words, with empty standard input and no standard output.
    ///
    /// Fails:   with a reason; an empty text means success.
    std::string start(const std::vector<std::string>& words);

    /// Whether its end hasn't been waited for.
    bool running() const { return errors_ != kNone; }

    /// Takes the lines that are whole by now; the last one at its end, too.
    ///
    /// Fails:   false when the process closed its standard error.
    bool read(std::vector<std::string>& lines);

    /// Waits for the end of the process.
    ProcessEnd wait();

    /// Ends it without asking, and waits for that.
    void kill();

    /// Waits until a process has something to read, a signal has come or the time is over.
    ///
    /// Units:   milliseconds; -1 for no end.
    /// Returns: whether each of them may be read.
    static std::vector<bool> waitForNews(const std::vector<const WorkerProcess*>& processes,
                                         const StopSignal& stop, int milliseconds);

  private:
    static constexpr std::intptr_t kNone = -1;

    void take(const char* bytes, std::size_t count, std::vector<std::string>& lines);
    void takeRest(std::vector<std::string>& lines);
    void closeErrors();

    std::intptr_t process_ = kNone;  // its number, or its handle on Windows
    std::intptr_t errors_ = kNone;   // a descriptor, or a handle of Windows
    std::string unfinished_;         // a line without its end
};

}  // namespace orv::cli
