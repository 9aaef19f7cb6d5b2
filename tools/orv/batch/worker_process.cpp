#include "batch/worker_process.h"

#include <cstddef>
#include <utility>

namespace orv::cli {

namespace {

/// The most bytes of a line; what follows is dropped.
constexpr std::size_t kLongestLine = 16384;

}  // namespace

WorkerProcess::~WorkerProcess() {
    kill();
}

WorkerProcess::WorkerProcess(WorkerProcess&& other) noexcept
    : process_(std::exchange(other.process_, kNone)),
      errors_(std::exchange(other.errors_, kNone)),
      unfinished_(std::move(other.unfinished_)) {}

WorkerProcess& WorkerProcess::operator=(WorkerProcess&& other) noexcept {
    std::swap(process_, other.process_);
    std::swap(errors_, other.errors_);
    std::swap(unfinished_, other.unfinished_);
    return *this;
}

void WorkerProcess::take(const char* bytes, std::size_t count,
                         std::vector<std::string>& lines) {
    for (std::size_t i = 0; i < count; ++i) {
        if (bytes[i] == '\n') {
            lines.push_back(std::exchange(unfinished_, {}));
        } else if (unfinished_.size() < kLongestLine) {
            unfinished_ += bytes[i];
        }
    }
}

void WorkerProcess::takeRest(std::vector<std::string>& lines) {
    if (!unfinished_.empty()) {
        lines.push_back(std::exchange(unfinished_, {}));
    }
}

}  // namespace orv::cli
