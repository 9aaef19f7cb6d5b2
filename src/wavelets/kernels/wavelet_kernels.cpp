#include "wavelets/kernels/wavelet_kernels.h"

#include "base/cpu_features.h"

namespace orv {

namespace generic_kernels {
extern const WaveletKernels kWaveletKernels;
}
#ifdef ORV_HAVE_KERNELS_AVX2
namespace avx2_kernels {
extern const WaveletKernels kWaveletKernels;
}
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
namespace avx512_kernels {
extern const WaveletKernels kWaveletKernels;
}
#endif

namespace {

constinit const KernelTables<WaveletKernels> kTables = {
    &generic_kernels::kWaveletKernels,
#ifdef ORV_HAVE_KERNELS_AVX2
    &avx2_kernels::kWaveletKernels,
#else
    nullptr,
#endif
#ifdef ORV_HAVE_KERNELS_AVX512
    &avx512_kernels::kWaveletKernels,
#else
    nullptr,
#endif
};

}  // namespace

const WaveletKernels& waveletKernels() {
    return chooseKernels(kTables);
}

const WaveletKernels& waveletKernels(KernelTarget highest) {
    return chooseKernels(kTables, highest);
}

}  // namespace orv
