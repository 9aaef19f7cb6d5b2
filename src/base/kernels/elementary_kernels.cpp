#include "base/kernels/elementary_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const ElementaryKernels kElementaryKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const ElementaryKernels kElementaryKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const ElementaryKernels kElementaryKernels;
}
#endif

namespace {

constexpr KernelTables<ElementaryKernels> kTables = {
    &generic_kernels::kElementaryKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kElementaryKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kElementaryKernels,
#else
    nullptr,
#endif
};

}  // namespace

const ElementaryKernels& elementaryKernels() {
    return chooseKernels(kTables);
}

const ElementaryKernels* elementaryKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
