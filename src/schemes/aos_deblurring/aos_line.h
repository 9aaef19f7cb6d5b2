#pragma once

#include <algorithm>
#include <cmath>

#include "algebra/real_vector.h"
#include "filters/thomas_linear_system.h"

namespace orv {

/// The three diagonals of a line's system, kept over the lines of a sweep.
struct AosLineVectors {
    /// Domain:  n at least 1.
    explicit AosLineVectors(int n) : super(n - 1), diag(n), sub(n - 1) {}

    RealVector super;
    RealVector diag;
    RealVector sub;
};

/// The limited slope of AOS: 0 where the signs differ, else the smaller size.
///
///     (sign(p) + sign(q)) min(|p|, |q|) 0.5,   sign(0) being 0
inline float aosMinmod(float p, float q) {
    const auto sign = [](float v) { return static_cast<float>((v > 0.0f) - (v < 0.0f)); };
    return (sign(p) + sign(q)) * std::min(std::fabs(p), std::fabs(q)) * 0.5f;
}

/// The sample that row x of a line of n reads: mirrored for the first two and the last two.
///
/// Domain:  n at least 6, so that all neighbours of what is read exist.
/// Quirk:   aos-mirrored-ends
inline int aosLineIndex(int x, int n) {
    if (x <= 1) {
        return 4 - x;
    }
    return x < n - 2 ? x : 2 * (n - 2) - x - 1;
}

/// (line percent i) / (iterations lines), truncated: the share of `percent` after i iterations
/// and, in progress values, `line` lines. The product outgrows an int on large pictures.
inline int aosProgressPart(int percent, int i, int iterations, int line = 1, int lines = 1) {
    const long long product = static_cast<long long>(line) * percent * i;
    return static_cast<int>(product / (static_cast<long long>(iterations) * lines));
}

/// Builds the system of one line and solves it; the solution stands in system.x().
///
///     a, b, c = g(j + 1), g(j), g(j - 1)     in mirrored rows g(j - 1), g(j), g(j + 1)
///     m1 = minmod(a, b)     m2 = minmod(c, b)
///     super(x) = -m2 s      diag(x) = (m2 + m1) s + m      sub(x - 1) = -m1 s
///     b(x) = right(j)       j = aosLineIndex(x, n)
///
/// The end rows of diag have one of the two slopes, and super(n - 2) stays 0.
///
/// Shapes:  n rows; `dimensions` is the m of AOS, s = m (m tau).
/// Quirk:   aos-last-super
template <class Diffusivity, class Right>
void solveAosLine(ThomasLinearSystem& system, AosLineVectors& vectors, int n, float s,
                  int dimensions, Diffusivity g, Right right) {
    const float m = static_cast<float>(dimensions);
    RealVector& rightSide = system.b();
    for (int x = 0; x < n; ++x) {
        const int j = aosLineIndex(x, n);
        const bool mirrored = x <= 1 || x >= n - 2;
        const float a = g(mirrored ? j - 1 : j + 1);
        const float b = g(j);
        const float c = g(mirrored ? j + 1 : j - 1);
        const float m1 = aosMinmod(a, b);
        const float m2 = aosMinmod(c, b);
        // quirk: aos-last-super
        if (x < n - 2) {
            vectors.super[x] = -m2 * s;
        }
        const float slopes = x == 0 ? m2 : x == n - 1 ? m1 : m2 + m1;
        vectors.diag[x] = slopes * s + m;
        if (x > 0) {
            vectors.sub[x - 1] = -m1 * s;
        }
        // quirk: aos-mirrored-ends
        rightSide[x] = right(j);
    }
    system.setTriDiagonal(vectors.super, vectors.diag, vectors.sub);
    system.factorise();
}

}  // namespace orv
