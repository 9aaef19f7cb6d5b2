// Bodies of the table in diffusivity_kernels.h: plain loops down a column, compiled once per
// target. The norms repeat the expressions of the GradientNorm classes letter for letter.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/elementary_functions.inl"

struct CentralNorm {
    static inline double at(const ColumnStencil& s, int y) {
        const double dx = (static_cast<double>(s.east[y]) - s.west[y]) * 0.5;
        const double dy = (static_cast<double>(s.here[y + 1]) - s.here[y - 1]) * 0.5;
        return dx * dx + dy * dy;
    }
};

inline double signOf(double a) {
    return a > 0.0 ? 1.0 : (a < 0.0 ? -1.0 : 0.0);
}

inline double minmod(double a, double b) {
    const double x = __builtin_fabs(a);
    const double y = __builtin_fabs(b);
    return (signOf(a) + signOf(b)) * (y < x ? y : x) * 0.5;
}

struct MinmodNorm {
    static inline double at(const ColumnStencil& s, int y) {
        const double here = s.here[y];
        const double dx = minmod(s.east[y] - here, here - s.west[y]);
        const double dy = minmod(s.here[y + 1] - here, here - s.here[y - 1]);
        return dx * dx + dy * dy;
    }
};

// The weight is a float in the norm classes, and widened there.
constexpr double kDiagonalWeight =
    static_cast<double>(static_cast<float>(1.4142135623730951 * 0.5));

// Hands the eight slopes to `rule` in the order of the visit.
template <class Rule>
struct SlopeNorm {
    static inline double at(const ColumnStencil& s, int y) {
        const double here = s.here[y];
        Rule rule(__builtin_fabs(s.west[y] - here));
        rule.take(__builtin_fabs(s.west[y - 1] - here) * kDiagonalWeight);
        rule.take(__builtin_fabs(s.west[y + 1] - here) * kDiagonalWeight);
        rule.take(__builtin_fabs(s.here[y - 1] - here));
        rule.take(__builtin_fabs(s.here[y + 1] - here));
        rule.take(__builtin_fabs(s.east[y - 1] - here) * kDiagonalWeight);
        rule.take(__builtin_fabs(s.east[y] - here));
        rule.take(__builtin_fabs(s.east[y + 1] - here) * kDiagonalWeight);
        return rule.norm();
    }
};

class SmallestSlope {
  public:
    explicit SmallestSlope(double first) : least_(first) {}
    void take(double v) { least_ = v < least_ ? v : least_; }
    double norm() const { return least_ * least_; }

  private:
    double least_;
};

class LargestSlope {
  public:
    explicit LargestSlope(double first) : most_(first) {}
    void take(double v) { most_ = most_ < v ? v : most_; }
    double norm() const { return most_ * most_; }

  private:
    double most_;
};

class MinBiasedSlopes {
  public:
    explicit MinBiasedSlopes(double first) : lo_(first), hi_(first) {}
    void take(double v) {
        const bool lower = v < lo_;
        const double raised = v > hi_ ? v : hi_;
        hi_ = lower ? lo_ : raised;  // quirk: biased-slope
        lo_ = lower ? v : lo_;
    }
    double norm() const { return lo_ * lo_ + hi_ * hi_; }

  private:
    double lo_;
    double hi_;
};

class MaxBiasedSlopes {
  public:
    explicit MaxBiasedSlopes(double first) : hi_(first), lo_(first) {}
    void take(double v) {
        const bool higher = v > hi_;
        const double lowered = v < lo_ ? v : lo_;
        lo_ = higher ? hi_ : lowered;  // quirk: biased-slope
        hi_ = higher ? v : hi_;
    }
    double norm() const { return hi_ * hi_ + lo_ * lo_; }

  private:
    double hi_;
    double lo_;
};

struct PeronaMalik {
    static inline double at(double s) { return 1.0 / (1.0 + s); }
};

struct Variational {
    static inline double at(double s) { return 1.0 / __builtin_sqrt(1.0 + s); }
};

struct TotalVariation {
    static inline double at(double s) { return 1.0 / __builtin_sqrt(s + 0.0001); }
};

struct Weickert2 {
    static inline double at(double s) { return oneMinusExpOf(-2.33666 / (s * s)); }
};

struct Weickert3 {
    static inline double at(double s) { return oneMinusExpOf(-2.9183 / (s * s * s)); }
};

struct Weickert4 {
    static inline double at(double s) { return oneMinusExpOf(-3.31488 / (s * s * s * s)); }
};

template <class Norm, class Formula>
void column(const ColumnStencil& stencil, int count, double contrastSquared, float* out) {
    ORV_LANE_LOOP
    for (int y = 0; y < count; ++y) {
        const double n = Norm::at(stencil, y);
        const double g = Formula::at(n / contrastSquared);
        out[y] = n <= 0.0 ? 1.0f : static_cast<float>(g);
    }
}

// Whether k / (k + n) decided every sample of the column.
template <class Norm>
bool quickPeronaMalik(const ColumnStencil& stencil, int count, double contrastSquared,
                      float* out) {
    constexpr double kBelow = 1.0 - 0x1p-49;
    constexpr double kAbove = 1.0 + 0x1p-49;
    int undecided = 0;
    ORV_LANE_LOOP
    for (int y = 0; y < count; ++y) {
        const double n = Norm::at(stencil, y);
        const double g = contrastSquared / (contrastSquared + n);
        const float low = static_cast<float>(g * kBelow);
        const float high = static_cast<float>(g * kAbove);
        undecided += low != high ? 1 : 0;  // NaN too
        out[y] = low;
    }
    return undecided == 0;
}

template <class Norm>
void peronaMalikColumn(const ColumnStencil& stencil, int count, double contrastSquared,
                       float* out) {
    constexpr int kChunk = 512;
    for (int y = 0; y < count; y += kChunk) {
        const ColumnStencil part = {stencil.west + y, stencil.here + y, stencil.east + y};
        const int size = count - y < kChunk ? count - y : kChunk;
        if (!quickPeronaMalik<Norm>(part, size, contrastSquared, out + y)) {
            column<Norm, PeronaMalik>(part, size, contrastSquared, out + y);
        }
    }
}

using MinSlope = SlopeNorm<SmallestSlope>;
using MaxSlope = SlopeNorm<LargestSlope>;
using MinBiased = SlopeNorm<MinBiasedSlopes>;
using MaxBiased = SlopeNorm<MaxBiasedSlopes>;

}  // namespace

// The columns of one norm.
#define ORV_COLUMNS_OF(Norm)                                                              \
    {                                                                                     \
        peronaMalikColumn<Norm>, column<Norm, Variational>, column<Norm, TotalVariation>, \
            column<Norm, Weickert2>, column<Norm, Weickert3>, column<Norm, Weickert4>     \
    }

extern const DiffusivityKernels kDiffusivityKernels;
constinit const DiffusivityKernels kDiffusivityKernels = {
    {ORV_COLUMNS_OF(CentralNorm), ORV_COLUMNS_OF(MinmodNorm), ORV_COLUMNS_OF(MinSlope),
     ORV_COLUMNS_OF(MaxSlope), ORV_COLUMNS_OF(MinBiased), ORV_COLUMNS_OF(MaxBiased)}};

#undef ORV_COLUMNS_OF

}  // namespace orv::ORV_KERNEL_NAMESPACE
