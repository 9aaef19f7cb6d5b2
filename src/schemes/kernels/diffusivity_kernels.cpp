#include "schemes/kernels/diffusivity_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const DiffusivityKernels kDiffusivityKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const DiffusivityKernels kDiffusivityKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const DiffusivityKernels kDiffusivityKernels;
}
#endif

namespace {

constexpr KernelTables<DiffusivityKernels> kTables = {
    &generic_kernels::kDiffusivityKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kDiffusivityKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kDiffusivityKernels,
#else
    nullptr,
#endif
};

}  // namespace

const DiffusivityKernels& diffusivityKernels() {
    return chooseKernels(kTables);
}

const DiffusivityKernels* diffusivityKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
