#include "schemes/gradient_norms/max_biased_slope_gradient_norm.h"

#include "base/text_output.h"

namespace orv {

double MaxBiasedSlopeGradientNorm::combine(const Slopes& slopes) const {
    double hi = slopes.values[0];
    double lo = hi;
    for (int k = 1; k < slopes.count; ++k) {
        const double v = slopes.values[k];
        if (v > hi) {
            lo = hi;  // quirk: biased-slope
            hi = v;
        } else if (v < lo) {
            lo = v;
        }
    }
    return hi * hi + lo * lo;
}

void MaxBiasedSlopeGradientNorm::printName(std::FILE* file) const {
    printTextTo(file, "MaxBiasedSlope Gradient Norm Approximation\n");
}

}  // namespace orv
