#pragma once

#include <array>
#include <cmath>

#include "images/curvature_flow.h"
#include "images/real_image_differences.h"

namespace orv::test {

// The curvature flows sample by sample on two planes, straight from their formulas.

inline double plainLimited(double v) {
    if (v < 0.0) {
        return 0.0;
    }
    return v > 255.0 ? 255.0 : v;
}

inline double plainD(const RealImage& I, int x, int y) {
    const double fx = centralX(I, x, y);
    const double fy = centralY(I, x, y);
    return 1.0 + fx * fx + fy * fy;
}

inline double plainTerm(CurvatureFlow flow, const RealImage& I, int x, int y) {
    const double fx = centralX(I, x, y);
    const double fy = centralY(I, x, y);
    const double n = (1.0 + fy * fy) * secondXX(I, x, y) - 2.0 * fx * fy * secondXY(I, x, y) +
                     (1.0 + fx * fx) * secondYY(I, x, y);
    const double d = plainD(I, x, y);
    switch (flow) {
        case CurvatureFlow::Beltrami:
            return n / (d * d);
        case CurvatureFlow::PeronaMalik:
            return n / (d * std::sqrt(d));
        case CurvatureFlow::MeanCurvature:
            break;
    }
    return n / d;
}

inline double plainGeodesic(const RealImage& I, int x, int y) {
    const auto g = [&](int i, int j) { return 1.0 / plainD(I, i, j); };
    return (g(x + 1, y) - g(x - 1, y)) / 2.0 * centralX(I, x, y) +
           (g(x, y + 1) - g(x, y - 1)) / 2.0 * centralY(I, x, y);
}

/// The driver of one plane with a reference plane that starts as zero.
inline void plainFlow(CurvatureFlow flow, bool geodesic, double coeff, double cgrad,
                      int iterations, RealImage& working) {
    const int margin = geodesic ? 2 : 1;
    RealImage reference(working.width(), working.height());
    for (int i = 0; i < iterations; ++i) {
        for (int x = margin; x < working.width() - margin; ++x) {
            for (int y = margin; y < working.height() - margin; ++y) {
                double& sample = working.row(x)[y];
                const double term = coeff * plainTerm(flow, reference, x, y);
                sample =
                    geodesic
                        ? plainLimited(term + cgrad * plainGeodesic(reference, x, y) + sample)
                        : plainLimited(term + sample);
            }
        }
        reference.assign(working);
    }
}

/// The increment of channel `own` in the full colour Beltrami flow.
inline double plainIncrement(const RealImage3& I, int own, int x, int y) {
    using Values = std::array<double, 3>;
    Values p, q, a, m, c;
    for (int k = 0; k < 3; ++k) {
        const auto i = static_cast<std::size_t>(k);
        p[i] = centralX(I.plane(k), x, y);
        q[i] = centralY(I.plane(k), x, y);
        a[i] = secondXX(I.plane(k), x, y);
        m[i] = secondXY(I.plane(k), x, y);
        c[i] = secondYY(I.plane(k), x, y);
    }
    const auto sum = [](const Values& s, const Values& t) {
        return s[0] * t[0] + s[1] * t[1] + s[2] * t[2];
    };
    const double g11 = 1.0 + sum(p, p);
    const double g22 = 1.0 + sum(q, q);
    const double g12 = sum(p, q);
    const double det = g11 * g22 - g12 * g12;
    const double g11x = 2.0 * sum(a, p);
    const double g11y = 2.0 * sum(m, p);
    const double g22x = 2.0 * sum(m, q);
    const double g22y = 2.0 * sum(c, q);
    const double g12x = sum(a, q) + sum(m, p);
    const double g12y = sum(c, p) + sum(m, q);
    const double detx = g22x * g11 + g11x * g22 - 2.0 * g12x * g12;
    const double dety = g11y * g22 + g22y * g11 - 2.0 * g12y * g12;
    if (det <= 0.0) {
        return 0.0;
    }
    const auto k = static_cast<std::size_t>(own);
    return ((g22 * a[k] - g12 * m[k]) + (g22x * p[k] - g12x * q[k]) +
            (g11 * c[k] - g12 * m[k]) + (g11y * q[k] - g12y * p[k]) -
            ((g11 * q[k] - g12 * p[k]) * dety + (g22 * p[k] - g12 * q[k]) * detx) /
                (2.0 * det)) /
           det;
}

/// The full colour Beltrami flow with increments on planes of their own.
inline void plainFullColor(double coeff, int iterations, RealImage3& planes) {
    for (int i = 0; i < iterations; ++i) {
        RealImage3 increments(planes.width(), planes.height());
        for (int k = 0; k < 3; ++k) {
            for (int x = 2; x < planes.width() - 2; ++x) {
                for (int y = 2; y < planes.height() - 2; ++y) {
                    increments.plane(k).row(x)[y] = plainIncrement(planes, k, x, y);
                }
            }
        }
        for (int k = 0; k < 3; ++k) {
            RealImage& plane = planes.plane(k);
            for (std::size_t at = 0; at < plane.sampleCount(); ++at) {
                plane.data()[at] =
                    plainLimited(coeff * increments.plane(k).data()[at] + plane.data()[at]);
            }
        }
    }
}

}  // namespace orv::test
