#include "operators/shock/shock_term.h"

#include "images/real_image_differences.h"

namespace orv {

ShockTerm::~ShockTerm() = default;

const ShockLimiter* ShockTerm::limiter() const {
    return limiter_;
}

void ShockTerm::setLimiter(const ShockLimiter* limiter) {
    limiter_ = limiter;
}

void ShockTerm::setIteration(int /*i*/) {}

double ShockTerm::iteration() const {
    return 0.0;
}

void ShockTerm::hook() {}

ShockFormula ShockTerm::formula() const {
    return {};
}

double ShockTerm::gradientNorm(const RealImage& plane, int x, int y) const {
    if (limiter() == nullptr) {
        return gradientNormMinmod(plane, x, y);
    }
    return gradientNormLimited(plane, x, y, [this](double backward, double forward) {
        return limiter()->limited(backward, forward);
    });
}

double shockSign(double a) {
    if (a > 0.0) {
        return 1.0;
    }
    return a < 0.0 ? -1.0 : 0.0;
}

}  // namespace orv
