#include <windows.h>

#include "system/file_system.h"
#include "system/folder_lock.h"
#include "system/windows_text.h"

namespace orv::cli {

bool FolderLock::take(const std::string& folder) {
    FileState state;
    if (!readState(folder, state)) {
        return true;
    }
    // Windows locks no folders. A mutex goes with the process that made it, however that ends.
    const std::string name = "Global\\orv-folder-" + std::to_string(state.identity[0]) + "-" +
                             std::to_string(state.identity[1]);
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, wideText(name).c_str());
    if (mutex == nullptr) {
        return GetLastError() != ERROR_ACCESS_DENIED;  // Another user's process has it.
    }
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        return false;
    }
    lock_ = reinterpret_cast<std::intptr_t>(mutex);
    return true;
}

void FolderLock::release() {
    if (lock_ != kNone) {
        CloseHandle(reinterpret_cast<HANDLE>(lock_));
        lock_ = kNone;
    }
}

}  // namespace orv::cli
