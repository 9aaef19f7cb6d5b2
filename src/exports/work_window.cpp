#include "exports/work_window.h"

namespace orv {

namespace {

struct WorkWindow {
    WorkObserver* observer;
    double low;
    double high;
    bool cancelled;
};

constinit WorkWindow window{nullptr, 0.0, 1.0, false};

}  // namespace

WorkObserver::~WorkObserver() = default;

WorkObserverScope::WorkObserverScope(WorkObserver* observer) {
    window = WorkWindow{observer, 0.0, 1.0, false};
}

WorkObserverScope::~WorkObserverScope() {
    window = WorkWindow{nullptr, 0.0, 1.0, false};
}

WorkSlice::WorkSlice(int index, int count) : low_(window.low), high_(window.high) {
    const double part = (high_ - low_) / count;
    window.low = low_ + part * index;
    window.high = low_ + part * (index + 1);
}

WorkSlice::~WorkSlice() {
    window.low = low_;
    window.high = high_;
}

bool reportWork(int done, int total) {
    if (window.observer == nullptr || window.cancelled) {
        return !window.cancelled;
    }
    const double share = window.low + (window.high - window.low) * done / total;
    window.cancelled = !window.observer->onWork(share);
    return !window.cancelled;
}

bool reportLine(int line, int lines) {
    constexpr int kLinesPerReport = 16;
    return line % kLinesPerReport != 0 || reportWork(line, lines);
}

bool workCancelled() {
    return window.cancelled;
}

}  // namespace orv
