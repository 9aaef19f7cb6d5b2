#include "schemes/gradient_norms/min_slope_gradient_norm.h"

#include <algorithm>

#include "base/text_output.h"

namespace orv {

double MinSlopeGradientNorm::combine(const Slopes& slopes) const {
    const double smallest = *std::min_element(slopes.values, slopes.values + slopes.count);
    return smallest * smallest;
}

void MinSlopeGradientNorm::printName(std::FILE* file) const {
    printTextTo(file, "MinSlope Gradient Norm Approximation\n");
}

}  // namespace orv
