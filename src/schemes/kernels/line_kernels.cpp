#include "schemes/kernels/line_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const LineKernels kLineKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const LineKernels kLineKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const LineKernels kLineKernels;
}
#endif

namespace {

constexpr KernelTables<LineKernels> kTables = {
    &generic_kernels::kLineKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kLineKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kLineKernels,
#else
    nullptr,
#endif
};

}  // namespace

const LineKernels& lineKernels() {
    return chooseKernels(kTables);
}

const LineKernels* lineKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
