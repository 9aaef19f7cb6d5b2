#include <windows.h>

#include <array>
#include <cstddef>
#include <string>

#include "system/file_system.h"
#include "terminal/interruption.h"

namespace orv::cli {

namespace {

/// What an interruption has to remove.
struct Unfinished {
    std::string path;  ///< empty when the place is free
    bool folder = false;
};

/// What the console's thread and the main one share.
struct Shared {
    Shared() { InitializeCriticalSection(&section); }

    CRITICAL_SECTION section{};
    std::array<Unfinished, 24> unfinished;
    bool lineOpen = false;
    bool resultWritten = false;
};

Shared& shared() {
    static Shared one;
    return one;
}

void say(const char* text) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(lstrlenA(text)),
              &written, nullptr);
}

/// Windows removes no file that is open, and the main thread may be about to close it.
void removeSoon(const Unfinished& entry) {
    constexpr int kAttempts = 200;
    constexpr DWORD kMilliseconds = 10;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (entry.folder ? removeFolder(entry.path) : removeFile(entry.path)) {
            return;
        }
        if (entry.folder || !isTaken(entry.path)) {
            return;
        }
        Sleep(kMilliseconds);
    }
}

/// Runs in a thread of its own while the main one goes on, up to its next pause.
BOOL WINAPI tidyUp(DWORD event) {
    Shared& all = shared();
    EnterCriticalSection(&all.section);
    // Folders were entered before what lies in them.
    for (std::size_t i = all.unfinished.size(); i-- > 0;) {
        if (!all.unfinished[i].path.empty()) {
            removeSoon(all.unfinished[i]);
        }
    }
    if (all.lineOpen) {
        say("\n");
    }
    if (event == CTRL_C_EVENT && !all.resultWritten) {
        say("orv: cancelled, nothing written\n");
    }
    // The section stays closed until the next handler, that of Windows, has ended the process.
    return FALSE;
}

}  // namespace

void watchInterruptions() {
    static const bool watching = [] {
        shared();
        return SetConsoleCtrlHandler(tidyUp, TRUE) != 0;
    }();
    static_cast<void>(watching);
}

int addUnfinished(const std::string& path, bool folder) {
    const InterruptionPause pause;
    auto& unfinished = shared().unfinished;
    // Places are given out in rising order, so that what came last goes first.
    std::size_t place = unfinished.size();
    while (place > 0 && unfinished[place - 1].path.empty()) {
        --place;
    }
    if (place == unfinished.size()) {
        return kNotWatched;
    }
    unfinished[place] = {path, folder};
    return static_cast<int>(place);
}

void dropUnfinished(int place) {
    if (place != kNotWatched) {
        const InterruptionPause pause;
        shared().unfinished[static_cast<std::size_t>(place)].path.clear();
    }
}

void setLineOpen(bool open) {
    const InterruptionPause pause;
    shared().lineOpen = open;
}

void setResultWritten() {
    const InterruptionPause pause;
    shared().resultWritten = true;
}

InterruptionPause::InterruptionPause() {
    EnterCriticalSection(&shared().section);
}

InterruptionPause::~InterruptionPause() {
    LeaveCriticalSection(&shared().section);
}

}  // namespace orv::cli
