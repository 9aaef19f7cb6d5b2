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

template <int Squared>
inline float weightOf(float d, const SusanExponents& e) {
    return powerOfTwo(d * d * e.quadratic + e.spatial[Squared]);
}

template <int Squared>
inline double weightOf(double difference, const SusanPlaneWeights& w) {
    const double d = difference * w.inverse;
    return expOf(-(d * d)) * w.spatial[Squared];
}

/// The row in a slot for the neighbour `Along` pixels on, `Line` lines on.
constexpr int rowOf(int line, int along) {
    switch (line) {
        case 0:
            return along - 1;
        case 1:
            return 3 + along + 3;
        case 2:
            return 10 + along + 2;
        default:
            return 15 + along + 1;
    }
}

template <int Line, int Along, int Stride, class T, class Weights>
inline void weigh(const T* const* lines, int count, const Weights& given, T* slot) {
    using Strip = SusanStrip<T>;
    const Weights weights = given;
    // From a whole margin in front, so that stores are aligned.
    const T* const here = lines[0] - Strip::kMargin;
    const T* const there = lines[Line] - Strip::kMargin + Along * Stride;
    T* const out = slot + rowOf(Line, Along) * Strip::kRow;
    const int all = count + 2 * Strip::kMargin;
    ORV_LANE_LOOP
    for (int i = 0; i < all; ++i) {
        out[i] = weightOf<Line * Line + Along * Along>(there[i] - here[i], weights);
    }
}

template <int Stride, class T, class Weights>
void weighLine(const T* const* lines, int count, const Weights& weights, T* slot) {
    weigh<0, 1, Stride>(lines, count, weights, slot);
    weigh<0, 2, Stride>(lines, count, weights, slot);
    weigh<0, 3, Stride>(lines, count, weights, slot);
    weigh<1, -3, Stride>(lines, count, weights, slot);
    weigh<1, -2, Stride>(lines, count, weights, slot);
    weigh<1, -1, Stride>(lines, count, weights, slot);
    weigh<1, 0, Stride>(lines, count, weights, slot);
    weigh<1, 1, Stride>(lines, count, weights, slot);
    weigh<1, 2, Stride>(lines, count, weights, slot);
    weigh<1, 3, Stride>(lines, count, weights, slot);
    weigh<2, -2, Stride>(lines, count, weights, slot);
    weigh<2, -1, Stride>(lines, count, weights, slot);
    weigh<2, 0, Stride>(lines, count, weights, slot);
    weigh<2, 1, Stride>(lines, count, weights, slot);
    weigh<2, 2, Stride>(lines, count, weights, slot);
    weigh<3, -1, Stride>(lines, count, weights, slot);
    weigh<3, 0, Stride>(lines, count, weights, slot);
    weigh<3, 1, Stride>(lines, count, weights, slot);
}

/// The lines and slots by value: a pointer table in memory could be what a store to the result
/// changes, as far as the compiler can tell.
template <class T>
struct Strips {
    Strips(const T* const* lines, const T* const* slots)
        : line{lines[0], lines[1], lines[2], lines[3], lines[4], lines[5], lines[6]},
          slot{slots[0], slots[1], slots[2], slots[3]} {}

    const T* line[2 * kSusanReach + 1];
    const T* slot[kSusanReach + 1];
};

/// Sums of one sample of bytes.
struct ByteSums {
    float weights = 0.0f;      ///< sum of w
    float differences = 0.0f;  ///< sum of w d
    float sizes = 0.0f;        ///< sum of |w d|, to which the error is in proportion

    inline void take(float w, float d) {
        const float wd = w * d;
        weights += w;
        differences += wd;
        sizes += __builtin_fabsf(wd);
    }
};

/// Sums of one sample of a plane.
struct PlaneSums {
    double weights = 0.0;
    double differences = 0.0;

    inline void take(double w, double d) {
        weights += w;
        differences += w * d;
    }
};

