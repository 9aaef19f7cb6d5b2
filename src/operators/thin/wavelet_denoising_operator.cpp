#include "operators/thin/wavelet_denoising_operator.h"

#include <algorithm>
#include <utility>

#include "images/discrete_image.h"
#include "images/real_image3.h"
#include "schemes/plane_operators/real_planes_operator.h"
#include "wavelets/wavelet_shrinkage_operator.h"

namespace orv {

WaveletDenoisingOperator::WaveletDenoisingOperator(int algorithm, int levels, int wavelet)
    : algorithm_(algorithm), levels_(levels), wavelet_(wavelet) {}

std::unique_ptr<DiscreteImage> WaveletDenoisingOperator::runGrey(
    const DiscreteImage& source, std::unique_ptr<DiscreteImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const std::unique_ptr<RealImage> result = runPlane(RealImage(source));
    target->setChannelFromReal(*result, 0);
    return target;
}

std::unique_ptr<RealImage3> WaveletDenoisingOperator::runPlanes(
    const RealImage3& planes, std::unique_ptr<RealImage3> target) {
    if (target == nullptr) {
        target = RealImage3::withoutPlanes(planes.width(), planes.height());
        target->setFlag(planes.flag());
    }
    WaveletShrinkageOperator shrinkage(algorithm_, levels_, wavelet_);
    target = RealPlanesOperator(&shrinkage).apply(planes, std::move(target));
    for (int c = 0; c < 3; ++c) {
        std::unique_ptr<RealImage> plane = target->takePlane(c);
        target->setPlane(c, plane != nullptr ? std::move(plane) : planes.plane(c).clone());
    }
    return target;
}

std::unique_ptr<RealImage> WaveletDenoisingOperator::runPlane(const RealImage& plane) {
    WaveletShrinkageOperator shrinkage(algorithm_, levels_, wavelet_);
    shrinkage.setNoise(noise_);
    return shrinkage.apply(plane, nullptr);
}

std::unique_ptr<RealImage> WaveletDenoisingOperator::runPlaneMirrored(const RealImage& plane) {
    WaveletShrinkageOperator shrinkage(algorithm_, levels_, wavelet_);
    shrinkage.setNoise(noise_);
    return shrinkage.mirrored(plane);
}

int WaveletDenoisingOperator::levelLimit(int width, int height, bool mirrored) const {
    const WaveletShrinkageOperator shrinkage(algorithm_, levels_, wavelet_);
    const int longer = std::max(width, height);
    const int side = WaveletShrinkageOperator::workingSide(longer);
    const bool padded = !mirrored && side != longer;
    return shrinkage.levelLimit(padded ? side : std::min(width, height));
}

}  // namespace orv
