#include "batch/worker_pool.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "batch/finished_work.h"
#include "files/output_file.h"
#include "recipe/json_value.h"
#include "system/file_system.h"
#include "terminal/messages.h"

namespace orv::cli {

namespace {

constexpr std::string_view kRecipeCopy = "recipe.json";

bool beginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// The text with one path in place of another.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string endingOf(const std::string& path) {
    const std::size_t name = path.find_last_of('/') + 1;
    const std::size_t dot = path.find_last_of('.');
    return dot == std::string::npos || dot < name ? std::string() : path.substr(dot);
}

/// Why a worker that wasn't done ended.
std::string reasonOf(const ProcessEnd& end, const std::string& error) {
    if (!end.exited) {
        return end.killed
                   ? "its worker was killed, perhaps for want of memory; fewer --jobs need less"
                   : "its worker crashed (" + end.crash + ")";
    }
    return error.empty() ? "its worker ended with exit code " + std::to_string(end.code) +
                               " and said nothing"
                         : error;
}

bool endedWith(const ProcessEnd& end, ExitCode code) {
    return end.exited && end.code == static_cast<int>(code);
}

/// Adds to a list. Failures show on the terminal as well, so one that fails costs nothing.
void addText(const std::string& path, const std::string& text) {
    std::FILE* const file = openFile(path, "ab");
    if (file != nullptr) {
        std::fwrite(text.data(), 1, text.size(), file);
        std::fclose(file);
    }
}

}  // namespace

WorkerPool::WorkerPool(const BatchOrder& order, BatchPlan& plan, const BatchFolder& folder,
                       BatchProgress& progress, const StopSignal& stop)
    : order_(order), plan_(plan), folder_(folder), progress_(progress), stop_(stop) {
    // What holds for all pictures was said once, before the first.
    warned_.insert(order.warnings.begin(), order.warnings.end());
    if (!order.recipe.empty()) {
        writeText(folder.sharedFile(std::string(kRecipeCopy)), order.recipe);
    }
    removeFile(folder.failureList());
    for (std::size_t i = 0; i < plan.files.size(); ++i) {
        if (plan.files[i].status == BatchStatus::Waiting) {
            waiting_.push_back(i);
        } else if (plan.files[i].status == BatchStatus::Failed) {
            noteFailure(plan.files[i]);
        }
    }
}

Failure WorkerPool::run() {
    while (stop_.received() == 0 && !wrongCommand_) {
        startWaiting();
        if (workers_.empty() && waiting_.empty() && large_.empty()) {
            break;
        }
        const std::vector<bool> ready = waitForNews();
        for (std::size_t i = 0; i < ready.size() && stop_.received() == 0; ++i) {
            std::vector<std::string> lines;
            const bool open = !ready[i] || workers_[i].process.read(lines);
            for (const std::string& line : lines) {
                hear(workers_[i], line);
            }
            if (!open) {
                const ProcessEnd end = workers_[i].process.wait();
                settle(workers_[i], end);
            }
        }
        workers_.erase(
            std::remove_if(workers_.begin(), workers_.end(),
                           [](const Worker& worker) { return !worker.process.running(); }),
            workers_.end());
        progress_.show();
    }
    workers_.clear();
    return wrongCommand_;
}

void WorkerPool::startWaiting() {
    while (!waiting_.empty() && static_cast<int>(workers_.size()) < order_.jobs) {
        const std::size_t file = waiting_.front();
        waiting_.pop_front();
        start(file, /*alone=*/order_.jobs == 1);
    }
    if (workers_.empty() && waiting_.empty() && !large_.empty()) {
        const std::size_t file = large_.front();
        large_.pop_front();
        start(file, /*alone=*/true);
    }
}

int WorkerPool::freeSlot() const {
    int slot = 0;
    const auto taken = [&slot](const Worker& worker) { return worker.slot == slot; };
    while (std::any_of(workers_.begin(), workers_.end(), taken)) {
        ++slot;
    }
    return slot;
}

void WorkerPool::start(std::size_t file, bool alone) {
    BatchFile& picture = plan_.files[file];
    picture.status = BatchStatus::Running;
    // It may have changed since the batch began.
    readStamp(picture.input, picture.stamp);
    Worker worker;
    worker.slot = freeSlot();
    worker.file = file;
    worker.alone = alone;
    worker.started = progress_.seconds();
    progress_.started(file);
    const std::string place = folder_.emptySlot(worker.slot);
    worker.staged = place + "result" + endingOf(picture.output);
    worker.recipe = place + "recipe.json";
    std::string error = place.empty() ? "its worker has no place to write to"
                                      : worker.process.start(wordsFor(worker));
    if (!error.empty()) {
        finish(file, std::move(error));
        return;
    }
    workers_.push_back(std::move(worker));
}

