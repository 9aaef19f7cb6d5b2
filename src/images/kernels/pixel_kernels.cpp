#include "images/kernels/pixel_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const PixelKernels kPixelKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const PixelKernels kPixelKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const PixelKernels kPixelKernels;
}
#endif

namespace {

constinit const KernelTables<PixelKernels> kTables = {
    &generic_kernels::kPixelKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kPixelKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kPixelKernels,
#else
    nullptr,
#endif
};

}  // namespace

const PixelKernels& pixelKernels() {
    return chooseKernels(kTables);
}

const PixelKernels& pixelKernels(KernelTarget highest) {
    return chooseKernels(kTables, highest);
}

}  // namespace orv
