#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <vector>

#include "images/float_image.h"

namespace orv::test {

/// What AOS deblurring is told.
struct DeblurSettings {
    int iterations = 1;
    int kernel = 3;
    float tau = 0.2f;
    float lambda = 2.0f;
    bool keepObserved = false;
};

using PlainDiffusivity = std::function<float(int, int)>;

inline void plainSmooth(FloatImage& plane, int kernel) {
    if (kernel == 2) {
        plane.smooth5(1, 2, 9, 2, 1);
    } else if (kernel == 5) {
        plane.smooth5(1, 3, 4, 3, 1);
    } else if (kernel == 7) {
        plane.smooth7(1, 3, 5, 6, 5, 3, 1);
    } else {
        plane.smooth3(1, 2, 1);
    }
}

/// Gaussian elimination of a tridiagonal system, in floats.
inline std::vector<float> plainTridiagonal(const std::vector<float>& super,
                                           std::vector<float> diag,
                                           const std::vector<float>& sub,
                                           std::vector<float> b) {
    const std::size_t n = diag.size();
    for (std::size_t i = 1; i < n; ++i) {
        const float factor = sub[i - 1] / diag[i - 1];
        diag[i] -= super[i - 1] * factor;
        b[i] -= factor * b[i - 1];
    }
    b[n - 1] /= diag[n - 1];
    for (std::size_t i = n - 1; i > 0; --i) {
        b[i - 1] = (b[i - 1] - super[i - 1] * b[i]) / diag[i - 1];
    }
    return b;
}

/// One line of AOS deblurring, its cases one after another; g and right take a position.
inline std::vector<float> plainAosLine(int n, float s, const std::function<float(int)>& g,
                                       const std::function<float(int)>& right) {
    const auto minmod = [](float p, float q) {
        if (p > 0.0f && q > 0.0f) {
            return std::min(p, q);
        }
        if (p < 0.0f && q < 0.0f) {
            return -std::min(-p, -q);
        }
        // One of them 0: half the smaller size, which is 0.
        return 0.0f;
    };
    const std::size_t size = static_cast<std::size_t>(n);
    std::vector<float> super(size - 1), diag(size), sub(size - 1), b(size);
    for (int x = 0; x < n; ++x) {
        int j = x;
        float ahead;
        float behind;
        if (x == 0 || x == 1) {
            j = 4 - x;
            ahead = g(j - 1);
            behind = g(j + 1);
        } else if (x == n - 2 || x == n - 1) {
            j = 2 * (n - 2) - x - 1;
            ahead = g(j - 1);
            behind = g(j + 1);
        } else {
            ahead = g(x + 1);
            behind = g(x - 1);
        }
        const std::size_t at = static_cast<std::size_t>(x);
        const float m1 = minmod(ahead, g(j));
        const float m2 = minmod(behind, g(j));
        if (x < n - 2) {
            super[at] = -m2 * s;
        }
        if (x == 0) {
            diag[at] = m2 * s + 2.0f;
        } else if (x == n - 1) {
            diag[at] = m1 * s + 2.0f;
        } else {
            diag[at] = (m2 + m1) * s + 2.0f;
        }
        if (x > 0) {
            sub[at - 1] = -m1 * s;
        }
        b[at] = right(j);
    }
    return plainTridiagonal(super, diag, sub, b);
}

/// Both sweeps over a plane: the rows write, the columns add.
inline void plainAosSweeps(float tau, const PlainDiffusivity& g, const PlainDiffusivity& right,
                           FloatImage& target) {
    const float s = 2.0f * (2.0f * tau);
    for (int y = 0; y < target.height(); ++y) {
        const std::vector<float> line = plainAosLine(
            target.width(), s, [&](int i) { return g(i, y); },
            [&](int i) { return right(i, y); });
        for (int x = 0; x < target.width(); ++x) {
            target.row(x)[y] = line[static_cast<std::size_t>(x)];
        }
    }
    for (int x = 0; x < target.width(); ++x) {
        const std::vector<float> line = plainAosLine(
            target.height(), s, [&](int i) { return g(x, i); },
            [&](int i) { return right(x, i); });
        for (int y = 0; y < target.height(); ++y) {
            target.row(x)[y] += line[static_cast<std::size_t>(y)];
        }
    }
}

/// AOS deblurring of a plane with a diffusivity by position, clamped to 0 to 255.
inline FloatImage plainDeblurring(
    const DeblurSettings& settings, const FloatImage& source,
    const PlainDiffusivity& g = [](int, int) { return 1.0f; }) {
    FloatImage target(source);
    FloatImage v(source);
    FloatImage w(source);
    if (!settings.keepObserved) {
        plainSmooth(w, settings.kernel);
    }
    const auto smoothTwice = [&] {
        plainSmooth(v, settings.kernel);
        plainSmooth(v, settings.kernel);
    };
    smoothTwice();
    const auto right = [&](int x, int y) {
        return source.row(x)[y] - (v.row(x)[y] - w.row(x)[y]) * settings.lambda * settings.tau;
    };
    for (int i = 0; i < settings.iterations; ++i) {
        plainAosSweeps(settings.tau, g, right, target);
        if (i < settings.iterations - 1) {
            smoothTwice();
        }
    }
    target.clamp(0.0f, 255.0f);
    return target;
}

}  // namespace orv::test
