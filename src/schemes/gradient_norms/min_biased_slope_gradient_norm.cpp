#include "schemes/gradient_norms/min_biased_slope_gradient_norm.h"

#include "base/text_output.h"

namespace orv {

double MinBiasedSlopeGradientNorm::combine(const Slopes& slopes) const {
    double lo = slopes.values[0];
    double hi = lo;
    for (int k = 1; k < slopes.count; ++k) {
        const double v = slopes.values[k];
        if (v < lo) {
            hi = lo;  // quirk: biased-slope
            lo = v;
        } else if (v > hi) {
            hi = v;
        }
    }
    return lo * lo + hi * hi;
}

void MinBiasedSlopeGradientNorm::printName(std::FILE* file) const {
    printTextTo(file, "MinBiasedSlope Gradient Norm Approximation\n");
}

}  // namespace orv
