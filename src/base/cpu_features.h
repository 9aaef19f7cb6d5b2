#pragma once

#include <array>

#include "base/kernel_target.h"

namespace orv {

/// "generic", "avx2" or "avx512".
const char* nameOf(KernelTarget target);

/// Whether this build holds the target's code and this processor can run it.
bool isAvailable(KernelTarget target);

/// The fastest available target, lowered by ORV_MAX_TARGET=generic|avx2|avx512 in the
/// environment and by limitKernelTarget(). Found at each call; callers keep what they choose
/// from it only for the length of an operation.
KernelTarget bestKernelTarget();

/// Lowers the choice of bestKernelTarget() for this process: a test's way to run one target.
/// Passing Avx512 lifts the limit.
void limitKernelTarget(KernelTarget highest);

/// One entry per target, null where the build has no code for it; `Table` is a kernel table.
template <class Table>
using KernelTables = std::array<const Table*, kKernelTargetCount>;

/// The table of the best target that `tables` holds; entry 0 (generic) is always there.
template <class Table>
const Table& chooseKernels(const KernelTables<Table>& tables,
                           KernelTarget highest = bestKernelTarget()) {
    for (int i = static_cast<int>(highest); i > 0; --i) {
        if (tables[static_cast<unsigned>(i)] != nullptr) {
            return *tables[static_cast<unsigned>(i)];
        }
    }
    return *tables[0];
}

}  // namespace orv
