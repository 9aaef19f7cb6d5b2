#include <windows.h>

#include <cerrno>
#include <cstddef>

#include "system/file_system.h"
#include "system/windows_handle.h"
#include "system/windows_text.h"

namespace orv::cli {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Opens what a path leads to, or the link itself, for questions alone.
WindowsHandle openForState(const std::string& path, DWORD more) {
    return WindowsHandle(CreateFileW(widePath(path).c_str(), FILE_READ_ATTRIBUTES, kShareAll,
                                     nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | more,
                                     nullptr));
}

FileKind kindOf(HANDLE file, DWORD attributes, bool ofLink) {
    const DWORD type = GetFileType(file);
    if (type == FILE_TYPE_PIPE) {
        return FileKind::Pipe;
    }
    if (type != FILE_TYPE_DISK) {
        return FileKind::Other;
    }
    if (ofLink && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        return FileKind::Link;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::Folder : FileKind::Regular;
}

std::uint64_t joined(DWORD high, DWORD low) {
    return (static_cast<std::uint64_t>(high) << 32U) | low;
}

bool stateOf(const WindowsHandle& file, bool ofLink, FileState& state) {
    if (!file) {
        return noteError(GetLastError());
    }
    state = {};
    BY_HANDLE_FILE_INFORMATION facts{};
    if (GetFileInformationByHandle(file.get(), &facts) == 0) {
        // A device, as NUL, has no such facts.
        state.kind = kindOf(file.get(), 0, ofLink);
        return true;
    }
    // Windows counts steps of 100 ns from 1601.
    constexpr std::uint64_t kStepsPerSecond = 10000000;
    constexpr std::int64_t kSecondsTo1970 = 11644473600;
    const std::uint64_t steps =
        joined(facts.ftLastWriteTime.dwHighDateTime, facts.ftLastWriteTime.dwLowDateTime);
    state.kind = kindOf(file.get(), facts.dwFileAttributes, ofLink);
    state.bytes = static_cast<double>(joined(facts.nFileSizeHigh, facts.nFileSizeLow));
    state.seconds = static_cast<std::int64_t>(steps / kStepsPerSecond) - kSecondsTo1970;
    state.nanoseconds = static_cast<long>(steps % kStepsPerSecond) * 100;
    state.identity = {facts.dwVolumeSerialNumber,
                      joined(facts.nFileIndexHigh, facts.nFileIndexLow)};
    return true;
}

bool done(BOOL result) {
    return result != 0 || noteError(GetLastError());
}

/// Other programs, as those that look for viruses, may hold a new file for a moment.
bool moveFile(const std::string& from, const std::string& to, DWORD flags) {
    constexpr int kAttempts = 40;
    constexpr DWORD kMilliseconds = 50;
    const std::wstring source = widePath(from);
    const std::wstring target = widePath(to);
    for (int attempt = 1;; ++attempt) {
        if (MoveFileExW(source.c_str(), target.c_str(), flags) != 0) {
            return true;
        }
        const DWORD error = GetLastError();
        const bool held = error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
        if (!held || attempt == kAttempts) {
            return noteError(error);
        }
        Sleep(kMilliseconds);
    }
}

}  // namespace

bool readState(const std::string& path, FileState& state) {
    return stateOf(openForState(path, 0), /*ofLink=*/false, state);
}

bool readLinkState(const std::string& path, FileState& state) {
    return stateOf(openForState(path, FILE_FLAG_OPEN_REPARSE_POINT), /*ofLink=*/true, state);
}

std::FILE* openFile(const std::string& path, const char* mode) {
    return _wfopen(widePath(path).c_str(), wideText(mode).c_str());
}

bool removeFile(const std::string& path) {
    return done(DeleteFileW(widePath(path).c_str()));
}

bool makeFolder(const std::string& path) {
    return done(CreateDirectoryW(widePath(path).c_str(), nullptr));
}

bool removeFolder(const std::string& path) {
    return done(RemoveDirectoryW(widePath(path).c_str()));
}

bool replaceFile(const std::string& from, const std::string& to) {
    return moveFile(from, to, MOVEFILE_REPLACE_EXISTING);
}

bool renameToFree(const std::string& from, const std::string& to) {
    return moveFile(from, to, 0);
}

bool isWritable(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(widePath(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return noteError(GetLastError());
    }
    return (attributes & FILE_ATTRIBUTE_READONLY) == 0 || noteError(ERROR_ACCESS_DENIED);
}

void setPermissions(const std::string& /*path*/, unsigned /*mode*/) {
    // A new file takes the permissions of its folder.
}

unsigned usualPermissions() {
    return 0;
}

std::string makeTemporaryFile(const std::string& folder, unsigned /*mode*/) {
    constexpr unsigned kAttempts = 1000;
    static unsigned number = 0;
    for (unsigned attempt = 0; attempt < kAttempts; ++attempt) {
        const std::string name = folder + ".orv-" + std::to_string(GetCurrentProcessId()) +
                                 "-" + std::to_string(number++);
        const WindowsHandle file(CreateFileW(widePath(name).c_str(), GENERIC_WRITE, 0, nullptr,
                                             CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file) {
            return name;
        }
        noteError(GetLastError());
        if (errno != EEXIST) {
            return {};
        }
    }
    return {};
}

std::string resolvedPath(const std::string& path) {
    const WindowsHandle file = openForState(path, 0);
    if (!file) {
        noteError(GetLastError());
        return {};
    }
    const DWORD size = GetFinalPathNameByHandleW(file.get(), nullptr, 0, FILE_NAME_NORMALIZED);
    std::wstring wide(size, L'\0');
    wide.resize(GetFinalPathNameByHandleW(file.get(), wide.data(), size, FILE_NAME_NORMALIZED));
    return narrowPath(wide);
}

std::string foldedPath(const std::string& path) {
    std::wstring wide = wideText(path);
    CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
    return narrowText(wide);
}

std::string rootOf(const std::string& path) {
    const bool share = path.compare(0, 2, "//") == 0;
    const bool drive = path.size() > 2 && path[1] == ':' && path[2] == '/';
    const std::size_t end = share ? path.find('/', 2) : drive ? 2 : 0;
    return end < path.size() && path[end] == '/' ? path.substr(0, end + 1) : std::string();
}

bool listFolder(const std::string& folder, std::vector<std::string>& names) {
    FileState state;
    if (!readState(folder, state)) {
        return false;
    }
    if (state.kind != FileKind::Folder) {
        errno = ENOTDIR;
        return false;
    }
    const std::string all =
        folder.empty() || folder.back() == '/' ? folder + "*" : folder + "/*";
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW(widePath(all).c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return GetLastError() == ERROR_FILE_NOT_FOUND || noteError(GetLastError());
    }
    do {
        const std::string name = narrowText(entry.cFileName);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    } while (FindNextFileW(search, &entry) != 0);
    FindClose(search);
    return true;
}

}  // namespace orv::cli
