// Bodies of retinex_kernels.h: plain loops, compiled once per target.

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

constexpr int kLanes = 8;
constexpr int kGroups = 32;

constexpr std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

double joinLanes(const double* lanes) {
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

void reduceFirstColumn(const double* here, const double* east, double* __restrict target,
                       int n) {
    constexpr double kTwelfth = 0.08333333333333333;
    constexpr double kNinth = 0.1111111111111111;
    target[0] = (4.0 * here[0] + 2.0 * (here[1] + east[0]) + east[1]) * kNinth;
    ORV_LANE_LOOP
    for (int j = 1; j < n; ++j) {
        const int y = 2 * j;
        target[j] = (4.0 * here[y] + 2.0 * (here[y + 1] + here[y - 1] + east[y]) + east[y + 1] +
                     east[y - 1]) *
                    kTwelfth;
    }
}

void reduceColumn(const double* west, const double* here, const double* east,
                  double* __restrict target, int n) {
    constexpr double kTwelfth = 0.08333333333333333;
    target[0] =
        (4.0 * here[0] + 2.0 * (here[1] + east[0] + west[0]) + east[1] + west[1]) * kTwelfth;
    ORV_LANE_LOOP
    for (int j = 1; j < n; ++j) {
        const int y = 2 * j;
        target[j] = (4.0 * here[y] + 2.0 * (here[y + 1] + here[y - 1] + east[y] + west[y]) +
                     east[y + 1] + west[y + 1] + east[y - 1] + west[y - 1]) *
                    0.0625;
    }
}

void reduce(const double* p, int height, double* target, int targetWidth, int targetHeight) {
    if (targetWidth < 1 || targetHeight < 1) {
        return;
    }
    const std::size_t stride = sizeOf(height);
    reduceFirstColumn(p, p + stride, target, targetHeight);
    for (int i = 1; i < targetWidth; ++i) {
        const double* const here = p + 2 * sizeOf(i) * stride;
        reduceColumn(here - stride, here, here + stride,
                     target + sizeOf(i) * sizeOf(targetHeight), targetHeight);
    }
}

inline void stepSamples(double* __restrict l, const double* g, const double* s, double mu,
                        std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        const double v = l[i] + mu * g[i];
        // So written, a v that is not a number gives s.
        l[i] = v > s[i] ? v : s[i];
    }
}

void step(double* l, const double* g, const double* s, double mu, std::size_t n) {
    stepSamples(l, g, s, mu, n);
}

// Three neighbouring columns; the outer ones are null beside the first and the last column.
struct Columns {
    const double* west;
    const double* here;
    const double* east;
};

inline Columns columnsAt(const double* plane, int x, int width, int height) {
    const double* const here = plane + sizeOf(x) * sizeOf(height);
    return {x > 0 ? here - height : nullptr, here, x < width - 1 ? here + height : nullptr};
}

inline bool isInner(const Columns& p) {
    return p.west != nullptr && p.east != nullptr;
}

inline double innerLaplacian(const Columns& p, int y) {
    return p.here[y - 1] + p.here[y + 1] + p.east[y] + p.west[y] - 4.0 * p.here[y];
}

inline double edgeLaplacian(const Columns& p, int y) {
    return p.here[y - 1] + p.here[y + 1] - 2.0 * p.here[y];
}

// Of the first and the last sample of a column.
inline double endLaplacian(const Columns& p, int y) {
    return isInner(p) ? p.west[y] + p.east[y] - 2.0 * p.here[y] : 0.0;
}

inline double direction(double a, double d, double l, double s, const RetinexLevel& level) {
    // quirk: retinex-signs
    return a + (l - s) * level.alpha - (a - d) * level.beta;
}

void gradientColumn(const RetinexLevel& level, int x) {
    const int last = level.height - 1;
    const Columns l = columnsAt(level.l, x, level.width, level.height);
    const Columns s = columnsAt(level.s, x, level.width, level.height);
    double* __restrict g = level.g + sizeOf(x) * sizeOf(level.height);
    const RetinexLevel weights = level;
    for (int y = 0; y <= last; y += last > 0 ? last : 1) {
        g[y] = direction(endLaplacian(l, y), endLaplacian(s, y), l.here[y], s.here[y], weights);
    }
    if (isInner(l)) {
        ORV_LANE_LOOP
        for (int y = 1; y < last; ++y) {
            g[y] = direction(innerLaplacian(l, y), innerLaplacian(s, y), l.here[y], s.here[y],
                             weights);
        }
    } else {
        ORV_LANE_LOOP
        for (int y = 1; y < last; ++y) {
            g[y] = direction(edgeLaplacian(l, y), edgeLaplacian(s, y), l.here[y], s.here[y],
                             weights);
        }
    }
}

struct Lanes {
    double gg[kLanes];
    double gb[kLanes];
};

inline void addSample(Lanes& lanes, std::size_t lane, double g, double b) {
    lanes.gg[lane] += g * g;
    lanes.gb[lane] += g * b;
}

// lanes += x[i] of whole groups; a fixed inner loop over one array, which compilers keep in
// vector registers.
inline void addGroups(double* lanes, const double* x, int n) {
    double sums[kLanes];
    for (int lane = 0; lane < kLanes; ++lane) {
        sums[lane] = lanes[lane];
    }
    for (int i = 0; i < n; i += kLanes) {
        for (int lane = 0; lane < kLanes; ++lane) {
            sums[lane] += x[i + lane];
        }
    }
    for (int lane = 0; lane < kLanes; ++lane) {
        lanes[lane] = sums[lane];
    }
}

