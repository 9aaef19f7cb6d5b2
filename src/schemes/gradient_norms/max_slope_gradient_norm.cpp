#include "schemes/gradient_norms/max_slope_gradient_norm.h"

#include <algorithm>

#include "base/text_output.h"

namespace orv {

double MaxSlopeGradientNorm::combine(const Slopes& slopes) const {
    const double largest = *std::max_element(slopes.values, slopes.values + slopes.count);
    return largest * largest;
}

void MaxSlopeGradientNorm::printName(std::FILE* file) const {
    printTextTo(file, "MinSlope Gradient Norm Approximation\n");  // quirk: shared-print-names
}

}  // namespace orv
