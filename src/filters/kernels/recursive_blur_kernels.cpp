#include "filters/kernels/recursive_blur_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const RecursiveBlurKernels kRecursiveBlurKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const RecursiveBlurKernels kRecursiveBlurKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const RecursiveBlurKernels kRecursiveBlurKernels;
}
#endif

namespace {

constexpr KernelTables<RecursiveBlurKernels> kTables = {
    &generic_kernels::kRecursiveBlurKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kRecursiveBlurKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kRecursiveBlurKernels,
#else
    nullptr,
#endif
};

}  // namespace

const RecursiveBlurKernels& recursiveBlurKernels() {
    return chooseKernels(kTables);
}

const RecursiveBlurKernels* recursiveBlurKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
