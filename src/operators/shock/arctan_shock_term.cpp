#include "operators/shock/arctan_shock_term.h"

#include "base/elementary.h"
#include "images/real_image_differences.h"

namespace orv {

ArctanShockTerm::ArctanShockTerm(double arctanScale)
    : oneOverPi_(1.0 / (4.0 * elementaryAtan(1.0))),
      arctanScale_(arctanScale),
      iteration_(1.0) {}

void ArctanShockTerm::setIteration(int i) {
    iteration_ = i;
}

double ArctanShockTerm::iteration() const {
    return iteration_;
}

double ArctanShockTerm::valueMasked(const DiscreteImage& /*mask*/, const RealImage& plane,
                                    int x, int y) const {
    return value(plane, x, y);
}

double ArctanShockTerm::value(const RealImage& plane, int x, int y) const {
    const double g = gradientNorm(plane, x, y);
    const double eta = secondAlongGradient(plane, x, y);
    return -2.0 * oneOverPi_ * elementaryAtan(iteration_ * arctanScale_ * eta) * g;
}

ShockFormula ArctanShockTerm::formula() const {
    return {ShockKind::Arctan, 0.0, iteration_ * arctanScale_};
}

}  // namespace orv
