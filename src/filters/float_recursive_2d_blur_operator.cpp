#include "filters/float_recursive_2d_blur_operator.h"

#include "base/rounding.h"
#include "base/text_output.h"
#include "filters/kernels/recursive_blur_passes.h"
#include "filters/recursive_gaussian.h"

namespace orv {

FloatRecursive2dBlurOperator::FloatRecursive2dBlurOperator(double sigma) : sigma_(sigma) {
    dropsTarget_ = true;
    q_ = FloatRecursive2dBlurOperator::computeQ(sigma);
    FloatRecursive2dBlurOperator::computeCoefficients();
    printText("b0=%f, b1=%f, b2=%f, b3=%f\n", b0_, b1_, b2_, b3_);
    printText("b1/b0=%f, b2/b0=%f, b3/b0=%f\n", double{b1OverB0_}, double{b2OverB0_},
              double{b3OverB0_});
    printText("B=%f\n", double{B_});
    flushText();
}

FloatRecursive2dBlurOperator::~FloatRecursive2dBlurOperator() = default;

std::unique_ptr<FloatImage> FloatRecursive2dBlurOperator::apply(
    const FloatImage& source, std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        // Every sample is written, so that a copy of the source would be thrown away.
        target = FloatImage::uninitialised(source.width(), source.height());
        target->setFlag(source.flag());
    }
    blurPlane({B_, b1OverB0_, b2OverB0_, b3OverB0_}, source, *target);
    return target;
}

void FloatRecursive2dBlurOperator::printName(std::FILE* file) const {
    printTextTo(file, "Float Recursive 2d Blur Operator\n");
}

double FloatRecursive2dBlurOperator::computeQ(double sigma) {
    sigma_ = clampedBlurSigma(sigma);
    return gaussianScale(sigma_);
}

void FloatRecursive2dBlurOperator::computeCoefficients() {
    const GaussianDenominators denominators = gaussianDenominators(q_);
    b0_ = denominators.b0;
    b1_ = denominators.b1;
    b2_ = denominators.b2;
    b3_ = denominators.b3;
    B_ = toFloat(gaussianGain(denominators));
    b1OverB0_ = toFloat(b1_ / b0_);
    b2OverB0_ = toFloat(b2_ / b0_);
    b3OverB0_ = toFloat(b3_ / b0_);
}

void FloatRecursive2dBlurOperator::blurInPlace(FloatImage& plane) {
    blurPlane({B_, b1OverB0_, b2OverB0_, b3OverB0_}, plane, plane);
}

}  // namespace orv
