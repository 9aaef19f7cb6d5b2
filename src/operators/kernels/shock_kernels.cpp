#include "operators/kernels/shock_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const ShockKernels kShockKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const ShockKernels kShockKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const ShockKernels kShockKernels;
}
#endif

namespace {

constexpr KernelTables<ShockKernels> kTables = {
    &generic_kernels::kShockKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kShockKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kShockKernels,
#else
    nullptr,
#endif
};

}  // namespace

const ShockKernels& shockKernels() {
    return chooseKernels(kTables);
}

const ShockKernels* shockKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
