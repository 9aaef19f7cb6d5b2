#include "schemes/aos_deblurring/real_gradient_operator.h"

#include <algorithm>
#include <cmath>

#include "base/text_output.h"

namespace orv {

namespace {

/// Writes term(dx, dy) to the interior.
template <class Term>
void writeInterior(const FloatImage& u, FloatImage& target, Term term) {
    const int lastY = u.height() - 1;
    for (int x = 1; x < u.width() - 1; ++x) {
        const float* const west = u.row(x - 1);
        const float* const east = u.row(x + 1);
        const float* const above = u.rowNext(x);
        const float* const below = u.rowPrev(x);
        float* const out = target.row(x);
        for (int y = 1; y < lastY; ++y) {
            out[y] = term(east[y] - west[y], above[y] - below[y]);
        }
    }
}

void clearBorder(FloatImage& plane) {
    const int w = plane.width();
    const int h = plane.height();
    if (w == 0 || h == 0) {
        return;
    }
    for (const int x : {0, w - 1}) {
        std::fill_n(plane.row(x), h, 0.0f);
    }
    for (int x = 0; x < w; ++x) {
        plane.row(x)[0] = 0.0f;
        plane.row(x)[h - 1] = 0.0f;
    }
}

std::unique_ptr<FloatImage> targetFor(const FloatImage& source,
                                      std::unique_ptr<FloatImage> target) {
    return target != nullptr ? std::move(target)
                             : std::make_unique<FloatImage>(source.width(), source.height());
}

}  // namespace

RealGradientOperator::RealGradientOperator(int kind) : kind_(kind) {}

std::unique_ptr<FloatImage> RealGradientOperator::apply(const FloatImage& source,
                                                        std::unique_ptr<FloatImage> target) {
    target = targetFor(source, std::move(target));
    switch (kind_) {
        case 0:
            writeInterior(source, *target, [](float dx, float /*dy*/) { return dx * 0.5f; });
            break;
        case 1:
            writeInterior(source, *target, [](float /*dx*/, float dy) { return dy * 0.5f; });
            break;
        case 2:
            writeInterior(source, *target, [](float dx, float dy) {
                return std::sqrt(dx * dx + dy * dy) * 0.5f;
            });
            break;
        case 3:
            writeInterior(source, *target,
                          [](float dx, float dy) { return (dx * dx + dy * dy) * 0.25f; });
            break;
        default:
            break;
    }
    clearBorder(*target);
    return target;
}

std::unique_ptr<FloatImage> RealGradientOperator::applyMasked(
    const DiscreteImage& mask, const FloatImage& source, std::unique_ptr<FloatImage> target) {
    target = targetFor(source, std::move(target));
    prepareRegion(mask);
    for (int i = 0; i < regionCount_; ++i) {
        const int x = regionXs_[static_cast<std::size_t>(i)];
        const int y = regionYs_[static_cast<std::size_t>(i)];
        const float* const here = source.row(x);
        // quirk: gradient-masked-laplacian
        target->row(x)[y] = source.row(x + 1)[y] + here[y + 1] + here[y - 1] +
                            source.row(x - 1)[y] - 4.0f * here[y];
    }
    releaseRegion();
    return target;
}

void RealGradientOperator::printName(std::FILE* file) const {
    printTextTo(file, "Real Gradient Operator\n");
}

}  // namespace orv
