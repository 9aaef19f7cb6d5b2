#include "operators/kernels/colour_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const ColourKernels kColourKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const ColourKernels kColourKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const ColourKernels kColourKernels;
}
#endif

namespace {

constinit const KernelTables<ColourKernels> kTables = {
    &generic_kernels::kColourKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kColourKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kColourKernels,
#else
    nullptr,
#endif
};

}  // namespace

const ColourKernels& colourKernels() {
    return chooseKernels(kTables);
}

const ColourKernels& colourKernels(KernelTarget highest) {
    return chooseKernels(kTables, highest);
}

}  // namespace orv
