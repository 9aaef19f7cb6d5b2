#include "filters/implicit_blur_operator.h"

#include <algorithm>

#include "base/text_output.h"
#include "exports/work_window.h"
#include "filters/kernels/column_strip.h"
#include "filters/kernels/implicit_blur_kernels.h"

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

// One factorisation serves all lines of a pass: they share the matrix.
ThomasFactors factorsOf(ThomasLinearSystem& system) {
    system.factorise();
    return {system.multipliers().data(), system.pivots().data(),
            system.matrix().upper().data()};
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
    const ImplicitBlurKernels& kernels = implicitBlurKernels();
    const ThomasFactors factors = factorsOf(*systemX_);
    const std::size_t rows = static_cast<std::size_t>(height_);
    for (int x = 1; x < width_; ++x) {
        kernels.eliminate(factors.multipliers[x - 1], work.row(x - 1), rows, work.row(x));
    }
    kernels.divide(factors.pivots[width_ - 1], rows, work.row(width_ - 1));
    for (int x = width_ - 2; x >= 0; --x) {
        kernels.substitute(factors.super[x], factors.pivots[x], work.row(x + 1), rows,
                           work.row(x));
    }
}

void ImplicitBlurOperator::blurLinesY(FloatImage& work) {
    const ImplicitBlurKernels& kernels = implicitBlurKernels();
    const ThomasFactors factors = factorsOf(*systemY_);
    const ColumnStrip strip(width_, height_, /*extra=*/0, sizeof(float));
    for (int x = 0; x < width_; x += strip.lanes()) {
        const ColumnBlock<float> block = {work.row(x), static_cast<std::size_t>(height_),
                                          std::min(strip.lanes(), width_ - x), height_};
        kernels.solveColumns(factors, block, static_cast<float*>(strip.data()), strip.lanes());
    }
}

}  // namespace orv
