#include <windows.h>

#include <algorithm>

#include "memory/memory_limit.h"

namespace orv::cli {

std::optional<double> availableMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    if (GlobalMemoryStatusEx(&status) == 0) {
        return std::nullopt;
    }
    // A 32-bit process has less room than the machine.
    return static_cast<double>(std::min(status.ullAvailPhys, status.ullAvailVirtual));
}

}  // namespace orv::cli
