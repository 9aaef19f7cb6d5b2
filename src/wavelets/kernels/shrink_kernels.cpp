#include "wavelets/kernels/shrink_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const ShrinkKernels kShrinkKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const ShrinkKernels kShrinkKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const ShrinkKernels kShrinkKernels;
}
#endif

namespace {

constinit const KernelTables<ShrinkKernels> kTables = {
    &generic_kernels::kShrinkKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kShrinkKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kShrinkKernels,
#else
    nullptr,
#endif
};

}  // namespace

const ShrinkKernels& shrinkKernels() {
    return chooseKernels(kTables);
}

const ShrinkKernels& shrinkKernels(KernelTarget highest) {
    return chooseKernels(kTables, highest);
}

}  // namespace orv
