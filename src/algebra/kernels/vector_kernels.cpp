#include "algebra/kernels/vector_kernels.h"

#include <algorithm>
#include <atomic>

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const VectorKernels kVectorKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const VectorKernels kVectorKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const VectorKernels kVectorKernels;
}
#endif

namespace {

constinit const KernelTables<VectorKernels> kTables = {
    &generic_kernels::kVectorKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kVectorKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kVectorKernels,
#else
    nullptr,
#endif
};

// Two threads that come first together write the same pointer.
constinit std::atomic<const VectorKernels*> chosen{nullptr};

}  // namespace

const VectorKernels& vectorKernels() {
    const VectorKernels* table = chosen.load(std::memory_order_relaxed);
    if (table == nullptr) {
        table = &chooseKernels(kTables);
        chosen.store(table, std::memory_order_relaxed);
    }
    return *table;
}

const VectorKernels& vectorKernels(KernelTarget target) {
    return chooseKernels(kTables, std::min(target, bestKernelTarget()));
}

}  // namespace orv
