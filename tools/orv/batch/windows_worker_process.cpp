#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "batch/worker_process.h"
#include "system/windows_handle.h"
#include "system/windows_text.h"

namespace orv::cli {

namespace {

/// Exit codes from here on are those of exceptions that nobody caught.
constexpr DWORD kFirstException = 0xc0000000;
/// How long to sleep between looks at the pipes, which can't be waited for.
constexpr DWORD kLook = 8;

HANDLE handle(std::intptr_t value) {
    return reinterpret_cast<HANDLE>(value);
}

std::wstring programPath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

/// A word as CommandLineToArgvW() reads it back.
std::wstring quoted(const std::wstring& word) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"') {
            text.append(backslashes + 1, L'\\');
        }
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        text += c;
    }
    text.append(backslashes, L'\\');
    return text + L'"';
}

/// Processes that the system ends together with this one.
HANDLE ownJob() {
    static const HANDLE job = [] {
        const HANDLE made = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits,
                                sizeof(limits));
        return made;
    }();
    return job;
}

/// The end of a pipe isn't enough: what the worker's own calls start may keep it open.
bool hasEnded(std::intptr_t process) {
    return WaitForSingleObject(handle(process), 0) == WAIT_OBJECT_0;
}

std::string systemReason(const char* what) {
    return std::string(what) + " (error " + std::to_string(GetLastError()) + " of Windows)";
}

}  // namespace

std::string WorkerProcess::start(const std::vector<std::string>& words) {
    std::wstring line = L"orv";
    for (const std::string& word : words) {
        line += L" " + quoted(wideText(word));
    }
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE ends[2]{};
    if (CreatePipe(&ends[0], &ends[1], &inherited, 0) == 0) {
        return systemReason("no pipe for a worker");
    }
    WindowsHandle from(ends[0]);
    const WindowsHandle to(ends[1]);
    SetHandleInformation(from.get(), HANDLE_FLAG_INHERIT, 0);
    const WindowsHandle nothing(CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                            OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW streams{};
    streams.cb = sizeof(streams);
    streams.dwFlags = STARTF_USESTDHANDLES;
    streams.hStdInput = nothing.get();
    streams.hStdOutput = nothing.get();
    streams.hStdError = to.get();
    PROCESS_INFORMATION made{};
    // Without a console it is out of reach of Ctrl-C; it begins when it is in the job.
    if (CreateProcessW(programPath().c_str(), line.data(), nullptr, nullptr, TRUE,
                       DETACHED_PROCESS | CREATE_SUSPENDED, nullptr, nullptr, &streams,
                       &made) == 0) {
        return systemReason("no process for a worker");
    }
    AssignProcessToJobObject(ownJob(), made.hProcess);
    ResumeThread(made.hThread);
    CloseHandle(made.hThread);
    process_ = reinterpret_cast<std::intptr_t>(made.hProcess);
    errors_ = reinterpret_cast<std::intptr_t>(from.release());
    return {};
}

bool WorkerProcess::read(std::vector<std::string>& lines) {
    std::array<char, 8192> block{};
    for (;;) {
        // Asked first: what it wrote before its end is in the pipe then.
        const bool ended = hasEnded(process_);
        DWORD count = 0;
        const BOOL open = PeekNamedPipe(handle(errors_), nullptr, 0, nullptr, &count, nullptr);
        if (open == 0 || (count == 0 && ended)) {
            takeRest(lines);
            return false;
        }
        if (count == 0) {
            return true;
        }
        const DWORD most = std::min(count, static_cast<DWORD>(block.size()));
        if (ReadFile(handle(errors_), block.data(), most, &count, nullptr) != 0) {
            take(block.data(), count, lines);
        }
    }
}

ProcessEnd WorkerProcess::wait() {
    ProcessEnd end;
    DWORD code = kFirstException;
    if (process_ != kNone) {
        WaitForSingleObject(handle(process_), INFINITE);
        GetExitCodeProcess(handle(process_), &code);
        CloseHandle(handle(process_));
        process_ = kNone;
    }
    closeErrors();
    end.exited = code < kFirstException;
    if (end.exited) {
        end.code = static_cast<int>(code);
    } else {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "exception 0x%08lx", code);
        end.crash = text.data();
    }
    return end;
}

void WorkerProcess::kill() {
    if (process_ != kNone) {
        TerminateProcess(handle(process_), kFirstException);
        wait();
    }
    closeErrors();
}

void WorkerProcess::closeErrors() {
    if (errors_ != kNone) {
        CloseHandle(handle(errors_));
        errors_ = kNone;
    }
}

std::vector<bool> WorkerProcess::waitForNews(const std::vector<const WorkerProcess*>& processes,
                                             const StopSignal& stop, int milliseconds) {
    const DWORD start = GetTickCount();
    std::vector<bool> ready(processes.size(), false);
    for (;;) {
        bool any = false;
        for (std::size_t i = 0; i < processes.size(); ++i) {
            DWORD count = 0;
            const BOOL open = PeekNamedPipe(handle(processes[i]->errors_), nullptr, 0, nullptr,
                                            &count, nullptr);
            ready[i] = open == 0 || count > 0 || hasEnded(processes[i]->process_);
            any = any || ready[i];
        }
        const bool over =
            milliseconds >= 0 && GetTickCount() - start >= static_cast<DWORD>(milliseconds);
        if (any || over || stop.received() != 0) {
            return ready;
        }
        Sleep(kLook);
    }
}

}  // namespace orv::cli
