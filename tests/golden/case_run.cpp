#include "case_run.h"

#include <cstdint>
#include <cstdio>

#include "exports.h"
#include "text_parts.h"

namespace golden {

namespace {

struct Task {
    const Library& library;
    const Case& one;
    Streams& streams;
    Observation seen;
};

void flushStreams() {
    std::fflush(stdout);
    std::fflush(stderr);
}

std::string textHash(const std::string& text) {
    return text.empty() ? "-" : hashOf(text);
}

/// Size and pixels of a new handle, which is destroyed.
void takePicture(const Library& library, const CaseValues& values, void* handle,
                 Observation& seen) {
    if (handle == nullptr) {
        seen.outcome.size = "null";
        seen.outcome.pixels = "-";
        return;
    }
    if (values.isPicture(handle)) {
        seen.faults.emplace_back("the source came back as the result");
        return;
    }
    int width = 0;
    int height = 0;
    library.info(handle, &width, &height);
    const unsigned char* const pixels = library.data(handle);
    seen.outcome.size = std::to_string(width) + "x" + std::to_string(height);
    seen.outcome.pixels = hashOf(pixels, static_cast<std::size_t>(3 * width * height));
    if (reinterpret_cast<std::uintptr_t>(pixels) % 32 != 0) {
        seen.faults.emplace_back("the pixels are not on a boundary of 32 bytes");
    }
    library.destroy(handle);
}

void callOnce(Task& task, CallExport call, CaseValues& values) {
    Observation& seen = task.seen;
    forgetProgress();
    flushStreams();
    task.streams.out.begin();
    task.streams.err.begin();
    const Returned returned = call(task.library, values);
    flushStreams();
    seen.errText = task.streams.err.end();
    seen.outText = task.streams.out.end();
    seen.outcome.progress = recordedProgress();
    seen.outcome.out = textHash(seen.outText);
    seen.outcome.err = textHash(seen.errText);
    if (returned.size.empty()) {
        takePicture(task.library, values, returned.handle, seen);
    } else {
        seen.outcome.size = returned.size;
        seen.outcome.pixels = returned.pixels;
    }
}

void runTask(void* data) {
    Task& task = *static_cast<Task*>(data);
    const CallExport call = exportNamed(task.one.function);
    if (call == nullptr) {
        return;
    }
    CaseValues values(task.library, task.one.arguments, task.one.pictures);
    task.library.setCallBack(recordProgress);
    for (int i = 0; i < task.one.calls; ++i) {
        values.restart();
        callOnce(task, call, values);
    }
    task.library.setCallBack(nullptr);
    task.seen.understood = values.complete();
    if (!values.picturesUntouched()) {
        task.seen.faults.emplace_back("the call has changed its source");
    }
}

}  // namespace

Observation runCase(const Library& library, const Case& one, Streams& streams) {
    Task task{library, one, streams, {}};
    if (!runOnNewThread(runTask, &task)) {
        task.seen.faults.emplace_back("no thread to run on");
    }
    return task.seen;
}

}  // namespace golden
