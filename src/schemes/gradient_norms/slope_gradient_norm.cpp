#include "schemes/gradient_norms/slope_gradient_norm.h"

#include <cmath>

namespace orv {

namespace {

struct Offset {
    int dx;
    int dy;
};

constexpr Offset kVisit[8] = {{-1, 0}, {-1, -1}, {-1, 1}, {0, -1},
                              {0, 1},  {1, -1},  {1, 0},  {1, 1}};

}  // namespace

double SlopeGradientNorm::normAt(int x, int y) const {
    const double here = sample(x, y);
    Slopes slopes;
    for (const Offset step : kVisit) {
        const int i = x + step.dx;
        const int j = y + step.dy;
        if (i < 0 || i > lastX_ || j < 0 || j > lastY_) {
            continue;
        }
        double slope = std::fabs(sample(i, j) - here);
        if (step.dx != 0 && step.dy != 0) {
            slope *= diagonalWeight_;
        }
        slopes.values[slopes.count++] = slope;
    }
    return slopes.count == 0 ? 0.0 : combine(slopes);
}

double SlopeGradientNorm::interiorNorm(int x, int y) const {
    return normAt(x, y);
}

double SlopeGradientNorm::edgeY0Norm(int x) const {
    return normAt(x, 0);
}

double SlopeGradientNorm::edgeXLastNorm(int y) const {
    return normAt(lastX_, y);
}

double SlopeGradientNorm::edgeYLastNorm(int x) const {
    return normAt(x, lastY_);
}

double SlopeGradientNorm::edgeX0Norm(int y) const {
    return normAt(0, y);
}

double SlopeGradientNorm::cornerX0Y0Norm() const {
    return normAt(0, 0);
}

double SlopeGradientNorm::cornerXLastY0Norm() const {
    return normAt(lastX_, 0);
}

double SlopeGradientNorm::cornerXLastYLastNorm() const {
    return normAt(lastX_, lastY_);
}

double SlopeGradientNorm::cornerX0YLastNorm() const {
    return normAt(0, lastY_);
}

}  // namespace orv
