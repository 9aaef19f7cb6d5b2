#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include "batch/stop_signal.h"

namespace orv::cli {

namespace {

constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};

/// What the signals did before.
constinit std::array<struct sigaction, 3> actionsBefore{};
constinit volatile std::sig_atomic_t firstSignal = 0;
/// A byte in here wakes the one who polls.
constinit std::array<int, 2> wake{-1, -1};

extern "C" void noteSignal(int signal) {
    if (firstSignal == 0) {
        firstSignal = signal;
    }
    // What was interrupted may be about to look at its own error.
    const int before = errno;
    const char byte = 1;
    const ssize_t written = write(wake[1], &byte, 1);
    static_cast<void>(written);
    errno = before;
}

}  // namespace

StopSignal::StopSignal() {
    firstSignal = 0;
    if (pipe(wake.data()) == 0) {
        for (const int end : wake) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
            fcntl(end, F_SETFL, O_NONBLOCK);
        }
    }
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &actionsBefore[i]);
        if (actionsBefore[i].sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action {};
        action.sa_handler = noteSignal;
        sigemptyset(&action.sa_mask);
        sigaction(kSignals[i], &action, nullptr);
    }
}

StopSignal::~StopSignal() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &actionsBefore[i], nullptr);
    }
    for (int& end : wake) {
        close(end);
        end = -1;
    }
}

int StopSignal::descriptor() const {
    return wake[0];
}

void StopSignal::endBy(int signal) {
    std::raise(signal);
}

int StopSignal::received() const {
    return firstSignal;
}

}  // namespace orv::cli
