#include "interruption.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>
#include <cstring>
#include <string_view>

namespace orv::cli {

namespace {

/// The file that a signal has to remove; empty when there is none.
constinit std::array<char, PATH_MAX> unfinishedFile{};
constinit volatile std::sig_atomic_t lineOpen = 0;
constinit volatile std::sig_atomic_t resultWritten = 0;

constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};

/// write() alone is safe in a handler, and nobody is left to hear that it failed.
void say(std::string_view text) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    static_cast<void>(written);
}

extern "C" void tidyUpAndDie(int signal) {
    if (unfinishedFile[0] != '\0') {
        unlink(unfinishedFile.data());
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

bool setUnfinishedFile(const std::string& name) {
    if (name.size() >= unfinishedFile.size()) {
        return false;
    }
    const InterruptionPause pause;
    std::memcpy(unfinishedFile.data(), name.c_str(), name.size() + 1);
    return true;
}

void setLineOpen(bool open) {
    lineOpen = open ? 1 : 0;
}

void setResultWritten() {
    resultWritten = 1;
}

InterruptionPause::InterruptionPause() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : kSignals) {
        sigaddset(&signals, signal);
    }
    sigprocmask(SIG_BLOCK, &signals, &before_);
}

InterruptionPause::~InterruptionPause() {
    sigprocmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace orv::cli
