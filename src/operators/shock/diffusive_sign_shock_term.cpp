#include "operators/shock/diffusive_sign_shock_term.h"

#include "images/real_image_differences.h"

namespace orv {

DiffusiveSignShockTerm::DiffusiveSignShockTerm(double diffusionWeight)
    : diffusionWeight_(diffusionWeight) {}

double DiffusiveSignShockTerm::valueMasked(const DiscreteImage& /*mask*/,
                                           const RealImage& plane, int x, int y) const {
    return value(plane, x, y);
}

double DiffusiveSignShockTerm::value(const RealImage& plane, int x, int y) const {
    const double g = gradientNorm(plane, x, y);
    const double eta = secondAlongGradient(plane, x, y);
    const double xi = secondAcrossGradient(plane, x, y);
    return shockSign(g) * diffusionWeight_ * xi - shockSign(eta) * g;
}

ShockFormula DiffusiveSignShockTerm::formula() const {
    return {ShockKind::DiffusiveSign, diffusionWeight_, 0.0};
}

}  // namespace orv
