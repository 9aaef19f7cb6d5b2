#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace orv::cli {

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

    /// What to poll for reading.
    int descriptor() const { return errors_; }
    pid_t id() const { return process_; }

    /// Takes the lines that are whole by now; the last one at its end, too.
    ///
    /// Fails:   false when the process closed its standard error.
    bool read(std::vector<std::string>& lines);

    /// Waits for the end of the process, and gives its status as waitpid() does.
    int wait();

    /// Ends it without asking, and waits for that.
    void kill();

  private:
    void closeErrors();

    pid_t process_ = -1;
    int errors_ = -1;
    std::string unfinished_;  // a line without its end
};

}  // namespace orv::cli
