#include "schemes/gradient_norms/gradient_norm.h"

#include "base/rounding.h"

namespace orv {

void GradientNorm::setImage(const FloatImage& plane) {
    image_ = &plane;
    lastX_ = plane.width() - 1;
    lastY_ = plane.height() - 1;
}

std::unique_ptr<FloatImage> GradientNorm::apply(const FloatImage& source,
                                                std::unique_ptr<FloatImage> target) {
    if (target == nullptr) {
        target = source.clone();
    }
    for (int x = 1; x < lastX_; ++x) {
        float* out = target->row(x);
        for (int y = 1; y < lastY_; ++y) {
            out[y] = toFloat(interiorNorm(x, y));
        }
    }
    for (int x = 1; x < lastX_; ++x) {
        target->row(x)[0] = toFloat(edgeY0Norm(x));
    }
    for (int y = 1; y < lastY_; ++y) {
        target->row(lastX_)[y] = toFloat(edgeXLastNorm(y));
    }
    for (int x = 1; x < lastX_; ++x) {
        target->row(x)[lastY_] = toFloat(edgeYLastNorm(x));
    }
    for (int y = 1; y < lastY_; ++y) {
        target->row(0)[y] = toFloat(edgeX0Norm(y));
    }
    target->row(0)[0] = toFloat(cornerX0Y0Norm());
    target->row(lastX_)[0] = toFloat(cornerXLastY0Norm());
    target->row(lastX_)[lastY_] = toFloat(cornerXLastYLastNorm());
    target->row(0)[lastY_] = toFloat(cornerX0YLastNorm());
    return target;
}

double GradientNorm::centralX(int x, int y) const {
    return (sample(x + 1, y) - sample(x - 1, y)) * 0.5;
}

double GradientNorm::centralY(int x, int y) const {
    return (sample(x, y + 1) - sample(x, y - 1)) * 0.5;
}

double GradientNorm::inwardX(int x, int y) const {
    if (lastX_ == 0) {
        return 0.0;
    }
    const int inside = x == 0 ? 1 : x - 1;
    return sample(inside, y) - sample(x, y);
}

double GradientNorm::inwardY(int x, int y) const {
    if (lastY_ == 0) {
        return 0.0;
    }
    const int inside = y == 0 ? 1 : y - 1;
    return sample(x, inside) - sample(x, y);
}

}  // namespace orv
