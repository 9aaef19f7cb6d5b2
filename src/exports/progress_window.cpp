#include "exports/progress_window.h"

namespace orv {

namespace {

constinit ProgressWindow window{nullptr, 0, 0};

}  // namespace

ProgressWindow& progressWindow() {
    return window;
}

void reportProgress(int value) {
    if (window.callback != nullptr) {
        window.callback(value);
    }
}

}  // namespace orv
