#include "operators/shock/simple_shock_filter.h"

#include "images/discrete_image.h"
#include "operators/shock/shock_step.h"

namespace orv {

SimpleShockFilter::SimpleShockFilter(int iterations, double timeStep)
    : source_(nullptr), iterations_(iterations), timeStep_(timeStep) {}

void SimpleShockFilter::setAuxiliaryPlane(const RealImage* plane) {
    RealOperator::setAuxiliaryPlane(plane);
    setLimiter(nullptr);
}

void SimpleShockFilter::setLimiter(const ShockLimiter* limiter) {
    term_.setLimiter(limiter);
}

std::unique_ptr<RealImage> SimpleShockFilter::apply(const RealImage& source,
                                                    std::unique_ptr<RealImage> target) {
    // quirk: simple-shock-target
    if (target == nullptr) {
        target = source.clone();
    }
    source_ = &source;
    runShock({term_, iterations_, timeStep_, /*numbersSteps=*/false}, *source_, *target);
    source_ = nullptr;
    return target;
}

std::unique_ptr<RealImage> SimpleShockFilter::applyMasked(const DiscreteImage& mask,
                                                          const RealImage& source,
                                                          std::unique_ptr<RealImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    source_ = &source;
    work_ = source_->clone();
    prepareRegion(mask);
    runShockRegion({term_, iterations_, timeStep_, /*numbersSteps=*/false}, mask, regionCount(),
                   regionXs().data(), regionYs().data(), *work_, *target);
    work_ = nullptr;
    source_ = nullptr;
    releaseRegion();
    return target;
}

}  // namespace orv
