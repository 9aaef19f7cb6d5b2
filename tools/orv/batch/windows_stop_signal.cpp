#include <windows.h>

#include <csignal>
#include <cstdio>

#include "batch/stop_signal.h"

namespace orv::cli {

namespace {

/// Set by the console's thread, read by the main one.
constinit volatile LONG firstSignal = 0;

BOOL WINAPI noteEvent(DWORD event) {
    const bool asked = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    InterlockedCompareExchange(&firstSignal, asked ? SIGINT : SIGTERM, 0);
    if (!asked) {
        // Windows ends the process when this returns, and a few seconds later in any case.
        Sleep(INFINITE);
    }
    return TRUE;
}

}  // namespace

StopSignal::StopSignal() {
    firstSignal = 0;
    SetConsoleCtrlHandler(noteEvent, TRUE);
}

StopSignal::~StopSignal() {
    SetConsoleCtrlHandler(noteEvent, FALSE);
}

int StopSignal::descriptor() const {
    return -1;
}

int StopSignal::received() const {
    return static_cast<int>(firstSignal);
}

void StopSignal::endBy(int /*signal*/) {
    std::fflush(nullptr);
    ExitProcess(static_cast<UINT>(STATUS_CONTROL_C_EXIT));
}

}  // namespace orv::cli