// Samples 1 to height - 2 of a column whose sample 0 belongs to lane `phase`.
template <class Laplacian>
inline void addInterior(Lanes& sums, const Columns& g, int height, std::size_t phase,
                        Laplacian laplacian) {
    double squares[kGroups * kLanes];
    double products[kGroups * kLanes];
    int y = 1;
    for (; y < height - 1 && (phase + sizeOf(y)) % kLanes != 0; ++y) {
        addSample(sums, (phase + sizeOf(y)) % kLanes, g.here[y], laplacian(g, y));
    }
    while (y + kLanes <= height - 1) {
        const int left = (height - 1 - y) / kLanes;
        const int n = (left < kGroups ? left : kGroups) * kLanes;
        const double* const here = g.here + y;
        for (int i = 0; i < n; ++i) {
            squares[i] = here[i] * here[i];
            products[i] = here[i] * laplacian(g, y + i);
        }
        addGroups(sums.gg, squares, n);
        addGroups(sums.gb, products, n);
        y += n;
    }
    for (; y < height - 1; ++y) {
        addSample(sums, (phase + sizeOf(y)) % kLanes, g.here[y], laplacian(g, y));
    }
}

void addColumn(Lanes& lanes, const RetinexLevel& level, int x) {
    const int last = level.height - 1;
    const Columns g = columnsAt(level.g, x, level.width, level.height);
    const std::size_t phase = sizeOf(x) * sizeOf(level.height) % kLanes;
    addSample(lanes, phase, g.here[0], endLaplacian(g, 0));
    if (isInner(g)) {
        addInterior(lanes, g, level.height, phase,
                    [](const Columns& p, int y) { return innerLaplacian(p, y); });
    } else {
        addInterior(lanes, g, level.height, phase,
                    [](const Columns& p, int y) { return edgeLaplacian(p, y); });
    }
    if (last > 0) {
        addSample(lanes, (phase + sizeOf(last)) % kLanes, g.here[last], endLaplacian(g, last));
    }
}

void stepColumn(const RetinexLevel& level, double mu, int x) {
    const std::size_t at = sizeOf(x) * sizeOf(level.height);
    stepSamples(level.l + at, level.g + at, level.s + at, mu, sizeOf(level.height));
}

// Column x of G needs l one column ahead, and its Laplacian needs G one column ahead.
RetinexSums sweep(const RetinexLevel& level, double mu, bool stepFirst) {
    Lanes lanes = {};
    if (level.height < 1) {
        return {0.0, 0.0};
    }
    if (stepFirst && level.width > 0) {
        stepColumn(level, mu, 0);
    }
    for (int x = 0; x < level.width; ++x) {
        if (stepFirst && x + 1 < level.width) {
            stepColumn(level, mu, x + 1);
        }
        gradientColumn(level, x);
        if (x > 0) {
            addColumn(lanes, level, x - 1);
        }
    }
    if (level.width > 0) {
        addColumn(lanes, level, level.width - 1);
    }
    return {joinLanes(lanes.gg), joinLanes(lanes.gb)};
}

inline double raised(double v, double floor) {
    return v < floor ? floor : v;
}

void keepSamples(double v, const double* floor, double* target, int from, int height) {
    for (int y = from; y < height; ++y) {
        v = raised(v, floor[y / 2]);
        target[y] = v;
    }
}

void expandAlong(const double* left, int coarseHeight, const double* floor,
                 double* __restrict target) {
    const int last = coarseHeight - 1;
    ORV_LANE_LOOP
    for (int b = 0; b < last; ++b) {
        target[2 * b] = raised(left[b], floor[b]);
        target[2 * b + 1] = raised((left[b + 1] + left[b]) * 0.5, floor[b]);
    }
    target[2 * last] = raised(left[last], floor[last]);
}

void expandBetween(const double* left, const double* right, int coarseHeight,
                   const double* floor, double* __restrict target) {
    const int last = coarseHeight - 1;
    ORV_LANE_LOOP
    for (int b = 0; b < last; ++b) {
        target[2 * b] = raised((right[b] + left[b]) * 0.5, floor[b]);
        target[2 * b + 1] =
            raised((left[b] + left[b + 1] + right[b + 1] + right[b]) * 0.25, floor[b]);
    }
    target[2 * last] = raised((right[last] + left[last]) * 0.5, floor[last]);
}

void expandColumn(const double* left, const double* right, int coarseHeight,
                  const double* floor, double before, double* target, int height) {
    if (left == nullptr) {
        keepSamples(before, floor, target, 0, height);
        return;
    }
    if (right == nullptr) {
        expandAlong(left, coarseHeight, floor, target);
    } else {
        expandBetween(left, right, coarseHeight, floor, target);
    }
    keepSamples(target[2 * coarseHeight - 2], floor, target, 2 * coarseHeight - 1, height);
}

void rescale(const double* x, double offset, double scale, double* y, std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = (x[i] + offset) * scale;
    }
}

void divideInto(const double* x, const double* y, double factor, double* target,
                std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        const double quotient = x[i] / y[i];
        target[i] = (quotient > 1.0 ? 1.0 : quotient) * factor;
    }
}

double largest(const double* x, std::size_t n) {
    double lanes[kLanes];
    for (double& lane : lanes) {
        lane = x[0];
    }
    std::size_t i = 0;
    for (; i + kLanes <= n; i += kLanes) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            lanes[lane] = x[i + lane] > lanes[lane] ? x[i + lane] : lanes[lane];
        }
    }
    double most = lanes[0];
    for (const double lane : lanes) {
        most = lane > most ? lane : most;
    }
    for (; i < n; ++i) {
        most = x[i] > most ? x[i] : most;
    }
    return most;
}

}  // namespace

extern const RetinexKernels kRetinexKernels;
const RetinexKernels kRetinexKernels = {
    reduce, sweep, step, expandColumn, rescale, divideInto, largest,
};

}  // namespace orv::ORV_KERNEL_NAMESPACE
