#include "filters/kernels/retinex_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const RetinexKernels kRetinexKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const RetinexKernels kRetinexKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const RetinexKernels kRetinexKernels;
}
#endif

namespace {

constinit const KernelTables<RetinexKernels> kTables = {
    &generic_kernels::kRetinexKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kRetinexKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kRetinexKernels,
#else
    nullptr,
#endif
};

}  // namespace

const RetinexKernels& retinexKernels() {
    return chooseKernels(kTables);
}

const RetinexKernels& retinexKernels(KernelTarget highest) {
    return chooseKernels(kTables, highest);
}

}  // namespace orv
