#include "wavelets/shrinkage/visu_shrink.h"

#include <cmath>

#include "base/elementary.h"
#include "base/text_output.h"
#include "exports/work_window.h"
#include "images/real_image.h"
#include "wavelets/shrinkage/coefficient_bands.h"
#include "wavelets/shrinkage/shrink_band.h"

namespace orv {

void visuShrink(CoefficientBands& bands, bool verbose) {
    if (verbose) {
        printText("VisuShrink2D algorithm\n");
    }
    const double noise = bands.noise();
    if (verbose) {
        printText("Noise estimate = %g\n", noise);
    }
    const double samples =
        static_cast<double>(bands.height()) * static_cast<double>(bands.width());
    const double threshold = std::sqrt(2.0 * elementaryLog(samples)) * noise;
    for (int level = 1; level <= bands.levels(); ++level) {
        for (int detail = 0; detail < 3; ++detail) {
            if (!reportWork(3 * (level - 1) + detail, 3 * bands.levels())) {
                return;
            }
            const long long tossed =
                shrinkView(bands.band(level, detail), /*noise=*/0.0, threshold);
            if (verbose) {
                printShrinkage(level, detail, threshold, tossed);
            }
        }
    }
}

void VisuShrink2D(RealImage& coefficients, int height, int width, int levels, bool verbose) {
    PlaneBands bands(coefficients, height, width, levels);
    visuShrink(bands, verbose);
}

}  // namespace orv