template <int Line, int Along, int Stride, class T, class Sums>
inline void take(const Strips<T>& s, int i, T centre, Sums& sums) {
    constexpr bool kForward = Line > 0 || (Line == 0 && Along > 0);
    // A neighbour that came before holds the weight in its own slot.
    constexpr int kSlotIndex = kForward ? kSusanReach : kSusanReach + Line;
    constexpr int kRowIndex = kForward ? rowOf(Line, Along) : rowOf(-Line, -Along);
    constexpr int kShift = kForward ? 0 : Along * Stride;
    const T w = s.slot[kSlotIndex]
                      [kRowIndex * SusanStrip<T>::kRow + SusanStrip<T>::kMargin + kShift + i];
    sums.take(w, s.line[kSusanReach + Line][i + Along * Stride] - centre);
}

/// The neighbours on the line `Line`, from `From` to `To` pixels on.
template <int Line, int From, int To, int Stride, class T, class Sums>
inline void takeRange(const Strips<T>& s, int i, T centre, Sums& sums) {
    if constexpr (From <= To) {
        if constexpr (Line != 0 || From != 0) {
            take<Line, From, Stride>(s, i, centre, sums);
        }
        takeRange<Line, From + 1, To, Stride>(s, i, centre, sums);
    }
}

/// The whole disc but for its centre and one corner, which is at (x, y) = (2, -2): the upper
/// end of line -2 where lines are rows, the lower end of line 2 where they are columns.
template <bool LinesAreRows, int Stride, class T, class Sums>
inline Sums sumsOf(const Strips<T>& s, int i) {
    Sums sums;
    const T c = s.line[kSusanReach][i];
    takeRange<-3, -1, 1, Stride>(s, i, c, sums);
    takeRange<-2, -2, LinesAreRows ? 1 : 2, Stride>(s, i, c, sums);
    takeRange<-1, -3, 3, Stride>(s, i, c, sums);
    takeRange<0, -3, 3, Stride>(s, i, c, sums);
    takeRange<1, -3, 3, Stride>(s, i, c, sums);
    takeRange<2, LinesAreRows ? -2 : -1, 2, Stride>(s, i, c, sums);
    takeRange<3, -1, 1, Stride>(s, i, c, sums);
    return sums;
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
void byteRow(const float* const* lines, const float* const* slots, int count,
             unsigned char* out, unsigned char* unsure) {
    constexpr float kRounding = 12582912.0f;
    const Strips<float> strips(lines, slots);
    ORV_LANE_LOOP
    for (int i = 0; i < count; ++i) {
        const ByteSums s = sumsOf<true, Stride, float, ByteSums>(strips, i);
        const float o = s.differences / s.weights;
        const float nearest = (o + kRounding) - kRounding;
        const float below = nearest > o ? nearest - 1.0f : nearest;
        const float error =
            kRelativeError * s.sizes + kRoundingError * s.weights + kLeastWeight;
        const bool close = __builtin_fabsf(o - nearest) * s.weights <= error;
        // Without any difference o is exactly 0.
        unsure[i] = static_cast<unsigned char>((close ? 1 : 0) & (s.sizes > 0.0f ? 1 : 0));
        out[i] =
            static_cast<unsigned char>(static_cast<int>(strips.line[kSusanReach][i] + below));
    }
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

void planeColumn(const double* const* lines, const double* const* slots, int count,
                 float* out) {
    double values[SusanStrip<double>::kStrip];
    const Strips<double> strips(lines, slots);
    ORV_LANE_LOOP
    for (int i = 0; i < count; ++i) {
        const PlaneSums s = sumsOf<false, 1, double, PlaneSums>(strips, i);
        const double value = strips.line[kSusanReach][i] + s.differences / s.weights;
        values[i] = s.weights == 0.0 ? 0.0 : value;
    }
    for (int i = 0; i < count; ++i) {
        out[i] = towardZero(values[i]);
    }
}

}  // namespace

extern const SusanKernels kSusanKernels;
constinit const SusanKernels kSusanKernels = {
    weighLine<3, float, SusanExponents>,     byteRow<3>,
    weighLine<1, float, SusanExponents>,     byteRow<1>,
    weighLine<1, double, SusanPlaneWeights>, planeColumn};

}  // namespace orv::ORV_KERNEL_NAMESPACE
