#include "operators/real_plane_image_operator.h"

#include <utility>

#include "images/discrete_image.h"
#include "operators/color_space_transform.h"

namespace orv {

RealPlaneImageOperator::RealPlaneImageOperator() : colorPath_(0), channelMode_(1) {}

std::unique_ptr<DiscreteImage> RealPlaneImageOperator::applyWithTransform(
    const ColorSpaceTransform* transform, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    if (transform == nullptr && source.channels() == 3) {
        return apply(source, std::move(target));
    }
    return run(transform, nullptr, source, std::move(target));
}

std::unique_ptr<DiscreteImage> RealPlaneImageOperator::apply(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    return run(nullptr, nullptr, source, std::move(target));
}

std::unique_ptr<DiscreteImage> RealPlaneImageOperator::applyMaskedWithTransform(
    const ColorSpaceTransform* transform, const DiscreteImage& mask,
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (transform == nullptr && source.channels() == 3) {
        return applyMasked(mask, source, std::move(target));
    }
    return run(transform, &mask, source, std::move(target));
}

std::unique_ptr<DiscreteImage> RealPlaneImageOperator::applyMasked(
    const DiscreteImage& mask, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return run(nullptr, &mask, source, std::move(target));
}

std::unique_ptr<DiscreteImage> RealPlaneImageOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    return target != nullptr ? std::move(target) : source.clone();
}

std::unique_ptr<DiscreteImage> RealPlaneImageOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runPlanes(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    if (target == nullptr) {
        return planes.clone();
    }
    target->assign(planes);
    return target;
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const RealImage3& planes,
    std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runPlanesAlt(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    if (target == nullptr) {
        return planes.clone();
    }
    target->assign(planes);
    return target;
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const RealImage3& planes,
    std::unique_ptr<RealImage3> target) {
    return runPlanesAlt(planes, std::move(target));
}

void RealPlaneImageOperator::setChannelMode(int n) {
    channelMode_ = n;
}

std::unique_ptr<DiscreteImage> RealPlaneImageOperator::run(
    const ColorSpaceTransform* transform, const DiscreteImage* mask,
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    if (source.channels() == 1) {
        return mask != nullptr ? runGreyMasked(*mask, source, std::move(target))
                               : runGrey(source, std::move(target));
    }
    if (source.channels() != 3 || colorPath_ > 1) {
        return target;
    }
    auto planes = std::make_unique<RealImage3>(source);
    std::unique_ptr<RealImage3> result =
        transform != nullptr ? runTransformed(*transform, mask, std::move(planes))
                             : runRead(mask, std::move(planes));
    if (result == nullptr) {
        return nullptr;
    }
    target->setFromReal3(*result);
    return target;
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runOwnedPlanes(
    std::unique_ptr<RealImage3> planes) {
    return runPlanes(*planes, nullptr);
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runRead(
    const DiscreteImage* mask, std::unique_ptr<RealImage3> planes) {
    return mask == nullptr && colorPath_ == 0 ? runOwnedPlanes(std::move(planes))
                                              : runColour(mask, *planes, nullptr);
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runColour(
    const DiscreteImage* mask, const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    if (mask != nullptr) {
        return colorPath_ == 0 ? runPlanesMasked(*mask, planes, std::move(target))
                               : runPlanesAltMasked(*mask, planes, std::move(target));
    }
    return colorPath_ == 0 ? runPlanes(planes, std::move(target))
                           : runPlanesAlt(planes, std::move(target));
}

std::unique_ptr<RealImage3> RealPlaneImageOperator::runTransformed(
    const ColorSpaceTransform& transform, const DiscreteImage* mask,
    std::unique_ptr<RealImage3> planes) {
    std::unique_ptr<RealImage3> work = transform.forward(*planes, nullptr);
    if (work == nullptr) {
        return nullptr;
    }
    const std::unique_ptr<RealImage3> result = runColour(mask, *work, std::move(planes));
    if (result == nullptr) {
        return nullptr;
    }
    return transform.inverse(*result, std::move(work));
}

}  // namespace orv
