// Bodies of the table in susan_kernels.h: plain loops, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/elementary_functions.inl"

/// 2^y for y up to 0, with a relative error below 3e-6; below -125 it stays at 2^-125.
inline float powerOfTwo(float y) {
    constexpr float kLowest = -125.0f;
    // 1.5 x 2^23: added and taken away again, it rounds to a whole number.
    constexpr float kRounding = 12582912.0f;
    const float bounded = y > kLowest ? y : kLowest;
    const float shifted = bounded + kRounding;
    const float f = bounded - (shifted - kRounding);
    // Least relative error over [-1/2, 1/2].
    const float p =
        (((0.009570102207362652f * f + 0.05591786280274391f) * f + 0.240247443318367f) * f +
         0.6931217908859253f) *
            f +
        0.9999992847442627f;
    unsigned whole;
    unsigned bits;
    __builtin_memcpy(&whole, &shifted, sizeof whole);
    __builtin_memcpy(&bits, &p, sizeof bits);
    bits += whole << 23U;
    float power;
    __builtin_memcpy(&power, &bits, sizeof power);
    return power;
}

/// The seven lines by value: a pointer table in memory could be what a store to the result
/// changes, as far as the compiler can tell.
struct Lines {
    explicit Lines(const float* const* lines)
        : at{lines[0], lines[1], lines[2], lines[3], lines[4], lines[5], lines[6]} {}

    const float* at[2 * kSusanReach + 1];
};

/// Sums of one sample of bytes.
struct ByteSums {
    float weights = 0.0f;      ///< sum of w
    float differences = 0.0f;  ///< sum of w d
    float sizes = 0.0f;        ///< sum of |w d|, to which the error is in proportion
};

template <int Dx, int Dy, int Stride>
inline void take(const Lines& lines, int i, float centre, const SusanExponents& exponents,
                 ByteSums& sums) {
    const float d = lines.at[kSusanReach + Dy][i + Dx * Stride] - centre;
    const float w =
        powerOfTwo(d * d * exponents.quadratic + exponents.spatial[Dx * Dx + Dy * Dy]);
    const float wd = w * d;
    sums.weights += w;
    sums.differences += wd;
    sums.sizes += __builtin_fabsf(wd);
}

/// The whole disc without its centre and without (2, -2), which the mask lacks.
template <int Stride>
inline ByteSums byteSums(const Lines& lines, int i, const SusanExponents& e) {
    ByteSums s;
    const float c = lines.at[kSusanReach][i];
    take<-1, -3, Stride>(lines, i, c, e, s);
    take<0, -3, Stride>(lines, i, c, e, s);
    take<1, -3, Stride>(lines, i, c, e, s);
    take<-2, -2, Stride>(lines, i, c, e, s);
    take<-1, -2, Stride>(lines, i, c, e, s);
    take<0, -2, Stride>(lines, i, c, e, s);
    take<1, -2, Stride>(lines, i, c, e, s);
    take<-3, -1, Stride>(lines, i, c, e, s);
    take<-2, -1, Stride>(lines, i, c, e, s);
    take<-1, -1, Stride>(lines, i, c, e, s);
    take<0, -1, Stride>(lines, i, c, e, s);
    take<1, -1, Stride>(lines, i, c, e, s);
    take<2, -1, Stride>(lines, i, c, e, s);
    take<3, -1, Stride>(lines, i, c, e, s);
    take<-3, 0, Stride>(lines, i, c, e, s);
    take<-2, 0, Stride>(lines, i, c, e, s);
    take<-1, 0, Stride>(lines, i, c, e, s);
    take<1, 0, Stride>(lines, i, c, e, s);
    take<2, 0, Stride>(lines, i, c, e, s);
    take<3, 0, Stride>(lines, i, c, e, s);
    take<-3, 1, Stride>(lines, i, c, e, s);
    take<-2, 1, Stride>(lines, i, c, e, s);
    take<-1, 1, Stride>(lines, i, c, e, s);
    take<0, 1, Stride>(lines, i, c, e, s);
    take<1, 1, Stride>(lines, i, c, e, s);
    take<2, 1, Stride>(lines, i, c, e, s);
    take<3, 1, Stride>(lines, i, c, e, s);
    take<-2, 2, Stride>(lines, i, c, e, s);
    take<-1, 2, Stride>(lines, i, c, e, s);
    take<0, 2, Stride>(lines, i, c, e, s);
    take<1, 2, Stride>(lines, i, c, e, s);
    take<2, 2, Stride>(lines, i, c, e, s);
    take<-1, 3, Stride>(lines, i, c, e, s);
    take<0, 3, Stride>(lines, i, c, e, s);
    take<1, 3, Stride>(lines, i, c, e, s);
    return s;
}

// The error of a weight is at most 2.3e-5 of it: 475 half units of the exponent, whose parts
// stay below 125, and the polynomial's. Twice that, for both sums, and 35 roundings each give
// 5.2e-5 sizes / weights in the quotient.
constexpr float kRelativeError = 6.1e-5f;
// Closer to a whole number, in grey levels, the rounding of c + o may decide in double
// precision too.
constexpr float kRoundingError = 2.0e-6f;
// Above what the weights add that stay at 2^-125.
constexpr float kLeastWeight = 1.0e-20f;

