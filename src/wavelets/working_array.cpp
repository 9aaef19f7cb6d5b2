#include "wavelets/working_array.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>

#include "base/text_output.h"

namespace orv {

AlignedBlock acquireWorkingArray(std::size_t count, const char* message) {
    constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max() / sizeof(double);
    try {
        if (count <= kMost) {
            return AlignedBlock(count * sizeof(double), alignof(double));
        }
    } catch (const std::bad_alloc&) {
        // Reported below, in the same way as a size that no memory can hold.
    }
    printTextTo(stderr, "%s", message);
    std::exit(1);
}

}  // namespace orv
