#include "images/kernels/curvature_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const CurvatureKernels kCurvatureKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const CurvatureKernels kCurvatureKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const CurvatureKernels kCurvatureKernels;
}
#endif

namespace {

constinit const KernelTables<CurvatureKernels> kTables = {
    &generic_kernels::kCurvatureKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kCurvatureKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kCurvatureKernels,
#else
    nullptr,
#endif
};

}  // namespace

const CurvatureKernels& curvatureKernels() {
    return chooseKernels(kTables);
}

}  // namespace orv
