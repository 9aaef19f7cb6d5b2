#pragma once

#include <vector>

#include "base/cpu_features.h"

namespace orv::test {

/// Limits the kernel target while it lives and lifts the limit again.
class TargetLimit {
  public:
    explicit TargetLimit(KernelTarget highest) { limitKernelTarget(highest); }
    ~TargetLimit() { limitKernelTarget(KernelTarget::Avx512); }
    TargetLimit(const TargetLimit&) = delete;
    TargetLimit& operator=(const TargetLimit&) = delete;
};

/// The kernel targets that this build holds and this processor runs, generic first.
inline std::vector<KernelTarget> availableTargets() {
    std::vector<KernelTarget> targets;
    for (const KernelTarget target :
         {KernelTarget::Generic, KernelTarget::Avx2, KernelTarget::Avx512}) {
        if (isAvailable(target)) {
            targets.push_back(target);
        }
    }
    return targets;
}

}  // namespace orv::test
