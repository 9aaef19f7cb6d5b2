#include <signal.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "terminal/interruption.h"

namespace orv::cli {

namespace {

/// What a signal has to remove.
struct Unfinished {
    std::array<char, PATH_MAX> path;  ///< empty when the place is free
    bool folder;
};

/// Files in the making and folders made for them: a few outputs of one run.
constinit std::array<Unfinished, 24> unfinished{};
constinit volatile std::sig_atomic_t lineOpen = 0;
constinit volatile std::sig_atomic_t resultWritten = 0;

/// The pauses that live, and what was blocked before the first of them.
constinit int pauses = 0;
constinit sigset_t blockedBefore{};

constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};

/// write() alone is safe in a handler, and nobody is left to hear that it failed.
void say(std::string_view text) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    static_cast<void>(written);
}

extern "C" void tidyUpAndDie(int signal) {
    // Folders were entered before what lies in them.
    for (std::size_t i = unfinished.size(); i-- > 0;) {
        if (unfinished[i].path[0] != '\0') {
            unfinished[i].folder ? rmdir(unfinished[i].path.data())
                                 : unlink(unfinished[i].path.data());
        }
    }
    if (lineOpen != 0) {
        say("\n");
    }
    if (signal == SIGINT && resultWritten == 0) {
        say("orv: cancelled, nothing written\n");
    }
    // The handler was installed for one call: the signal now does what it always did.
    raise(signal);
}

}  // namespace

void watchInterruptions() {
    for (const int signal : kSignals) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action {};
        action.sa_handler = tidyUpAndDie;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, nullptr);
    }
}

int addUnfinished(const std::string& path, bool folder) {
    const InterruptionPause pause;
    // Places are given out in rising order, so that what came last goes first.
    std::size_t place = unfinished.size();
    while (place > 0 && unfinished[place - 1].path[0] == '\0') {
        --place;
    }
    if (place == unfinished.size() || path.size() >= unfinished[place].path.size()) {
        return kNotWatched;
    }
    std::memcpy(unfinished[place].path.data(), path.c_str(), path.size() + 1);
    unfinished[place].folder = folder;
    return static_cast<int>(place);
}

void dropUnfinished(int place) {
    if (place != kNotWatched) {
        const InterruptionPause pause;
        unfinished[static_cast<std::size_t>(place)].path[0] = '\0';
    }
}

void setLineOpen(bool open) {
    lineOpen = open ? 1 : 0;
}

void setResultWritten() {
    resultWritten = 1;
}

InterruptionPause::InterruptionPause() {
    if (pauses++ > 0) {
        return;
    }
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : kSignals) {
        sigaddset(&signals, signal);
    }
    sigprocmask(SIG_BLOCK, &signals, &blockedBefore);
}

InterruptionPause::~InterruptionPause() {
    if (--pauses == 0) {
        sigprocmask(SIG_SETMASK, &blockedBefore, nullptr);
    }
}

}  // namespace orv::cli
