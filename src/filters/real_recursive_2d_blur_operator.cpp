#include "filters/real_recursive_2d_blur_operator.h"

#include "base/text_output.h"
#include "filters/kernels/recursive_blur_passes.h"
#include "filters/recursive_gaussian.h"

namespace orv {

RealRecursive2dBlurOperator::RealRecursive2dBlurOperator(double sigma) : sigma_(sigma) {
    q_ = RealRecursive2dBlurOperator::computeQ(sigma);
    RealRecursive2dBlurOperator::computeCoefficients();
}

RealRecursive2dBlurOperator::~RealRecursive2dBlurOperator() = default;

std::unique_ptr<RealImage> RealRecursive2dBlurOperator::apply(
    const RealImage& source, std::unique_ptr<RealImage> target) {
    if (target == nullptr) {
        // Every sample is written, so that a copy of the source would be thrown away.
        target = RealImage::uninitialised(source.width(), source.height());
        target->setFlag(source.flag());
    }
    blurPlane({B_, b1OverB0_, b2OverB0_, b3OverB0_}, source, *target);
    return target;
}

void RealRecursive2dBlurOperator::printName(std::FILE* file) const {
    printTextTo(file, "Real Recursive 2d Blur Operator\n");
}

double RealRecursive2dBlurOperator::computeQ(double sigma) {
    sigma_ = clampedBlurSigma(sigma);
    return gaussianScale(sigma_);
}

void RealRecursive2dBlurOperator::computeCoefficients() {
    const GaussianDenominators denominators = gaussianDenominators(q_);
    b0_ = denominators.b0;
    b1_ = denominators.b1;
    b2_ = denominators.b2;
    b3_ = denominators.b3;
    B_ = gaussianGain(denominators);
    b1OverB0_ = b1_ / b0_;
    b2OverB0_ = b2_ / b0_;
    b3OverB0_ = b3_ / b0_;
}

void RealRecursive2dBlurOperator::blurInPlace(RealImage& plane) {
    blurPlane({B_, b1OverB0_, b2OverB0_, b3OverB0_}, plane, plane);
}

}  // namespace orv
