// Bodies of the table in curvature_kernels.h, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

inline double limited(double v) {
    const double raised = v < 0.0 ? 0.0 : v;
    return raised > 255.0 ? 255.0 : raised;
}

// The differences of one sample.
struct Differences {
    double fx;
    double fy;
    double fxx;
    double fxy;
    double fyy;
};

inline Differences differencesAt(const double* west, const double* here, const double* east,
                                 int y) {
    const double twice = 2.0 * here[y];
    return {(east[y] - west[y]) / 2.0, (here[y + 1] - here[y - 1]) / 2.0,
            east[y] - twice + west[y],
            ((west[y - 1] + east[y + 1]) - (east[y - 1] + west[y + 1])) / 4.0,
            here[y + 1] - twice + here[y - 1]};
}

struct OverSquare {
    static double divisor(double d) { return d * d; }
};
struct OverPower {
    static double divisor(double d) { return d * __builtin_sqrt(d); }
};
struct OverFirst {
    static double divisor(double d) { return d; }
};

template <class Divisor>
inline double termOf(const Differences& f) {
    const double squareX = f.fx * f.fx;
    const double squareY = f.fy * f.fy;
    const double n =
        (1.0 + squareY) * f.fxx - 2.0 * f.fx * f.fy * f.fxy + (1.0 + squareX) * f.fyy;
    return n / Divisor::divisor(1.0 + squareX + squareY);
}

// Of the columns only the east one comes from memory; it is fetched a page ahead. Requests
// stand between blocks, since a loop with one in it isn't vectorised.
constexpr int kBlock = 64;
constexpr int kAhead = 512;
constexpr int kDoublesPerLine = 8;

inline void prefetchBlock(const double* samples) {
    for (int i = 0; i < kBlock; i += kDoublesPerLine) {
        ORV_PREFETCH(samples + i);
    }
}

template <class Divisor>
void plainColumn(const StencilColumns& columns, int height, double coeff, double* eastCopy,
                 double* sample) {
    const double* west = columns.west;
    const double* here = columns.here;
    const double* east = columns.east;
    const int last = height - 1;
    eastCopy[0] = east[0];
    eastCopy[last] = east[last];
    for (int begin = 1; begin < last; begin += kBlock) {
        const int end = begin + kBlock < last ? begin + kBlock : last;
        prefetchBlock(east + begin + kAhead);
        ORV_LANE_LOOP
        for (int y = begin; y < end; ++y) {
            const double term = termOf<Divisor>(differencesAt(west, here, east, y));
            eastCopy[y] = east[y];
            sample[y] = limited(coeff * term + here[y]);
        }
    }
}

template <class Divisor>
void geodesicColumn(const StencilColumns& columns, const StencilColumns& stopping, int height,
                    const CurvatureWeights& weights, double* sample) {
    const double* west = columns.west;
    const double* here = columns.here;
    const double* east = columns.east;
    const double* gWest = stopping.west;
    const double* gHere = stopping.here;
    const double* gEast = stopping.east;
    const double coeff = weights.coeff;
    const double cgrad = weights.cgrad;
    const int end = height - 2;
    ORV_LANE_LOOP
    for (int y = 2; y < end; ++y) {
        const Differences f = differencesAt(west, here, east, y);
        const double gx = (gEast[y] - gWest[y]) / 2.0;
        const double gy = (gHere[y + 1] - gHere[y - 1]) / 2.0;
        const double drift = gx * f.fx + gy * f.fy;
        sample[y] = limited(coeff * termOf<Divisor>(f) + cgrad * drift + sample[y]);
    }
}

void edgeStopping(const StencilColumns& columns, int height, double* g) {
    const double* west = columns.west;
    const double* here = columns.here;
    const double* east = columns.east;
    const int last = height - 1;
    ORV_LANE_LOOP
    for (int y = 1; y < last; ++y) {
        const double fx = (east[y] - west[y]) / 2.0;
        const double fy = (here[y + 1] - here[y - 1]) / 2.0;
        g[y] = 1.0 / (1.0 + fx * fx + fy * fy);
    }
}

