#include "operators/shock/diffusive_arctan_shock_term.h"

#include "base/elementary.h"
#include "images/real_image_differences.h"

namespace orv {

DiffusiveArctanShockTerm::DiffusiveArctanShockTerm(double diffusionWeight, double arctanScale)
    : diffusionWeight_(diffusionWeight),
      oneOverPi_(1.0 / (4.0 * elementaryAtan(1.0))),
      arctanScale_(arctanScale),
      iteration_(1.0) {}

void DiffusiveArctanShockTerm::setIteration(int i) {
    iteration_ = i;
}

double DiffusiveArctanShockTerm::iteration() const {
    return iteration_;
}

double DiffusiveArctanShockTerm::valueMasked(const DiscreteImage& /*mask*/,
                                             const RealImage& plane, int x, int y) const {
    return value(plane, x, y);
}

double DiffusiveArctanShockTerm::value(const RealImage& plane, int x, int y) const {
    const double g = gradientNorm(plane, x, y);
    const double eta = secondAlongGradient(plane, x, y);
    const double xi = secondAcrossGradient(plane, x, y);
    return diffusionWeight_ * xi -
           2.0 * oneOverPi_ * elementaryAtan(iteration_ * arctanScale_ * eta) * g;
}

ShockFormula DiffusiveArctanShockTerm::formula() const {
    return {ShockKind::DiffusiveArctan, diffusionWeight_, iteration_ * arctanScale_};
}

}  // namespace orv
