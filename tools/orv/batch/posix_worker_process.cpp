#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#ifdef __linux__
#include <sys/prctl.h>
#endif
#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include "batch/worker_process.h"

namespace orv::cli {

namespace {

/// The program that runs now. On Linux this name reaches it even after it was replaced.
std::string programPath() {
#ifdef __APPLE__
    std::array<char, 4096> path{};
    auto size = static_cast<std::uint32_t>(path.size());
    return _NSGetExecutablePath(path.data(), &size) == 0 ? path.data() : "orv";
#else
    return "/proc/self/exe";
#endif
}

/// Where the system knows how, the process dies with the one that started it.
void dieWithParent(pid_t parent) {
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Should memory run out, the system had better end a worker than the batch.
    const int score = open("/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    if (score >= 0) {
        const ssize_t written = write(score, "300", 3);
        static_cast<void>(written);
        close(score);
    }
#endif
    if (getppid() != parent) {
        _exit(127);
    }
}

/// The child's side: streams, signals and the program itself. Does what is safe after fork().
[[noreturn]] void become(const char* program, char* const* words, int errors, pid_t parent) {
    setpgid(0, 0);
    dieWithParent(parent);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    if (nothing > STDERR_FILENO) {
        close(nothing);
    }
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        signal(number, SIG_DFL);
    }
    execv(program, words);
    constexpr std::string_view kReason = "orv: the program can't be started again\n";
    const ssize_t written = write(STDERR_FILENO, kReason.data(), kReason.size());
    static_cast<void>(written);
    _exit(127);
}

}  // namespace

std::string WorkerProcess::start(const std::vector<std::string>& words) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return std::string("no pipe for a worker: ") + std::strerror(errno);
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    const std::string program = programPath();
    std::string name = "orv";
    std::vector<char*> pointers{name.data()};
    for (const std::string& word : words) {
        pointers.push_back(const_cast<char*>(word.c_str()));
    }
    pointers.push_back(nullptr);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        become(program.c_str(), pointers.data(), ends[1], parent);
    }
    const int error = errno;
    ::close(ends[1]);
    if (child < 0) {
        ::close(ends[0]);
        return std::string("no process for a worker: ") + std::strerror(error);
    }
    process_ = child;
    errors_ = ends[0];
    return {};
}

bool WorkerProcess::read(std::vector<std::string>& lines) {
    std::array<char, 8192> block{};
    for (;;) {
        const ssize_t count = ::read(static_cast<int>(errors_), block.data(), block.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && errno == EAGAIN) {
            return true;
        }
        if (count <= 0) {
            takeRest(lines);
            return false;
        }
        take(block.data(), static_cast<std::size_t>(count), lines);
    }
}

ProcessEnd WorkerProcess::wait() {
    int status = 0;
    while (process_ != kNone && waitpid(static_cast<pid_t>(process_), &status, 0) < 0 &&
           errno == EINTR) {
    }
    process_ = kNone;
    closeErrors();
    ProcessEnd end;
    end.exited = WIFEXITED(status);
    end.code = end.exited ? WEXITSTATUS(status) : 0;
    if (WIFSIGNALED(status)) {
        end.killed = WTERMSIG(status) == SIGKILL;
        end.crash = strsignal(WTERMSIG(status));
    }
    return end;
}

void WorkerProcess::kill() {
    if (process_ != kNone) {
        ::kill(static_cast<pid_t>(process_), SIGKILL);
        wait();
    }
    closeErrors();
}

void WorkerProcess::closeErrors() {
    if (errors_ != kNone) {
        ::close(static_cast<int>(errors_));
        errors_ = kNone;
    }
}

std::vector<bool> WorkerProcess::waitForNews(const std::vector<const WorkerProcess*>& processes,
                                             const StopSignal& stop, int milliseconds) {
    std::vector<pollfd> places;
    for (const WorkerProcess* const process : processes) {
        places.push_back({static_cast<int>(process->errors_), POLLIN, 0});
    }
    places.push_back({stop.descriptor(), POLLIN, 0});
    const int count = poll(places.data(), places.size(), milliseconds);
    std::vector<bool> ready(processes.size(), false);
    for (std::size_t i = 0; count > 0 && i < ready.size(); ++i) {
        ready[i] = places[i].revents != 0;
    }
    return ready;
}

}  // namespace orv::cli
