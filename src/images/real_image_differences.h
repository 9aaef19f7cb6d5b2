#pragma once

#include <cmath>

#include "images/real_image.h"

namespace orv {

// Finite differences of a plane I at an interior sample: x from 1 to width - 2, y from 1 to
// height - 2. Units are grey levels a pixel, or a pixel squared.

/// (I(x+1, y) - I(x-1, y)) / 2
inline double centralX(const RealImage& I, int x, int y) {
    return (I.row(x + 1)[y] - I.row(x - 1)[y]) / 2.0;
}

/// (I(x, y+1) - I(x, y-1)) / 2
inline double centralY(const RealImage& I, int x, int y) {
    return (I.row(x)[y + 1] - I.row(x)[y - 1]) / 2.0;
}

/// I(x+1, y) - I(x, y)
inline double forwardX(const RealImage& I, int x, int y) {
    return I.row(x + 1)[y] - I.row(x)[y];
}

/// I(x, y+1) - I(x, y)
inline double forwardY(const RealImage& I, int x, int y) {
    return I.row(x)[y + 1] - I.row(x)[y];
}

/// I(x, y) - I(x-1, y)
inline double backwardX(const RealImage& I, int x, int y) {
    return I.row(x)[y] - I.row(x - 1)[y];
}

/// I(x, y) - I(x, y-1)
inline double backwardY(const RealImage& I, int x, int y) {
    return I.row(x)[y] - I.row(x)[y - 1];
}

/// I(x+1, y) - 2 I(x, y) + I(x-1, y)
inline double secondXX(const RealImage& I, int x, int y) {
    return I.row(x + 1)[y] - 2.0 * I.row(x)[y] + I.row(x - 1)[y];
}

/// I(x, y+1) - 2 I(x, y) + I(x, y-1)
inline double secondYY(const RealImage& I, int x, int y) {
    return I.row(x)[y + 1] - 2.0 * I.row(x)[y] + I.row(x)[y - 1];
}

/// ((I(x-1, y-1) + I(x+1, y+1)) - (I(x+1, y-1) + I(x-1, y+1))) / 4
inline double secondXY(const RealImage& I, int x, int y) {
    const double* const west = I.row(x - 1);
    const double* const east = I.row(x + 1);
    return ((west[y - 1] + east[y + 1]) - (east[y - 1] + west[y + 1])) / 4.0;
}

/// Second derivative along the gradient, for f the central differences:
///
///     (fx fx fxx + 2 fx fy fxy + fy fy fyy) / (fx fx + fy fy + 0.00000001)
double secondAlongGradient(const RealImage& I, int x, int y);

/// Second derivative across the gradient, along the level line:
///
///     (fy fy fxx - 2 fx fy fxy + fx fx fyy) / (fx fx + fy fy + 0.00000001)
double secondAcrossGradient(const RealImage& I, int x, int y);

/// (sign(a) + sign(b)) x min(|a|, |b|) / 2, sign(0) being 0.
double minmod(double a, double b);

/// Norm of the gradient with the one-sided differences of each axis joined by a limiter:
///
///     sqrt(m(x) m(x) + m(y) m(y) + 0.000000000001),  m = limiter(backward, forward)
template <class Limiter>
double gradientNormLimited(const RealImage& I, int x, int y, Limiter limiter) {
    const double mx = limiter(backwardX(I, x, y), forwardX(I, x, y));
    const double my = limiter(backwardY(I, x, y), forwardY(I, x, y));
    return std::sqrt(mx * mx + my * my + 0.000000000001);
}

/// gradientNormLimited with minmod.
double gradientNormMinmod(const RealImage& I, int x, int y);

}  // namespace orv
