#include "schemes/aos_deblurring/aos_deblurring_operator.h"

#include <cmath>
#include <typeinfo>

#include "base/rounding.h"
#include "base/text_output.h"

namespace orv {

namespace {

constexpr double kContrast = 1.0;
constexpr int kSquaredNorm = 3;

}  // namespace

AosDeblurringOperator::AosDeblurringOperator(int iterations, int kernel, double tau,
                                             double lambda, double sigma, double edgeContrast,
                                             unsigned char keepObserved,
                                             unsigned char updateEachStep)
    : RegularizedAosOperator(iterations, kernel, tau, kContrast, lambda, sigma, keepObserved,
                             updateEachStep),
      inverseContrastSquared_(toFloat((1.0 / edgeContrast) * (1.0 / edgeContrast))) {
    gradient_ = std::make_unique<RealGradientOperator>(kSquaredNorm);
}

AosDeblurringOperator::~AosDeblurringOperator() = default;

float AosDeblurringOperator::diffusivity(int x, int y) const {
    return 1.0f / (gradientPlane_->row(x)[y] * inverseContrastSquared_ + 1.0f);
}

void AosDeblurringOperator::printName(std::FILE* file) const {
    printTextTo(file, "Real Aos Deblurring/Denoising Operator\n");
}

// The blur under the gradient leaves its target at zero whatever the plane holds, and the
// gradient of zeros is 0: 1 / (0 c + 1) is 1 for every finite c. A derived class may bring
// another gradient.
bool AosDeblurringOperator::isUniform() const {
    return typeid(*this) == typeid(AosDeblurringOperator) &&
           std::isfinite(inverseContrastSquared_);
}

}  // namespace orv