Words WorkerPool::wordsFor(const Worker& worker) const {
    Words words = order_.parts.front();
    words.insert(words.end(),
                 {"--output=" + worker.staged, "--recipe=" + worker.recipe, "--progress=json"});
    const std::string memory = memoryOption(worker.alone);
    if (!memory.empty()) {
        words.push_back(memory);
    }
    words.emplace_back("--");
    if (!order_.recipe.empty()) {
        words.push_back(folder_.sharedFile(std::string(kRecipeCopy)));
    }
    // A comma alone would begin the next step.
    const std::string& input = plan_.files[worker.file].input;
    words.push_back(input == "," ? "./," : input);
    for (std::size_t i = 1; i < order_.parts.size(); ++i) {
        words.emplace_back(",");
        words.insert(words.end(), order_.parts[i].begin(), order_.parts[i].end());
    }
    return words;
}

std::string WorkerPool::memoryOption(bool alone) const {
    if (!order_.memory) {
        return {};
    }
    const double share = *order_.memory / (alone ? 1 : order_.jobs);
    return "--max-memory=" + std::to_string(static_cast<long long>(share));
}

std::vector<bool> WorkerPool::waitForNews() const {
    std::vector<const WorkerProcess*> processes;
    for (const Worker& worker : workers_) {
        processes.push_back(&worker.process);
    }
    const double interval = progress_.interval();
    const int wait = workers_.empty() ? 0
                     : interval < 0.0 ? -1
                                      : static_cast<int>(interval * 1000.0);
    return WorkerProcess::waitForNews(processes, stop_, wait);
}

void WorkerPool::hear(Worker& worker, const std::string& line) {
    constexpr std::string_view kWarning = "orv: warning: ";
    constexpr std::string_view kError = "orv: ";
    BatchFile& file = plan_.files[worker.file];
    const auto plain = [&](std::string_view prefix) {
        return replaced(line.substr(prefix.size()), printable(worker.staged),
                        printable(file.output));
    };
    if (beginsWith(line, kWarning)) {
        const std::string text = plain(kWarning);
        if (warned_.insert(text).second) {
            file.warnings.push_back(text);
            progress_.warn(file, text);
        }
    } else if (beginsWith(line, kError)) {
        worker.error = plain(kError);
        const std::string name = printable(file.input) + ": ";
        if (beginsWith(worker.error, name)) {
            worker.error.erase(0, name.size());
        }
    } else if (!line.empty() && line[0] == '{') {
        JsonValue event;
        const JsonValue* const done =
            parseJson(line, event).empty() ? event.member("done") : nullptr;
        if (done != nullptr) {
            progress_.advanced(worker.file, std::strtod(done->text.c_str(), nullptr));
        }
    }
}

void WorkerPool::settle(Worker& worker, const ProcessEnd& end) {
    plan_.files[worker.file].seconds = progress_.seconds() - worker.started;
    if (endedWith(end, ExitCode::Done)) {
        publish(worker);
    } else if (endedWith(end, ExitCode::Usage)) {
        wrongCommand_ = {ExitCode::Usage, worker.error};
    } else if (endedWith(end, ExitCode::Memory) && !worker.alone) {
        plan_.files[worker.file].status = BatchStatus::Waiting;
        large_.push_back(worker.file);
        progress_.postponed(worker.file);
    } else {
        finish(worker.file, reasonOf(end, worker.error));
    }
}

void WorkerPool::publish(Worker& worker) {
    BatchFile& file = plan_.files[worker.file];
    std::string error = completeRecipe(worker.recipe, order_.request, file, worker.staged);
    if (error.empty()) {
        error = folder_.publish(worker.staged, worker.recipe, file, order_.force);
    }
    if (error.empty()) {
        FileStamp result;
        readStamp(file.output, result);
        file.bytes = result.bytes;
    }
    finish(worker.file, std::move(error));
}

void WorkerPool::finish(std::size_t file, std::string reason) {
    BatchFile& picture = plan_.files[file];
    picture.status = reason.empty() ? BatchStatus::Done : BatchStatus::Failed;
    picture.reason = std::move(reason);
    if (picture.status == BatchStatus::Failed) {
        noteFailure(picture);
    }
    progress_.finished(file);
}

void WorkerPool::noteFailure(const BatchFile& file) {
    addText(folder_.failureList(), printable(file.input) + ": " + file.reason + "\n");
}

}  // namespace orv::cli
