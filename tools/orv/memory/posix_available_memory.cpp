#include "memory/memory_limit.h"

namespace orv::cli {

std::optional<double> availableMemory() {
    return availableMemoryBelow("/");
}

}  // namespace orv::cli
