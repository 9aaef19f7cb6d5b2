#include "operators/thin/retinex_operator.h"

#include <utility>

#include "filters/variational_retinex.h"
#include "images/discrete_image.h"
#include "images/real_image3.h"
#include "schemes/plane_operators/real_planes_operator.h"

namespace orv {

namespace {

// 256 is a power of two, so that the product with its inverse has the bits of the quotient.
// The way out is not the inverse of the way in.
// quirk: retinex-scaling
constexpr SampleScaling kScaling = {/*offset=*/1.0, /*scale=*/1.0 / 256.0, /*factor=*/255.0};

/// The Retinex between the scalings of the operator, which so need no planes of their own.
class ScaledRetinex : public RealOperator {
  public:
    explicit ScaledRetinex(VariationalRetinex& retinex) : retinex_(retinex) {}

    std::unique_ptr<RealImage> apply(const RealImage& source,
                                     std::unique_ptr<RealImage> target) override {
        return retinex_.applyScaled(source, kScaling, std::move(target));
    }

  private:
    VariationalRetinex& retinex_;
};

}  // namespace

RetinexOperator::RetinexOperator(double gamma, double alpha, double beta, int levels)
    : gamma_(gamma), alpha_(alpha), beta_(beta), levels_(levels) {}

std::unique_ptr<DiscreteImage> RetinexOperator::runGrey(const DiscreteImage& source,
                                                        std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const std::unique_ptr<RealImage> result = runPlane(RealImage(source));
    if (result == nullptr) {
        return nullptr;
    }
    target->setChannelFromReal(*result, 0);
    return target;
}

std::unique_ptr<DiscreteImage> RetinexOperator::runGreyMasked(
    const DiscreteImage& /*mask*/, const DiscreteImage& source,
    std::unique_ptr<DiscreteImage> target) {
    return runGrey(source, std::move(target));
}

std::unique_ptr<RealImage3> RetinexOperator::runPlanes(const RealImage3& planes,
                                                       std::unique_ptr<RealImage3> target) {
    if (levels_ < 1 || levels_ > mostLevels(planes.width(), planes.height())) {
        return nullptr;
    }
    if (target == nullptr) {
        target = RealImage3::withoutPlanes(planes.width(), planes.height());
        target->setFlag(planes.flag());
    }
    VariationalRetinex retinex(gamma_, alpha_, beta_, levels_);
    ScaledRetinex scaled(retinex);
    target = RealPlanesOperator(&scaled).apply(planes, std::move(target));
    for (int c = 0; c < 3; ++c) {
        std::unique_ptr<RealImage> plane = target->takePlane(c);
        target->setPlane(c, plane != nullptr ? std::move(plane) : planes.plane(c).clone());
    }
    return target;
}

std::unique_ptr<RealImage3> RetinexOperator::runOwnedPlanes(
    std::unique_ptr<RealImage3> planes) {
    if (levels_ < 1 || levels_ > mostLevels(planes->width(), planes->height())) {
        return nullptr;
    }
    VariationalRetinex retinex(gamma_, alpha_, beta_, levels_);
    ScaledRetinex scaled(retinex);
    return RealPlanesOperator(&scaled).applyToOwned(std::move(planes));
}

std::unique_ptr<RealImage3> RetinexOperator::runPlanesMasked(
    const DiscreteImage& /*mask*/, const RealImage3& planes,
    std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<RealImage3> RetinexOperator::runPlanesAlt(const RealImage3& planes,
                                                          std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

std::unique_ptr<RealImage3> RetinexOperator::runPlanesAltMasked(
    const DiscreteImage& /*mask*/, const RealImage3& planes,
    std::unique_ptr<RealImage3> target) {
    return runPlanes(planes, std::move(target));
}

void RetinexOperator::setAlpha(double alpha) {
    alpha_ = alpha;
}

void RetinexOperator::setBeta(double beta) {
    beta_ = beta;
}

void RetinexOperator::setGamma(double gamma) {
    gamma_ = gamma;
}

std::unique_ptr<RealImage> RetinexOperator::runPlane(const RealImage& plane) {
    VariationalRetinex retinex(gamma_, alpha_, beta_, levels_);
    return retinex.applyScaled(plane, kScaling, nullptr);
}

bool RetinexOperator::accepts(int width, int height) const {
    return gamma_ != 0.0 && levels_ >= 1 && levels_ <= mostLevels(width, height);
}

int RetinexOperator::mostLevels(int width, int height) {
    return VariationalRetinex::mostLevels(width, height);
}

}  // namespace orv
