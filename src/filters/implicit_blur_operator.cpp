#include "filters/implicit_blur_operator.h"

#include <algorithm>

#include "base/text_output.h"
#include "exports/work_window.h"

namespace orv {

namespace {

// The matrix I + tau L; a line of one sample has a single entry, tau + 1.
std::unique_ptr<ThomasLinearSystem> makeSystem(int n, float tau) {
    auto system = std::make_unique<ThomasLinearSystem>(n);
    RealVector diag(n, 2.0f * tau + 1.0f);
    diag[0] = tau + 1.0f;
    diag[n - 1] = tau + 1.0f;
    const RealVector super(n - 1, -tau);
    const RealVector sub(n - 1, -tau);
    system->setTriDiagonal(super, diag, sub);
    system->setX(RealVector(n));
    system->setB(RealVector(n));
    return system;
}

}  // namespace

ImplicitBlurOperator::ImplicitBlurOperator(int iterations, float tau)
    : iterations_(iterations), tau_(tau) {}

ImplicitBlurOperator::~ImplicitBlurOperator() = default;

std::unique_ptr<FloatImage> ImplicitBlurOperator::apply(const FloatImage& source,
                                                        std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    const std::unique_ptr<FloatImage> work = source.clone();
    blurInPlace(*work);
    // quirk: implicit-blur-empty
    target->assign(*work);
    return target;
}

std::unique_ptr<FloatImage> ImplicitBlurOperator::applyMasked(
    const DiscreteImage& /*mask*/, const FloatImage& source,
    std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    return target;
}

void ImplicitBlurOperator::printName(std::FILE* file) const {
    // quirk: implicit-blur-name
    printTextTo(file, "Real Recursive 2d Blur Operator\n");
}

void ImplicitBlurOperator::blurInPlace(FloatImage& work) {
    width_ = work.width();
    height_ = work.height();
    systemX_ = makeSystem(width_, tau_);
    systemY_ = makeSystem(height_, tau_);
    for (int i = 0; i < iterations_ && !workCancelled(); ++i) {
        blurLinesX(work);
        blurLinesY(work);
    }
    systemX_.reset();
    systemY_.reset();
}

void ImplicitBlurOperator::blurLinesX(FloatImage& work) {
    float* const b = systemX_->b().data();
    const float* const x = systemX_->x().data();
    for (int y = 0; y < height_; ++y) {
        for (int i = 0; i < width_; ++i) {
            b[i] = work.row(i)[y];
        }
        systemX_->factorise();
        for (int i = 0; i < width_; ++i) {
            work.row(i)[y] = x[i];
        }
    }
}

void ImplicitBlurOperator::blurLinesY(FloatImage& work) {
    for (int x = 0; x < width_; ++x) {
        std::copy_n(work.row(x), height_, systemY_->b().data());
        systemY_->factorise();
        std::copy_n(systemY_->x().data(), height_, work.row(x));
    }
}

}  // namespace orv
