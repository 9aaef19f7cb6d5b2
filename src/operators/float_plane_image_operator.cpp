#include "operators/float_plane_image_operator.h"

#include <utility>

#include "base/rounding.h"
#include "images/discrete_image.h"

namespace orv {

FloatPlaneImageOperator::FloatPlaneImageOperator()
    : colorPath_(0), channelMode_(1), lower_(0.0f), upper_(255.0f) {}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::applyWithTransform(
    const ColorSpaceTransform* transform, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    if (transform == nullptr && source.channels() == 3) {
        return apply(source, std::move(target));
    }
    // quirk: float-transform
    return run(nullptr, source, std::move(target));
}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::apply(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    return run(nullptr, source, std::move(target));
}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::applyMaskedWithTransform(
    const ColorSpaceTransform* transform, const DiscreteImage& mask,
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (transform == nullptr && source.channels() == 3) {
        return applyMasked(mask, source, std::move(target));
    }
    return run(&mask, source, std::move(target));
}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::applyMasked(
    const DiscreteImage& mask, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return run(&mask, source, std::move(target));
}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    return target != nullptr ? std::move(target) : source.clone();
}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<FloatImage3> FloatPlaneImageOperator::runPlanes(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    if (target == nullptr) {
        return planes.clone();
    }
    target->assign(planes);
    return target;
}

std::unique_ptr<FloatImage3> FloatPlaneImageOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<FloatImage3> FloatPlaneImageOperator::runPlanesAlt(
    const FloatImage3& planes, std::unique_ptr<FloatImage3> target) {
    if (target == nullptr) {
        return planes.clone();
    }
    target->assign(planes);
    return target;
}

std::unique_ptr<FloatImage3> FloatPlaneImageOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const FloatImage3& planes,
    std::unique_ptr<FloatImage3> target) {
    return runPlanesAlt(planes, std::move(target));
}

void FloatPlaneImageOperator::setChannelMode(int n) {
    channelMode_ = n;
}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::begin(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    lower_ = toFloat(source.minValue());
    upper_ = toFloat(source.maxValue());
    if (source.depthClass() == kSixteenBitDepthClass) {
        setBits(16);
    }
    return target;
}

std::unique_ptr<DiscreteImage> FloatPlaneImageOperator::run(
    const DiscreteImage* mask, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    target = begin(source, std::move(target));
    if (source.channels() == 1) {
        return mask != nullptr ? runGreyMasked(*mask, source, std::move(target))
                               : runGrey(source, std::move(target));
    }
    if (source.channels() != 3 || colorPath_ > 1) {
        return target;
    }
    std::unique_ptr<FloatImage3> result =
        runColour(mask, std::make_unique<FloatImage3>(source));
    if (result == nullptr) {
        return nullptr;
    }
    target->setFromFloat3(*result);
    return target;
}

std::unique_ptr<FloatImage3> FloatPlaneImageOperator::runColour(
    const DiscreteImage* mask, std::unique_ptr<FloatImage3> planes) {
    if (mask != nullptr) {
        return colorPath_ == 0 ? runPlanesMasked(*mask, *planes, nullptr)
                               : runPlanesAltMasked(*mask, *planes, nullptr);
    }
    return colorPath_ == 0 ? runOwnedPlanes(std::move(planes)) : runPlanesAlt(*planes, nullptr);
}

std::unique_ptr<FloatImage3> FloatPlaneImageOperator::runOwnedPlanes(
    std::unique_ptr<FloatImage3> planes) {
    return runPlanes(*planes, nullptr);
}

}  // namespace orv
