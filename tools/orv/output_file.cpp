#include "output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orv::cli {

namespace {

/// The name that a signal has to remove; empty when there is none.
constinit std::array<char, PATH_MAX> pendingName{};

constexpr std::array<int, 3> kSignals{SIGINT, SIGTERM, SIGHUP};

extern "C" void removeAndDie(int signal) {
    if (pendingName[0] != '\0') {
        unlink(pendingName.data());
    }
    // The handler was installed for one call: the signal now does what it always did.
    raise(signal);
}

/// Keeps the signals away while a name is made or forgotten.
class SignalPause {
  public:
    SignalPause() {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : kSignals) {
            sigaddset(&signals, signal);
        }
        sigprocmask(SIG_BLOCK, &signals, &before_);
    }
    ~SignalPause() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    SignalPause(const SignalPause&) = delete;
    SignalPause& operator=(const SignalPause&) = delete;

  private:
    sigset_t before_{};
};

void watchSignals() {
    for (const int signal : kSignals) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action {};
        action.sa_handler = removeAndDie;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, nullptr);
    }
}

std::string systemError(const std::string& path, int error) {
    return path +
           ": can't be written: " + (error == ENOENT ? "no such folder" : std::strerror(error));
}

mode_t usualMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

OutputFile::~OutputFile() {
    remove();
}

void OutputFile::remove() {
    if (temporary_.empty()) {
        return;
    }
    const SignalPause pause;
    unlink(temporary_.c_str());
    pendingName[0] = '\0';
    temporary_.clear();
}

std::string OutputFile::open(const std::string& path, bool overwrite) {
    path_ = path;
    target_ = path;
    mode_t mode = usualMode();
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) {
            return path + ": is a folder; name a file in it";
        }
        if (!S_ISREG(status.st_mode)) {
            return path + ": is no regular file";
        }
        if (!overwrite) {
            return path + ": exists already; --force overwrites it";
        }
        if (access(path.c_str(), W_OK) != 0) {
            return systemError(path, errno);
        }
        mode = status.st_mode & 0777;
        std::array<char, PATH_MAX> resolved{};
        if (realpath(path.c_str(), resolved.data()) != nullptr) {
            target_ = resolved.data();
        }
    }

    const std::size_t slash = target_.find_last_of('/');
    std::string name =
        (slash == std::string::npos ? "" : target_.substr(0, slash + 1)) + ".orv-XXXXXX";
    if (name.size() >= pendingName.size()) {
        return systemError(path, ENAMETOOLONG);
    }
    const SignalPause pause;
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) {
        return systemError(path, errno);
    }
    fchmod(descriptor, mode);
    close(descriptor);
    std::memcpy(pendingName.data(), name.c_str(), name.size() + 1);
    temporary_ = name;
    watchSignals();
    return {};
}

std::string OutputFile::commit() {
    const SignalPause pause;
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) {
        const std::string error = systemError(path_, errno);
        remove();
        return error;
    }
    pendingName[0] = '\0';
    temporary_.clear();
    return {};
}

}  // namespace orv::cli
