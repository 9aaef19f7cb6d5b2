#include <fcntl.h>
#include <io.h>
#include <windows.h>
// After windows.h.
#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "system/console.h"
#include "system/windows_text.h"

namespace orv::cli {

namespace {

/// What the console behind standard output had before; 0 for no console.
constinit UINT codePageBefore = 0;

HANDLE handleOf(Stream stream) {
    return GetStdHandle(stream == Stream::Input    ? STD_INPUT_HANDLE
                        : stream == Stream::Output ? STD_OUTPUT_HANDLE
                                                   : STD_ERROR_HANDLE);
}

void restoreCodePage() {
    SetConsoleOutputCP(codePageBefore);
}

/// The console outlives the program, which gives back what it changed.
void showUtf8() {
    codePageBefore = GetConsoleOutputCP();
    if (codePageBefore != 0 && codePageBefore != CP_UTF8 && SetConsoleOutputCP(CP_UTF8) != 0) {
        std::atexit(restoreCodePage);
    }
}

}  // namespace

bool isTerminal(Stream stream) {
    // _isatty() takes NUL for a terminal.
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) != 0;
}

bool canRedrawErrors() {
    const HANDLE errors = handleOf(Stream::Errors);
    DWORD mode = 0;
    return GetConsoleMode(errors, &mode) != 0 &&
           SetConsoleMode(errors, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

int terminalColumns() {
    CONSOLE_SCREEN_BUFFER_INFO facts{};
    return GetConsoleScreenBufferInfo(handleOf(Stream::Errors), &facts) == 0
               ? 0
               : facts.srWindow.Right - facts.srWindow.Left + 1;
}

std::vector<std::string> startProgram(int /*argc*/, char** /*argv*/) {
    for (std::FILE* const stream : {stdin, stdout, stderr}) {
        _setmode(_fileno(stream), _O_BINARY);
    }
    showUtf8();
    // A crash of a worker must not wait for somebody to close a window.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    std::vector<std::string> words;
    int count = 0;
    wchar_t** const parts = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; parts != nullptr && i < count; ++i) {
        // No option takes a '\': paths have one form from here on.
        words.push_back(narrowPath(parts[i]));
    }
    LocalFree(parts);
    return words;
}

int processorCount() {
    SYSTEM_INFO facts{};
    GetSystemInfo(&facts);
    return std::max(1, static_cast<int>(facts.dwNumberOfProcessors));
}

}  // namespace orv::cli
