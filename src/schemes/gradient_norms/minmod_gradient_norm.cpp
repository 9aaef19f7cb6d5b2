#include "schemes/gradient_norms/minmod_gradient_norm.h"

#include <algorithm>
#include <cmath>

#include "base/text_output.h"

namespace orv {

namespace {

double squaredNorm(double dx, double dy) {
    return dx * dx + dy * dy;
}

double sign(double a) {
    if (a > 0.0) {
        return 1.0;
    }
    return a < 0.0 ? -1.0 : 0.0;
}

double minmod(double a, double b) {
    return (sign(a) + sign(b)) * std::min(std::fabs(a), std::fabs(b)) * 0.5;
}

}  // namespace

double MinmodGradientNorm::minmodX(int x, int y) const {
    return minmod(sample(x + 1, y) - sample(x, y), sample(x, y) - sample(x - 1, y));
}

double MinmodGradientNorm::minmodY(int x, int y) const {
    return minmod(sample(x, y + 1) - sample(x, y), sample(x, y) - sample(x, y - 1));
}

double MinmodGradientNorm::interiorNorm(int x, int y) const {
    return squaredNorm(minmodX(x, y), minmodY(x, y));
}

double MinmodGradientNorm::edgeY0Norm(int x) const {
    return squaredNorm(minmodX(x, 0), inwardY(x, 0));
}

double MinmodGradientNorm::edgeXLastNorm(int y) const {
    return squaredNorm(inwardX(lastX_, y), minmodY(lastX_, y));
}

double MinmodGradientNorm::edgeYLastNorm(int x) const {
    return squaredNorm(minmodX(x, lastY_), inwardY(x, lastY_));
}

double MinmodGradientNorm::edgeX0Norm(int y) const {
    return squaredNorm(inwardX(0, y), minmodY(0, y));
}

double MinmodGradientNorm::cornerX0Y0Norm() const {
    return squaredNorm(inwardX(0, 0), inwardY(0, 0));
}

double MinmodGradientNorm::cornerXLastY0Norm() const {
    return squaredNorm(inwardX(lastX_, 0), inwardY(lastX_, 0));
}

double MinmodGradientNorm::cornerXLastYLastNorm() const {
    return squaredNorm(inwardX(lastX_, lastY_), inwardY(lastX_, lastY_));
}

double MinmodGradientNorm::cornerX0YLastNorm() const {
    return squaredNorm(inwardX(0, lastY_), inwardY(0, lastY_));
}

void MinmodGradientNorm::printName(std::FILE* file) const {
    printTextTo(file, "Minmod Gradient Norm\n");
}

}  // namespace orv
