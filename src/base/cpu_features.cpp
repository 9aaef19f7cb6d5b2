#include "base/cpu_features.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace orv {

namespace {

constinit std::atomic<KernelTarget> processLimit{KernelTarget::Avx512};

bool processorHas(KernelTarget target) {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();
    switch (target) {
        case KernelTarget::Generic:
            return true;
        case KernelTarget::Avx2:
            return __builtin_cpu_supports("avx2") != 0;
        case KernelTarget::Avx512:
            return __builtin_cpu_supports("avx512f") != 0 &&
                   __builtin_cpu_supports("avx512dq") != 0 &&
                   __builtin_cpu_supports("avx512bw") != 0 &&
                   __builtin_cpu_supports("avx512vl") != 0;
    }
    return false;
#else
    return target == KernelTarget::Generic;
#endif
}

bool builtIn(KernelTarget target) {
    switch (target) {
        case KernelTarget::Generic:
            return true;
        case KernelTarget::Avx2:
#ifdef ORV_HAVE_KERNELS_AVX2
            return true;
#else
            return false;
#endif
        case KernelTarget::Avx512:
#ifdef ORV_HAVE_KERNELS_AVX512
            return true;
#else
            return false;
#endif
    }
    return false;
}

KernelTarget environmentLimit() {
    const char* value = std::getenv("ORV_MAX_TARGET");
    if (value != nullptr) {
        for (const KernelTarget target : {KernelTarget::Generic, KernelTarget::Avx2}) {
            if (std::strcmp(value, nameOf(target)) == 0) {
                return target;
            }
        }
    }
    return KernelTarget::Avx512;
}

}  // namespace

const char* nameOf(KernelTarget target) {
    switch (target) {
        case KernelTarget::Generic:
            return "generic";
        case KernelTarget::Avx2:
            return "avx2";
        case KernelTarget::Avx512:
            return "avx512";
    }
    return "unknown";
}

bool isAvailable(KernelTarget target) {
    return builtIn(target) && processorHas(target);
}

KernelTarget bestKernelTarget() {
    const KernelTarget limit = processLimit.load(std::memory_order_relaxed);
    const KernelTarget environment = environmentLimit();
    for (const KernelTarget target : {KernelTarget::Avx512, KernelTarget::Avx2}) {
        if (target <= limit && target <= environment && isAvailable(target)) {
            return target;
        }
    }
    return KernelTarget::Generic;
}

void limitKernelTarget(KernelTarget highest) {
    processLimit.store(highest, std::memory_order_relaxed);
}

}  // namespace orv