template <int Stride>
void byteRow(const float* const* table, int count, const SusanExponents& given,
             unsigned char* out, unsigned char* unsure) {
    constexpr float kRounding = 12582912.0f;
    const Lines lines(table);
    const SusanExponents exponents = given;
    ORV_LANE_LOOP
    for (int i = 0; i < count; ++i) {
        const ByteSums s = byteSums<Stride>(lines, i, exponents);
        const float o = s.differences / s.weights;
        const float nearest = (o + kRounding) - kRounding;
        const float below = nearest > o ? nearest - 1.0f : nearest;
        const float error =
            kRelativeError * s.sizes + kRoundingError * s.weights + kLeastWeight;
        const bool close = __builtin_fabsf(o - nearest) * s.weights <= error;
        // Without any difference o is exactly 0.
        unsure[i] = static_cast<unsigned char>((close ? 1 : 0) & (s.sizes > 0.0f ? 1 : 0));
        out[i] = static_cast<unsigned char>(static_cast<int>(lines.at[kSusanReach][i] + below));
    }
}

/// Sums of one sample of a plane.
struct PlaneSums {
    double weights = 0.0;
    double differences = 0.0;
};

template <int Dx, int Dy>
inline void takeExactly(const Lines& lines, int i, double centre,
                        const SusanPlaneWeights& weights, PlaneSums& sums) {
    const double difference = static_cast<double>(lines.at[kSusanReach + Dx][i + Dy]) - centre;
    const double d = difference * weights.inverse;
    const double w = expOf(-(d * d)) * weights.spatial[Dx * Dx + Dy * Dy];
    sums.weights += w;
    sums.differences += w * difference;
}

/// The same disc in the order of the mask: the order of the sums is part of the result.
inline double planeValue(const Lines& lines, int i, const SusanPlaneWeights& t) {
    PlaneSums s;
    const double c = lines.at[kSusanReach][i];
    takeExactly<-3, -1>(lines, i, c, t, s);
    takeExactly<-3, 0>(lines, i, c, t, s);
    takeExactly<-3, 1>(lines, i, c, t, s);
    takeExactly<-2, -2>(lines, i, c, t, s);
    takeExactly<-2, -1>(lines, i, c, t, s);
    takeExactly<-2, 0>(lines, i, c, t, s);
    takeExactly<-2, 1>(lines, i, c, t, s);
    takeExactly<-2, 2>(lines, i, c, t, s);
    takeExactly<-1, -3>(lines, i, c, t, s);
    takeExactly<-1, -2>(lines, i, c, t, s);
    takeExactly<-1, -1>(lines, i, c, t, s);
    takeExactly<-1, 0>(lines, i, c, t, s);
    takeExactly<-1, 1>(lines, i, c, t, s);
    takeExactly<-1, 2>(lines, i, c, t, s);
    takeExactly<-1, 3>(lines, i, c, t, s);
    takeExactly<0, -3>(lines, i, c, t, s);
    takeExactly<0, -2>(lines, i, c, t, s);
    takeExactly<0, -1>(lines, i, c, t, s);
    takeExactly<0, 1>(lines, i, c, t, s);
    takeExactly<0, 2>(lines, i, c, t, s);
    takeExactly<0, 3>(lines, i, c, t, s);
    takeExactly<1, -3>(lines, i, c, t, s);
    takeExactly<1, -2>(lines, i, c, t, s);
    takeExactly<1, -1>(lines, i, c, t, s);
    takeExactly<1, 0>(lines, i, c, t, s);
    takeExactly<1, 1>(lines, i, c, t, s);
    takeExactly<1, 2>(lines, i, c, t, s);
    takeExactly<1, 3>(lines, i, c, t, s);
    takeExactly<2, -1>(lines, i, c, t, s);
    takeExactly<2, 0>(lines, i, c, t, s);
    takeExactly<2, 1>(lines, i, c, t, s);
    takeExactly<2, 2>(lines, i, c, t, s);
    takeExactly<3, -1>(lines, i, c, t, s);
    takeExactly<3, 0>(lines, i, c, t, s);
    takeExactly<3, 1>(lines, i, c, t, s);
    const double value = c + s.differences / s.weights;
    return s.weights == 0.0 ? 0.0 : value;
}

/// The float next to v on the side of zero, or v itself.
inline float towardZero(double v) {
    const float nearest = static_cast<float>(v);
    unsigned bits;
    __builtin_memcpy(&bits, &nearest, sizeof bits);
    bits -= __builtin_fabs(static_cast<double>(nearest)) > __builtin_fabs(v) ? 1U : 0U;
    float rounded;
    __builtin_memcpy(&rounded, &bits, sizeof rounded);
    return rounded;
}

void planeColumn(const float* const* table, int count, const SusanPlaneWeights& given,
                 float* out) {
    constexpr int kChunk = 256;
    const Lines lines(table);
    const SusanPlaneWeights weights = given;
    double values[kChunk];
    for (int from = 0; from < count; from += kChunk) {
        const int size = count - from < kChunk ? count - from : kChunk;
        ORV_LANE_LOOP
        for (int i = 0; i < size; ++i) {
            values[i] = planeValue(lines, from + i, weights);
        }
        for (int i = 0; i < size; ++i) {
            out[from + i] = towardZero(values[i]);
        }
    }
}

}  // namespace

extern const SusanKernels kSusanKernels;
constinit const SusanKernels kSusanKernels = {byteRow<3>, byteRow<1>, planeColumn};

}  // namespace orv::ORV_KERNEL_NAMESPACE
