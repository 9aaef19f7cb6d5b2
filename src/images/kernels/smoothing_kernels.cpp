#include "images/kernels/smoothing_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const SmoothingKernels kSmoothingKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const SmoothingKernels kSmoothingKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const SmoothingKernels kSmoothingKernels;
}
#endif

namespace {

constinit const KernelTables<SmoothingKernels> kTables = {
    &generic_kernels::kSmoothingKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kSmoothingKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kSmoothingKernels,
#else
    nullptr,
#endif
};

}  // namespace

const SmoothingKernels& smoothingKernels() {
    return chooseKernels(kTables);
}

}  // namespace orv
