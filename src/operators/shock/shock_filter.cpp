#include "operators/shock/shock_filter.h"

#include "images/discrete_image.h"
#include "operators/shock/shock_step.h"

namespace orv {

ShockFilter::ShockFilter(ShockTerm* term, int iterations, double timeStep)
    : source_(nullptr), iterations_(iterations), timeStep_(timeStep), term_(term) {}

void ShockFilter::setAuxiliaryPlane(const RealImage* plane) {
    RealOperator::setAuxiliaryPlane(plane);
    setLimiter(nullptr);
}

void ShockFilter::setLimiter(const ShockLimiter* limiter) {
    term_->setLimiter(limiter);
}

std::unique_ptr<RealImage> ShockFilter::apply(const RealImage& source,
                                              std::unique_ptr<RealImage> target) {
    if (target == nullptr) {
        target = source.clone();
    } else {
        target->assign(source);
    }
    source_ = &source;
    runShock({*term_, iterations_, timeStep_, /*numbersSteps=*/true}, *source_, *target);
    source_ = nullptr;
    return target;
}

std::unique_ptr<RealImage> ShockFilter::applyMasked(const DiscreteImage& mask,
                                                    const RealImage& source,
                                                    std::unique_ptr<RealImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    source_ = &source;
    work_ = source_->clone();
    prepareRegion(mask);
    runShockRegion({*term_, iterations_, timeStep_, /*numbersSteps=*/false}, mask,
                   regionCount(), regionXs().data(), regionYs().data(), *work_, *target);
    work_ = nullptr;
    source_ = nullptr;
    releaseRegion();
    return target;
}

}  // namespace orv
