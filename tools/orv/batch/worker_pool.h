#pragma once

#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <vector>

#include "batch/batch_folder.h"
#include "batch/batch_plan.h"
#include "batch/batch_progress.h"
#include "batch/stop_signal.h"
#include "batch/worker_process.h"

namespace orv::cli {

/// Does the pictures of a batch that wait, several at a time, each in a process of its own.
///
/// A crash or a bad file costs that picture alone. The memory that may be used is shared out
/// evenly; a picture that needs more than its share is done at the end, with nothing beside it.
class WorkerPool {
  public:
    WorkerPool(const BatchOrder& order, BatchPlan& plan, const BatchFolder& folder,
               BatchProgress& progress, const StopSignal& stop);

    /// Returns when all is done or a signal has come; no worker is left then.
    ///
    /// Fails:   when a worker says that the command itself is wrong.
    Failure run();

  private:
    struct Worker {
        int slot = 0;
        std::size_t file = 0;
        WorkerProcess process;
        std::string staged;  // where it writes the picture
        std::string recipe;  // and the recipe
        double started = 0.0;
        bool alone = false;
        std::string error = {};
    };

    void startWaiting();
    void start(std::size_t file, bool alone);
    Words wordsFor(const Worker& worker) const;
    std::string memoryOption(bool alone) const;
    std::vector<bool> waitForNews() const;
    void hear(Worker& worker, const std::string& line);
    void settle(Worker& worker, const ProcessEnd& end);
    void publish(Worker& worker);
    void finish(std::size_t file, std::string reason);
    void noteFailure(const BatchFile& file);
    int freeSlot() const;

    const BatchOrder& order_;
    BatchPlan& plan_;
    const BatchFolder& folder_;
    BatchProgress& progress_;
    const StopSignal& stop_;
    std::deque<std::size_t> waiting_;
    std::deque<std::size_t> large_;  // those that need more than their share of memory
    std::vector<Worker> workers_;
    std::set<std::string> warned_;
    Failure wrongCommand_;
};

}  // namespace orv::cli
