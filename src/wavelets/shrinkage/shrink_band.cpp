#include "wavelets/shrinkage/shrink_band.h"

#include "base/text_output.h"
#include "images/real_image.h"
#include "wavelets/kernels/shrink_kernels.h"

namespace orv {

long long shrinkView(const CoefficientView& view, double noise, double threshold) {
    const ShrinkKernels& kernels = shrinkKernels();
    const std::size_t height = static_cast<std::size_t>(view.height);
    long long tossed = view.outside;
    for (int x = 0; x < view.width; ++x) {
        const std::size_t zeroed =
            noise != 0.0 ? kernels.shrinkScaled(view.column(x), noise, threshold, height)
                         : kernels.shrink(view.column(x), threshold, height);
        tossed += static_cast<long long>(zeroed);
    }
    return tossed;
}

void printShrinkage(int level, int detail, double threshold, long long tossed) {
    printText("Level %d, detail %d: threshold = %g, tossed %d coefs\n", level, detail,
              threshold, static_cast<int>(tossed));
}

void ShrinkBand(RealImage& coefficients, int height, int width, int level, int detail,
                double threshold, bool verbose) {
    PlaneBands bands(coefficients, height, width, level);
    const long long tossed = shrinkView(bands.band(level, detail), /*noise=*/0.0, threshold);
    if (verbose) {
        printShrinkage(level, detail, threshold, tossed);
    }
}

void roundRest(CoefficientBands& bands, double noise) {
    if (noise == 0.0) {
        return;
    }
    for (const CoefficientView& view : bands.rest()) {
        for (int x = 0; x < view.width; ++x) {
            shrinkKernels().divideAndMultiply(view.column(x), noise,
                                              static_cast<std::size_t>(view.height));
        }
    }
}

}  // namespace orv
