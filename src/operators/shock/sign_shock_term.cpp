#include "operators/shock/sign_shock_term.h"

#include "images/real_image_differences.h"

namespace orv {

double SignShockTerm::valueMasked(const DiscreteImage& /*mask*/, const RealImage& plane, int x,
                                  int y) const {
    return value(plane, x, y);
}

double SignShockTerm::value(const RealImage& plane, int x, int y) const {
    const double eta = secondAlongGradient(plane, x, y);
    return -shockSign(eta) * gradientNorm(plane, x, y);
}

ShockFormula SignShockTerm::formula() const {
    return {ShockKind::Sign, 0.0, 0.0};
}

}  // namespace orv
