#include "operators/kernels/susan_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const SusanKernels kSusanKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const SusanKernels kSusanKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const SusanKernels kSusanKernels;
}
#endif

namespace {

constexpr KernelTables<SusanKernels> kTables = {
    &generic_kernels::kSusanKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kSusanKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kSusanKernels,
#else
    nullptr,
#endif
};

}  // namespace

const SusanKernels& susanKernels() {
    return chooseKernels(kTables);
}

const SusanKernels* susanKernels(KernelTarget target) {
    return kTables[static_cast<unsigned>(target)];
}

}  // namespace orv
