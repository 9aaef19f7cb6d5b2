#include "schemes/kernels/deblur_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const DeblurKernels kDeblurKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const DeblurKernels kDeblurKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const DeblurKernels kDeblurKernels;
}
#endif

namespace {

constinit const KernelTables<DeblurKernels> kTables = {
    &generic_kernels::kDeblurKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kDeblurKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kDeblurKernels,
#else
    nullptr,
#endif
};

}  // namespace

const DeblurKernels& deblurKernels() {
    return chooseKernels(kTables);
}

}  // namespace orv
