#pragma once

#include <algorithm>
#include <cmath>

#include "base/elementary.h"
#include "images/real_image.h"

namespace orv::test {

// The formulas of the shock filter written out sample by sample.

inline double plainSign(double a) {
    return a > 0.0 ? 1.0 : (a < 0.0 ? -1.0 : 0.0);
}

inline double plainMinmod(double a, double b) {
    return (plainSign(a) + plainSign(b)) * std::min(std::fabs(a), std::fabs(b)) / 2.0;
}

/// The speed of shock method 0 to 3 at (x, y) in a step; `limiter` joins the one-sided
/// differences.
template <class Limiter>
double plainShockValue(int method, const RealImage& I, int x, int y, double weight,
                       double scale, int step, Limiter limiter) {
    const auto at = [&](int dx, int dy) { return I.row(x + dx)[y + dy]; };
    const double c = at(0, 0);
    const double fx = (at(1, 0) - at(-1, 0)) / 2.0;
    const double fy = (at(0, 1) - at(0, -1)) / 2.0;
    const double fxx = at(1, 0) - 2.0 * c + at(-1, 0);
    const double fyy = at(0, 1) - 2.0 * c + at(0, -1);
    const double fxy = ((at(-1, -1) + at(1, 1)) - (at(1, -1) + at(-1, 1))) / 4.0;
    const double flat = fx * fx + fy * fy + 0.00000001;
    const double eta = (fx * fx * fxx + 2.0 * fx * fy * fxy + fy * fy * fyy) / flat;
    const double xi = (fy * fy * fxx - 2.0 * fx * fy * fxy + fx * fx * fyy) / flat;
    const double mx = limiter(c - at(-1, 0), at(1, 0) - c);
    const double my = limiter(c - at(0, -1), at(0, 1) - c);
    const double g = std::sqrt(mx * mx + my * my + 0.000000000001);
    const double oneOverPi = 1.0 / (4.0 * std::atan(1.0));
    switch (method) {
        case 1:
            return plainSign(g) * weight * xi - plainSign(eta) * g;
        case 2:
            return -2.0 * oneOverPi * elementaryAtan(step * scale * eta) * g;
        case 3:
            return weight * xi - 2.0 * oneOverPi * elementaryAtan(step * scale * eta) * g;
        default:
            return -plainSign(eta) * g;
    }
}

/// target = target + timeStep value(work), limited, wherever `selects(x, y)` in the interior.
template <class Limiter, class Selects>
void plainShockStep(int method, const RealImage& work, RealImage& target, double timeStep,
                    double weight, double scale, int step, Limiter limiter, Selects selects) {
    for (int x = 1; x < work.width() - 1; ++x) {
        for (int y = 1; y < work.height() - 1; ++y) {
            if (!selects(x, y)) {
                continue;
            }
            const double v =
                target.row(x)[y] +
                timeStep * plainShockValue(method, work, x, y, weight, scale, step, limiter);
            target.row(x)[y] = v < 0.0 ? 0.0 : (v > 255.0 ? 255.0 : v);
        }
    }
}

/// All steps over a whole plane, from a copy of the source.
inline RealImage plainShock(int method, const RealImage& source, int iterations,
                            double timeStep, double weight = 0.2, double scale = 1.0) {
    RealImage target(source);
    RealImage work(source);
    for (int i = 1; i <= iterations; ++i) {
        plainShockStep(method, work, target, timeStep, weight, scale, i, plainMinmod,
                       [](int, int) { return true; });
        work.assign(target);
    }
    return target;
}

}  // namespace orv::test
