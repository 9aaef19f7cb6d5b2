// Bodies of the colour kernels: plain loops, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/elementary_functions.inl"

constexpr std::size_t kSumLanes = 8;
constexpr std::size_t kBlock = 256;
constexpr int kWindowBlock = 512;

constexpr std::size_t smaller(std::size_t a, std::size_t b) {
    return a < b ? a : b;
}

constexpr int smaller(int a, int b) {
    return a < b ? a : b;
}

constexpr int larger(int a, int b) {
    return a > b ? a : b;
}

constexpr std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

void scaleIn(const double* in, double offset, double* out, std::size_t n) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        out[i] = (in[i] + offset) / 256.0;
    }
}

void multiply(const double* const* in, const ColourRows& rows, double* const* out,
              std::size_t n) {
    const double* const in0 = in[0];
    const double* const in1 = in[1];
    const double* const in2 = in[2];
    double* const out0 = out[0];
    double* const out1 = out[1];
    double* const out2 = out[2];
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        const double a = in0[i];
        const double b = in1[i];
        const double c = in2[i];
        out0[i] = rows[0][0] * a + rows[1][0] * b + rows[2][0] * c;
        out1[i] = rows[0][1] * a + rows[1][1] * b + rows[2][1] * c;
        out2[i] = rows[0][2] * a + rows[1][2] * b + rows[2][2] * c;
    }
}

void multiplyBy(double* samples, double factor, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        samples[i] *= factor;
    }
}

inline bool allWithin(const double* samples, double lowest, double highest, std::size_t n) {
    long long outside = 0;
    for (std::size_t i = 0; i < n; ++i) {
        outside |= samples[i] >= lowest && samples[i] <= highest ? 0 : 1;
    }
    return outside == 0;
}

// The forms for a range have the same bits there and leave out the special values, which a photo
// hardly has.
void logsOf(const double* samples, double* logs, std::size_t n) {
    if (allWithin(samples, 0x1p-1022, 0x1.fffffffffffffp1023, n)) {
        ORV_LANE_LOOP
        for (std::size_t i = 0; i < n; ++i) {
            logs[i] = log10InRange(samples[i]);
        }
        return;
    }
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        logs[i] = log10Of(samples[i]);
    }
}

void powersOf(const double* exponents, double* powers, std::size_t n) {
    if (allWithin(exponents, -307.0, 308.0, n)) {
        ORV_LANE_LOOP
        for (std::size_t i = 0; i < n; ++i) {
            powers[i] = exp10InRange(exponents[i]);
        }
        return;
    }
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        powers[i] = exp10Of(exponents[i]);
    }
}

// One function a loop, on a block that stays in the nearest cache: the registers of a target
// don't hold three logarithms at once.
void multiplyLogs(const double* const* in, const ColourRows& rows, const double* scale,
                  double* const* out, std::size_t n) {
    double logs[3][kBlock];
    const double* const from[3] = {logs[0], logs[1], logs[2]};
    for (std::size_t start = 0; start < n; start += kBlock) {
        const std::size_t count = smaller(kBlock, n - start);
        for (int k = 0; k < 3; ++k) {
            logsOf(in[k] + start, logs[k], count);
        }
        double* const to[3] = {out[0] + start, out[1] + start, out[2] + start};
        multiply(from, rows, to, count);
        for (int k = 0; k < 3; ++k) {
            multiplyBy(to[k], scale[k], count);
        }
    }
}

void powersOfProduct(const double* const* in, const double* scale, const ColourRows& rows,
                     double* const* out, std::size_t n) {
    double scaled[3][kBlock];
    double* const to[3] = {scaled[0], scaled[1], scaled[2]};
    for (std::size_t start = 0; start < n; start += kBlock) {
        const std::size_t count = smaller(kBlock, n - start);
        for (int k = 0; k < 3; ++k) {
            const double* const samples = in[k] + start;
            ORV_LANE_LOOP
            for (std::size_t i = 0; i < count; ++i) {
                scaled[k][i] = samples[i] * scale[k];
            }
        }
        multiply(to, rows, to, count);
        for (int k = 0; k < 3; ++k) {
            powersOf(scaled[k], out[k] + start, count);
        }
    }
}