// The metric of the picture as a surface, its determinant and their derivatives.
struct Metric {
    double g11;
    double g12;
    double g22;
    double g11y;
    double g12x;
    double g12y;
    double g22x;
    double det;
    double detx;
    double dety;
};

inline double sumOf(double first, double second, double third) {
    return first + second + third;
}

inline Metric metricOf(const Differences& r, const Differences& g, const Differences& b) {
    Metric m;
    m.g11 = 1.0 + sumOf(r.fx * r.fx, g.fx * g.fx, b.fx * b.fx);
    m.g22 = 1.0 + sumOf(r.fy * r.fy, g.fy * g.fy, b.fy * b.fy);
    m.g12 = sumOf(r.fx * r.fy, g.fx * g.fy, b.fx * b.fy);
    m.det = m.g11 * m.g22 - m.g12 * m.g12;
    const double crossX = sumOf(r.fxy * r.fx, g.fxy * g.fx, b.fxy * b.fx);
    const double crossY = sumOf(r.fxy * r.fy, g.fxy * g.fy, b.fxy * b.fy);
    const double g11x = 2.0 * sumOf(r.fxx * r.fx, g.fxx * g.fx, b.fxx * b.fx);
    m.g11y = 2.0 * crossX;
    m.g22x = 2.0 * crossY;
    const double g22y = 2.0 * sumOf(r.fyy * r.fy, g.fyy * g.fy, b.fyy * b.fy);
    m.g12x = sumOf(r.fxx * r.fy, g.fxx * g.fy, b.fxx * b.fy) + crossX;
    m.g12y = sumOf(r.fyy * r.fx, g.fyy * g.fx, b.fyy * b.fx) + crossY;
    m.detx = m.g22x * m.g11 + g11x * m.g22 - 2.0 * m.g12x * m.g12;
    m.dety = m.g11y * m.g22 + g22y * m.g11 - 2.0 * m.g12y * m.g12;
    return m;
}

inline double incrementOf(const Metric& m, const Differences& f) {
    const double slopes =
        ((m.g11 * f.fy - m.g12 * f.fx) * m.dety + (m.g22 * f.fx - m.g12 * f.fy) * m.detx) /
        (2.0 * m.det);
    const double sum = (m.g22 * f.fxx - m.g12 * f.fxy) + (m.g22x * f.fx - m.g12x * f.fy) +
                       (m.g11 * f.fyy - m.g12 * f.fxy) + (m.g11y * f.fy - m.g12y * f.fx) -
                       slopes;
    const double increment = sum / m.det;
    return m.det <= 0.0 ? 0.0 : increment;
}

void fullColor(const StencilColumns* channels, int height, double coeff,
               double* const* samples) {
    const StencilColumns r = channels[0];
    const StencilColumns g = channels[1];
    const StencilColumns b = channels[2];
    double* outR = samples[0];
    double* outG = samples[1];
    double* outB = samples[2];
    const int end = height - 2;
    ORV_LANE_LOOP
    for (int y = 2; y < end; ++y) {
        const Differences fr = differencesAt(r.west, r.here, r.east, y);
        const Differences fg = differencesAt(g.west, g.here, g.east, y);
        const Differences fb = differencesAt(b.west, b.here, b.east, y);
        const Metric m = metricOf(fr, fg, fb);
        outR[y] = limited(coeff * incrementOf(m, fr) + outR[y]);
        outG[y] = limited(coeff * incrementOf(m, fg) + outG[y]);
        outB[y] = limited(coeff * incrementOf(m, fb) + outB[y]);
    }
}

void addAndLimit(double addend, std::size_t count, double* samples) {
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = limited(addend + samples[i]);
    }
}

}  // namespace

extern const CurvatureKernels kCurvatureKernels;
constinit const CurvatureKernels kCurvatureKernels = {
    {plainColumn<OverSquare>, plainColumn<OverPower>, plainColumn<OverFirst>},
    {geodesicColumn<OverSquare>, geodesicColumn<OverPower>, geodesicColumn<OverFirst>},
    edgeStopping,
    fullColor,
    addAndLimit,
};

}  // namespace orv::ORV_KERNEL_NAMESPACE
