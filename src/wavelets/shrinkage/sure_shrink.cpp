#include "wavelets/shrinkage/sure_shrink.h"

#include "base/text_output.h"
#include "exports/work_window.h"
#include "images/real_image.h"
#include "wavelets/kernels/shrink_kernels.h"
#include "wavelets/shrinkage/coefficient_bands.h"
#include "wavelets/shrinkage/shrink_band.h"
#include "wavelets/shrinkage/sure_threshold.h"
#include "wavelets/working_array.h"

namespace orv {

namespace {

double thresholdOf(const CoefficientView& view, double noise, double* magnitudes) {
    const ShrinkKernels& kernels = shrinkKernels();
    const std::size_t height = static_cast<std::size_t>(view.height);
    double* to = magnitudes;
    for (int x = 0; x < view.width; ++x, to += height) {
        if (noise != 0.0) {
            kernels.scaledMagnitudes(view.column(x), noise, to, height);
        } else {
            kernels.magnitudes(view.column(x), to, height);
        }
    }
    return sureThresholdOfMagnitudes(magnitudes, view.count(),
                                     static_cast<std::size_t>(view.outside));
}

}  // namespace

// The division of all coefficients by the noise, and the multiplication after, are done band by
// band: each coefficient still meets both, and no band sees another's.
void sureShrink(CoefficientBands& bands, bool verbose) {
    if (verbose) {
        printText("SureShrink2D\n");
    }
    const double noise = bands.noise();
    if (verbose) {
        printText("Noise estimate = %g\n", noise);
    }
    AlignedBlock block;
    for (int level = 1; level <= bands.levels(); ++level) {
        for (int detail = 0; detail < 3; ++detail) {
            if (!reportWork(3 * (level - 1) + detail, 3 * bands.levels())) {
                return;
            }
            const CoefficientView view = bands.band(level, detail);
            if (view.count() * sizeof(double) > block.bytes()) {
                block = acquireWorkingArray(view.count(),
                                            "sureThreshold: Unable to malloc working array!\n");
            }
            const double threshold = thresholdOf(view, noise, doublesOf(block));
            const long long tossed = shrinkView(view, noise, threshold);
            if (verbose) {
                printShrinkage(level, detail, threshold, tossed);
            }
        }
    }
    roundRest(bands, noise);
}

void SureShrink2D(RealImage& coefficients, int height, int width, int levels, bool verbose) {
    PlaneBands bands(coefficients, height, width, levels);
    sureShrink(bands, verbose);
}

}  // namespace orv
