#include "filters/kernels/implicit_blur_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const ImplicitBlurKernels kImplicitBlurKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const ImplicitBlurKernels kImplicitBlurKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const ImplicitBlurKernels kImplicitBlurKernels;
}
#endif

namespace {

constexpr KernelTables<ImplicitBlurKernels> kTables = {
    &generic_kernels::kImplicitBlurKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kImplicitBlurKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kImplicitBlurKernels,
#else
    nullptr,
#endif
};

}  // namespace

const ImplicitBlurKernels& implicitBlurKernels() {
    return chooseKernels(kTables);
}

const ImplicitBlurKernels* implicitBlurKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