void addSums(const double* samples, std::size_t n, LaneSums& sums) {
    LaneSums lanes = sums;
    std::size_t i = 0;
    for (; i + kSumLanes <= n; i += kSumLanes) {
        for (std::size_t lane = 0; lane < kSumLanes; ++lane) {
            const double v = samples[i + lane];
            lanes.sum[lane] += v;
            lanes.squares[lane] += v * v;
        }
    }
    for (std::size_t lane = 0; i + lane < n; ++lane) {
        const double v = samples[i + lane];
        lanes.sum[lane] += v;
        lanes.squares[lane] += v * v;
    }
    sums = lanes;
}

void transfer(double* samples, double ratio, double mean, double newMean, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        samples[i] = ratio * (samples[i] - mean) + newMean;
    }
}

void scaleOut(double* samples, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        const double v = samples[i] * 256.0;
        const double raised = v > 0.0 ? v : 0.0;
        samples[i] = raised < 255.0 ? raised : 255.0;
    }
}

inline double scoreOf(double sum, double squares, double n) {
    const double mean = sum / n;
    const double variance = squares / n - mean * mean;
    const double deviation = __builtin_sqrt(variance < 0.0 ? 0.0 : variance);
    return (deviation + mean) * 0.5;
}

/// One window that may reach over the edge of the plane.
double clippedScore(const WindowColumn& column, int y) {
    const int lastX = smaller(column.x + column.half, column.width);
    const int firstY = larger(y - column.half, 0);
    const int lastY = smaller(y + column.half, column.height);
    double sum = 0.0;
    double squares = 0.0;
    int n = 0;
    for (int x = larger(column.x - column.half, 0); x < lastX; ++x) {
        const double* const samples = column.plane + sizeOf(x) * sizeOf(column.height);
        for (int at = firstY; at < lastY; ++at) {
            sum += samples[at];
            squares += samples[at] * samples[at];
            ++n;
        }
    }
    return scoreOf(sum, squares, n);
}

/// Adds the `rows` samples of one column to the windows of `count` neighbouring y.
template <int Rows>
inline void addWindowRows(const double* samples, int rows, double* sum, double* squares,
                          int count) {
    const int steps = Rows > 0 ? Rows : rows;
    ORV_LANE_LOOP
    for (int y = 0; y < count; ++y) {
        double s = sum[y];
        double q = squares[y];
        for (int j = 0; j < steps; ++j) {
            const double v = samples[y + j];
            s += v;
            q += v * v;
        }
        sum[y] = s;
        squares[y] = q;
    }
}

/// The windows around y to y + count - 1, whole in y.
void wholeScores(const WindowColumn& column, int y, int count, double* scores) {
    double sum[kWindowBlock];
    double squares[kWindowBlock];
    for (int i = 0; i < count; ++i) {
        sum[i] = 0.0;
        squares[i] = 0.0;
    }
    const int rows = 2 * column.half;
    const int firstX = larger(column.x - column.half, 0);
    const int lastX = smaller(column.x + column.half, column.width);
    for (int x = firstX; x < lastX; ++x) {
        const double* const samples =
            column.plane + sizeOf(x) * sizeOf(column.height) + sizeOf(y - column.half);
        if (rows == 6) {
            addWindowRows<6>(samples, rows, sum, squares, count);
        } else {
            addWindowRows<0>(samples, rows, sum, squares, count);
        }
    }
    const double n = (lastX - firstX) * rows;
    ORV_LANE_LOOP
    for (int i = 0; i < count; ++i) {
        scores[i] = scoreOf(sum[i], squares[i], n);
    }
}

void windowScores(const WindowColumn& column, double* scores) {
    const int firstWhole = smaller(column.half, column.height);
    const int lastWhole = larger(column.height - column.half + 1, firstWhole);
    for (int y = 0; y < firstWhole; ++y) {
        scores[y] = clippedScore(column, y);
    }
    for (int y = firstWhole; y < lastWhole; y += kWindowBlock) {
        wholeScores(column, y, smaller(kWindowBlock, lastWhole - y), scores + y);
    }
    for (int y = lastWhole; y < column.height; ++y) {
        scores[y] = clippedScore(column, y);
    }
}

}  // namespace

extern const ColourKernels kColourKernels;
const ColourKernels kColourKernels = {scaleIn, multiply, multiplyLogs, powersOfProduct,
                                      addSums, transfer, scaleOut,     windowScores};

}  // namespace orv::ORV_KERNEL_NAMESPACE
