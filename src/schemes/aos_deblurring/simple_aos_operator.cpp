#include "schemes/aos_deblurring/simple_aos_operator.h"

#include <utility>

#include "base/rounding.h"
#include "base/text_output.h"
#include "schemes/aos_deblurring/aos_line.h"

namespace orv {

SimpleAosOperator::SimpleAosOperator(int iterations, double tau, double contrast, double sigma,
                                     unsigned char reservedFlag, unsigned char updateEachStep)
    : iterations_(iterations),
      tau_(toFloat(tau)),
      contrast_(toFloat(contrast)),
      contrastSquared_(contrast_ * contrast_),
      sigma_(toFloat(sigma)),
      reservedFlag_(reservedFlag),
      updateEachStep_(updateEachStep) {}

SimpleAosOperator::~SimpleAosOperator() = default;

std::unique_ptr<FloatImage> SimpleAosOperator::apply(const FloatImage& source,
                                                     std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    width_ = source.width();
    height_ = source.height();
    const std::unique_ptr<FloatImage> work = source.clone();
    const float s = lineStep();
    makeSystems();
    AosLineVectors vectorsX(width_);
    AosLineVectors vectorsY(height_);
    if (updateEachStep_ == 0) {
        prepare(*work);
    }
    for (int i = 0; i < iterations_; ++i) {
        if (updateEachStep_ == 1) {
            prepare(*work);
        }
        for (int y = 0; y < height_; ++y) {
            solveAosLine(
                *systemX_, vectorsX, width_, s, dimensions_,
                [&](int j) { return diffusivity(j, y); },
                [&](int j) { return work->row(j)[y]; });
            for (int x = 0; x < width_; ++x) {
                target->row(x)[y] = systemX_->x()[x];
            }
        }
        for (int x = 0; x < width_; ++x) {
            solveAosLine(
                *systemY_, vectorsY, height_, s, dimensions_,
                [&](int j) { return diffusivity(x, j); },
                [&](int j) { return work->row(x)[j]; });
            for (int y = 0; y < height_; ++y) {
                target->row(x)[y] = target->row(x)[y] + systemY_->x()[y];
            }
        }
        if (i < iterations_ - 1) {
            work->assign(*target);
        }
    }
    releaseWork();
    return target;
}

std::unique_ptr<FloatImage> SimpleAosOperator::applyMasked(const DiscreteImage& /*mask*/,
                                                           const FloatImage& source,
                                                           std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    return target;
}

void SimpleAosOperator::printName(std::FILE* file) const {
    printTextTo(file, "Real Simple Aos Operator\n");
}

void SimpleAosOperator::prepare(const FloatImage& plane) {
    if (smoothed_ == nullptr) {
        smoothed_ = std::make_unique<FloatImage>(plane.width(), plane.height());
    }
    if (gradientPlane_ == nullptr) {
        gradientPlane_ = std::make_unique<FloatImage>(plane.width(), plane.height());
    }
    makeBlur();
    update(plane);
}

void SimpleAosOperator::update(const FloatImage& plane) {
    smoothed_ = blur_->apply(plane, std::move(smoothed_));
    gradientPlane_ = gradient_->apply(*smoothed_, std::move(gradientPlane_));
}

float SimpleAosOperator::diffusivityBelow(int x, int y) const {
    return diffusivity(x, y - 1);
}

float SimpleAosOperator::diffusivityAbove(int x, int y) const {
    return diffusivity(x, y + 1);
}

void SimpleAosOperator::makeBlur() {
    blur_ = std::make_unique<ImplicitBlurOperator>(/*iterations=*/1, sigma_ * sigma_ * 0.5f);
}

void SimpleAosOperator::makeSystems() {
    systemX_ = std::make_unique<ThomasLinearSystem>(width_);
    systemY_ = std::make_unique<ThomasLinearSystem>(height_);
}

void SimpleAosOperator::releaseWork() {
    systemX_.reset();
    systemY_.reset();
    smoothed_.reset();
    gradientPlane_.reset();
}

float SimpleAosOperator::lineStep() const {
    const float m = static_cast<float>(dimensions_);
    return m * (m * tau_);
}

}  // namespace orv
