#include "operators/thin/homomorphic_operator.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/rounding.h"
#include "filters/blur_margin.h"
#include "filters/homomorphic_filter.h"
#include "images/discrete_image.h"
#include "images/real_image3.h"
#include "schemes/plane_operators/real_planes_operator.h"

namespace orv {

namespace {

/// `result` without its margin, multiplied by `scale` and rounded.
///
/// What is too large for floats stays a number: exponentials of the stripes that the blur leaves
/// at a bare border can exceed them.
void copyInner(const RealImage& result, int margin, double scale, FloatImage& plane) {
    for (int x = 0; x < plane.width(); ++x) {
        const double* const column = result.row(x + margin) + margin;
        std::transform(column, column + plane.height(), plane.row(x), [scale](double sample) {
            constexpr double kLargest = std::numeric_limits<float>::max();
            return toFloat(std::clamp(sample * scale, -kLargest, kLargest));
        });
    }
}

}  // namespace

HomomorphicOperator::HomomorphicOperator(int mode, double gamma)
    : mode_(mode), sigma_(8.0), gamma_(gamma) {}

std::unique_ptr<DiscreteImage> HomomorphicOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    target->setChannelFromReal(*runPlane(RealImage(source)), 0);
    return target;
}

std::unique_ptr<DiscreteImage> HomomorphicOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<RealImage3> HomomorphicOperator::runPlanes(const RealImage3& planes,
                                                           std::unique_ptr<RealImage3> target) {
    if (target == nullptr) {
        target = RealImage3::withoutPlanes(planes.width(), planes.height());
        target->setFlag(planes.flag());
    }
    HomomorphicFilter filter(mode_, sigma_, gamma_);
    target = RealPlanesOperator(&filter).apply(planes, std::move(target));
    for (int c = 0; c < 3; ++c) {
        std::unique_ptr<RealImage> plane = target->takePlane(c);
        target->setPlane(c, plane != nullptr ? std::move(plane) : planes.plane(c).clone());
    }
    return target;
}

std::unique_ptr<RealImage3> HomomorphicOperator::runOwnedPlanes(
    std::unique_ptr<RealImage3> planes) {
    HomomorphicFilter filter(mode_, sigma_, gamma_);
    return RealPlanesOperator(&filter).applyToOwned(std::move(planes));
}

std::unique_ptr<RealImage3> HomomorphicOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const RealImage3& planes,
    std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<RealImage3> HomomorphicOperator::runPlanesAlt(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<RealImage3> HomomorphicOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const RealImage3& planes,
    std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

void HomomorphicOperator::setSigma(double sigma) {
    sigma_ = sigma;
}

void HomomorphicOperator::setGamma(double gamma) {
    gamma_ = gamma;
}

std::unique_ptr<RealImage> HomomorphicOperator::runPlane(const RealImage& plane) {
    return HomomorphicFilter(mode_, sigma_, gamma_).apply(plane, nullptr);
}

void HomomorphicOperator::runMirrored(FloatImage& plane, double scale) const {
    const int margin = blurMargin(sigma_);
    const auto result = HomomorphicFilter(mode_, sigma_, gamma_)
                            .apply(*withMirroredMargin(plane, margin), nullptr);
    copyInner(*result, margin, scale, plane);
}

void HomomorphicOperator::runBare(FloatImage& plane, double scale) const {
    const auto source = RealImage::uninitialised(plane.width(), plane.height());
    std::copy_n(plane.data(), plane.sampleCount(), source->data());
    copyInner(*HomomorphicFilter(mode_, sigma_, gamma_).apply(*source, nullptr), /*margin=*/0,
              scale, plane);
}

bool HomomorphicOperator::accepts(int width, int height) {
    return width >= 3 && height >= 3;
}

}  // namespace orv
