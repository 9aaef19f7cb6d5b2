#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "system/console.h"

namespace orv::cli {

bool isTerminal(Stream stream) {
    const int descriptor = stream == Stream::Input    ? STDIN_FILENO
                           : stream == Stream::Output ? STDOUT_FILENO
                                                      : STDERR_FILENO;
    return isatty(descriptor) != 0;
}

bool canRedrawErrors() {
    const char* const kind = std::getenv("TERM");
    return isTerminal(Stream::Errors) && (kind == nullptr || std::strcmp(kind, "dumb") != 0);
}

int terminalColumns() {
    struct winsize size {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::vector<std::string> startProgram(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

int processorCount() {
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

}  // namespace orv::cli
