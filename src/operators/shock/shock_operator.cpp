#include "operators/shock/shock_operator.h"

#include <utility>

#include "images/discrete_image.h"
#include "operators/shock/arctan_shock_term.h"
#include "operators/shock/diffusive_arctan_shock_term.h"
#include "operators/shock/diffusive_sign_shock_term.h"
#include "operators/shock/shock_filter.h"
#include "operators/shock/simple_shock_filter.h"
#include "schemes/plane_operators/real_planes_operator.h"

namespace orv {

namespace {

/// The plane that the reserved number names: 0 is no plane, and there are no others.
const RealImage* planeOf(int /*reservedNumber*/) {
    return nullptr;
}

/// The term of methods 1 to 3; null for the others, whose filter holds its own.
std::unique_ptr<ShockTerm> makeTerm(int method, double diffusionWeight, double arctanScale) {
    switch (method) {
        case 1:
            return std::make_unique<DiffusiveSignShockTerm>(diffusionWeight);
        case 2:
            return std::make_unique<ArctanShockTerm>(arctanScale);
        case 3:
            return std::make_unique<DiffusiveArctanShockTerm>(diffusionWeight, arctanScale);
        default:
            return nullptr;
    }
}

}  // namespace

ShockOperator::ShockOperator(int iterations, int method, double timeStep,
                             double diffusionWeight, double arctanScale)
    : method_(method),
      timeStep_(timeStep),
      diffusionWeight_(diffusionWeight),
      arctanScale_(arctanScale) {
    setChannelMode(iterations);
}

template <class Work>
auto ShockOperator::withFilter(Work work) const {
    const int iterations = channelMode();
    const std::unique_ptr<ShockTerm> term = makeTerm(method_, diffusionWeight_, arctanScale_);
    if (term == nullptr) {
        SimpleShockFilter filter(iterations, timeStep_);
        filter.setAuxiliaryPlane(planeOf(reservedNumber()));
        return work(static_cast<RealOperator&>(filter));
    }
    ShockFilter filter(term.get(), iterations, timeStep_);
    filter.setAuxiliaryPlane(planeOf(reservedNumber()));
    return work(static_cast<RealOperator&>(filter));
}

std::unique_ptr<DiscreteImage> ShockOperator::runGrey(const DiscreteImage& source,
                                                      std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const RealImage plane(source);
    const auto result =
        withFilter([&](RealOperator& filter) { return filter.apply(plane, nullptr); });
    target->setChannelFromReal(*result, 0);
    return target;
}

std::unique_ptr<DiscreteImage> ShockOperator::runGreyMasked(
    const DiscreteImage& mask, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const RealImage plane(source);
    const auto result = withFilter(
        [&](RealOperator& filter) { return filter.applyMasked(mask, plane, nullptr); });
    target->setChannelFromReal(*result, 0);
    return target;
}

std::unique_ptr<RealImage3> ShockOperator::runPlanes(const RealImage3& planes,
                                                     std::unique_ptr<RealImage3> target) {
    return withFilter([&](RealOperator& filter) {
        return RealPlanesOperator(&filter).apply(planes, std::move(target));
    });
}

std::unique_ptr<RealImage3> ShockOperator::runPlanesMasked(const DiscreteImage& mask,
                                                           const RealImage3& planes,
                                                           std::unique_ptr<RealImage3> target) {
    return withFilter([&](RealOperator& filter) {
        return RealPlanesOperator(&filter).applyMasked(mask, planes, std::move(target));
    });
}

std::unique_ptr<RealImage3> ShockOperator::runPlanesAlt(const RealImage3& planes,
                                                        std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<RealImage3> ShockOperator::runPlanesAltMasked(
    const DiscreteImage& mask, const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    return runPlanesMasked(mask, planes, std::move(target));
}

std::unique_ptr<RealImage> ShockOperator::runPlane(const RealImage& plane) {
    return withFilter([&](RealOperator& filter) { return filter.apply(plane, nullptr); });
}

}  // namespace orv
