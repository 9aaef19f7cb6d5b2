#include "images/real_image_differences.h"

#include <algorithm>

namespace orv {

namespace {

// Keeps the quotients finite where the plane is flat.
constexpr double kFlat = 0.00000001;

double sign(double a) {
    if (a > 0.0) {
        return 1.0;
    }
    return a < 0.0 ? -1.0 : 0.0;
}

}  // namespace

double secondAlongGradient(const RealImage& I, int x, int y) {
    const double fx = centralX(I, x, y);
    const double fy = centralY(I, x, y);
    const double fxx = secondXX(I, x, y);
    const double fyy = secondYY(I, x, y);
    const double fxy = secondXY(I, x, y);
    return (fx * fx * fxx + 2.0 * fx * fy * fxy + fy * fy * fyy) / (fx * fx + fy * fy + kFlat);
}

double secondAcrossGradient(const RealImage& I, int x, int y) {
    const double fx = centralX(I, x, y);
    const double fy = centralY(I, x, y);
    const double fxx = secondXX(I, x, y);
    const double fyy = secondYY(I, x, y);
    const double fxy = secondXY(I, x, y);
    return (fy * fy * fxx - 2.0 * fx * fy * fxy + fx * fx * fyy) / (fx * fx + fy * fy + kFlat);
}

double minmod(double a, double b) {
    return (sign(a) + sign(b)) * std::min(std::fabs(a), std::fabs(b)) / 2.0;
}

double gradientNormMinmod(const RealImage& I, int x, int y) {
    return gradientNormLimited(I, x, y, minmod);
}

}  // namespace orv
