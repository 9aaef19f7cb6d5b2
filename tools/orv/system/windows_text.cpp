#include "system/windows_text.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace orv::cli {

namespace {

/// Folders may have names of 12 characters less than files.
constexpr std::size_t kLongPath = 248;
constexpr std::wstring_view kLong = L"\\\\?\\";
constexpr std::wstring_view kLongShare = L"\\\\?\\UNC\\";

}  // namespace

std::wstring wideText(std::string_view text) {
    const int count =
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(count), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                        count);
    return wide;
}

std::string narrowText(std::wstring_view text) {
    const int count = WideCharToMultiByte(
        CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(count), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                        count, nullptr, nullptr);
    return narrow;
}

std::wstring widePath(std::string_view path) {
    std::wstring wide = wideText(path.empty() ? std::string_view(".") : path);
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    // The limit is that of the whole path, of which the folder where the program runs may be most.
    const DWORD size = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
    if (std::max<std::size_t>(wide.size(), size) < kLongPath) {
        return wide;
    }
    // Under the mark a path has to be absolute and free of detours.
    std::wstring full(size, L'\0');
    full.resize(GetFullPathNameW(wide.c_str(), size, full.data(), nullptr));
    if (full.empty() || full.compare(0, kLong.size(), kLong) == 0) {
        return full.empty() ? wide : full;
    }
    return full.compare(0, 2, L"\\\\") == 0 ? std::wstring(kLongShare) + full.substr(2)
                                            : std::wstring(kLong) + full;
}

std::string narrowPath(std::wstring_view path) {
    std::string text;
    if (path.substr(0, kLongShare.size()) == kLongShare) {
        text = "//" + narrowText(path.substr(kLongShare.size()));
    } else {
        text = narrowText(path.substr(0, kLong.size()) == kLong ? path.substr(kLong.size())
                                                                : path);
    }
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

bool noteError(unsigned long error) {
    constexpr std::array<std::pair<DWORD, int>, 16> kMeanings{{
        {ERROR_FILE_NOT_FOUND, ENOENT},
        {ERROR_PATH_NOT_FOUND, ENOENT},
        {ERROR_INVALID_NAME, ENOENT},
        {ERROR_BAD_PATHNAME, ENOENT},
        {ERROR_INVALID_DRIVE, ENOENT},
        {ERROR_ACCESS_DENIED, EACCES},
        {ERROR_SHARING_VIOLATION, EACCES},
        {ERROR_WRITE_PROTECT, EROFS},
        {ERROR_FILE_EXISTS, EEXIST},
        {ERROR_ALREADY_EXISTS, EEXIST},
        {ERROR_DIR_NOT_EMPTY, ENOTEMPTY},
        {ERROR_DISK_FULL, ENOSPC},
        {ERROR_HANDLE_DISK_FULL, ENOSPC},
        {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG},
        {ERROR_NOT_SAME_DEVICE, EXDEV},
        {ERROR_NOT_ENOUGH_MEMORY, ENOMEM},
    }};
    const auto found = std::find_if(kMeanings.begin(), kMeanings.end(),
                                    [error](const auto& pair) { return pair.first == error; });
    errno = found == kMeanings.end() ? EIO : found->second;
    return false;
}

}  // namespace orv::cli
