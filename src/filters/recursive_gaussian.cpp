#include "filters/recursive_gaussian.h"

#include <cmath>

namespace orv {

double clampedBlurSigma(double sigma) {
    return sigma < kSmallestBlurSigma ? kSmallestBlurSigma : sigma;
}

double gaussianScale(double sigma) {
    if (sigma <= 2.5) {
        return 3.97156 - 4.14554 * std::sqrt(1.0 - 0.26891 * sigma);
    }
    // quirk: blur-scale-constant
    return 0.98711 * sigma - 0.9833;
}

GaussianDenominators gaussianDenominators(double q) {
    const double q2 = q * q;
    const double q3 = q2 * q;
    return {1.57825 + 2.44413 * q + 1.4281 * q2 + 0.422205 * q3,
            2.44413 * q + 2.85619 * q2 + 1.26661 * q3, -(1.4281 * q2 + 1.26661 * q3),
            0.422205 * q3};
}

double gaussianGain(const GaussianDenominators& denominators) {
    return 1.0 - (denominators.b1 + denominators.b2 + denominators.b3) / denominators.b0;
}

}  // namespace orv
