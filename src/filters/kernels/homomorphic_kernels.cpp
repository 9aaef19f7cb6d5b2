#include "filters/kernels/homomorphic_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const HomomorphicKernels kHomomorphicKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const HomomorphicKernels kHomomorphicKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const HomomorphicKernels kHomomorphicKernels;
}
#endif

namespace {

constexpr KernelTables<HomomorphicKernels> kTables = {
    &generic_kernels::kHomomorphicKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kHomomorphicKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kHomomorphicKernels,
#else
    nullptr,
#endif
};

}  // namespace

const HomomorphicKernels& homomorphicKernels() {
    return chooseKernels(kTables);
}

const HomomorphicKernels* homomorphicKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
