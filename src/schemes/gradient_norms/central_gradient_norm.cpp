#include "schemes/gradient_norms/central_gradient_norm.h"

#include "base/text_output.h"

namespace orv {

namespace {

double squaredNorm(double dx, double dy) {
    return dx * dx + dy * dy;
}

}  // namespace

double CentralGradientNorm::interiorNorm(int x, int y) const {
    return squaredNorm(centralX(x, y), centralY(x, y));
}

double CentralGradientNorm::edgeY0Norm(int x) const {
    return squaredNorm(centralX(x, 0), inwardY(x, 0));
}

double CentralGradientNorm::edgeXLastNorm(int y) const {
    return squaredNorm(inwardX(lastX_, y), centralY(lastX_, y));
}

double CentralGradientNorm::edgeYLastNorm(int x) const {
    return squaredNorm(centralX(x, lastY_), inwardY(x, lastY_));
}

double CentralGradientNorm::edgeX0Norm(int y) const {
    return squaredNorm(inwardX(0, y), centralY(0, y));
}

double CentralGradientNorm::cornerX0Y0Norm() const {
    return squaredNorm(inwardX(0, 0), inwardY(0, 0));
}

double CentralGradientNorm::cornerXLastY0Norm() const {
    return squaredNorm(inwardX(lastX_, 0), inwardY(lastX_, 0));
}

double CentralGradientNorm::cornerXLastYLastNorm() const {
    return squaredNorm(inwardX(lastX_, lastY_), inwardY(lastX_, lastY_));
}

double CentralGradientNorm::cornerX0YLastNorm() const {
    return squaredNorm(inwardX(0, lastY_), inwardY(0, lastY_));
}

void CentralGradientNorm::printName(std::FILE* file) const {
    printTextTo(file, "Central Gradient Norm\n");
}

}  // namespace orv
