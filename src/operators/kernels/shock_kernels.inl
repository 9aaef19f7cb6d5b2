// Bodies of the table in shock_kernels.h: plain loops down a column, compiled once per target.
// They repeat the expressions of the finite differences of planes letter for letter.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/elementary_functions.inl"

constexpr double kFlat = 0.00000001;
// 1 over pi as the terms form it.
constexpr double kOneOverPi = 1.0 / (4.0 * 0.78539816339744830962);

inline double signOf(double a) {
    return a > 0.0 ? 1.0 : (a < 0.0 ? -1.0 : 0.0);
}

inline double smallerOf(double a, double b) {
    return a < b ? a : b;
}

inline double largerOf(double a, double b) {
    return a > b ? a : b;
}

/// Short forms, whose bits are those of `Defined` for all samples but those that they count in
/// `rare`: the numerator of eta is not finite then, or too large or too small to be sure. A
/// one-sided difference that is no finite number always makes it so.
struct Quick {
    /// Minmod but for the sign of a zero, which the square of a norm drops.
    static inline double minmod(double a, double b) {
        return largerOf(smallerOf(a, b), 0.0) + smallerOf(largerOf(a, b), 0.0);
    }
    /// The sign of eta from its numerator, whose quotient must not underflow.
    template <class AnySlopes>
    static inline double etaSign(const AnySlopes& s, long long& rare) {
        const double numerator = s.along();
        const double size = __builtin_fabs(numerator);
        const bool plain = size == 0.0 || (size > 1.0e-250 && size < 1.0e250);
        rare += plain ? 0 : 1;
        return signOf(numerator);
    }
    template <class AnySlopes>
    static inline double eta(const AnySlopes& s, long long& rare) {
        const double numerator = s.along();
        rare += __builtin_fabs(numerator) < 1.0e250 ? 0 : 1;
        return numerator / s.squared();
    }
};

/// The forms of the definitions, right for every double.
struct Defined {
    static inline double minmod(double a, double b) {
        const double x = __builtin_fabs(a);
        const double y = __builtin_fabs(b);
        return (signOf(a) + signOf(b)) * (y < x ? y : x) / 2.0;
    }
    template <class AnySlopes>
    static inline double etaSign(const AnySlopes& s, long long& /*rare*/) {
        return signOf(s.along() / s.squared());
    }
    template <class AnySlopes>
    static inline double eta(const AnySlopes& s, long long& /*rare*/) {
        return s.along() / s.squared();
    }
};

/// What the terms are made of, at one sample.
template <class Form>
struct Slopes {
    inline Slopes(const ShockColumns& c, int y) {
        const double here = c.here[y];
        fx = (c.east[y] - c.west[y]) / 2.0;
        fy = (c.here[y + 1] - c.here[y - 1]) / 2.0;
        fxx = c.east[y] - 2.0 * here + c.west[y];
        fyy = c.here[y + 1] - 2.0 * here + c.here[y - 1];
        fxy = ((c.west[y - 1] + c.east[y + 1]) - (c.east[y - 1] + c.west[y + 1])) / 4.0;
        const double mx = Form::minmod(here - c.west[y], c.east[y] - here);
        const double my = Form::minmod(here - c.here[y - 1], c.here[y + 1] - here);
        norm = __builtin_sqrt(mx * mx + my * my + 0.000000000001);
    }
    /// eta is along() / squared(), xi is across() / squared().
    inline double along() const { return fx * fx * fxx + 2.0 * fx * fy * fxy + fy * fy * fyy; }
    inline double across() const { return fy * fy * fxx - 2.0 * fx * fy * fxy + fx * fx * fyy; }
    inline double squared() const { return fx * fx + fy * fy + kFlat; }

    double fx, fy, fxx, fyy, fxy, norm;
};

template <class Form>
struct Sign {
    static inline double at(const Slopes<Form>& s, const ShockFormula&, long long& rare) {
        return -Form::etaSign(s, rare) * s.norm;
    }
};

template <class Form>
struct DiffusiveSign {
    static inline double at(const Slopes<Form>& s, const ShockFormula& f, long long& rare) {
        const double xi = s.across() / s.squared();
        return signOf(s.norm) * f.diffusionWeight * xi - Form::etaSign(s, rare) * s.norm;
    }
};

template <class Form>
struct Arctan {
    static inline double at(const Slopes<Form>& s, const ShockFormula& f, long long& rare) {
        return -2.0 * kOneOverPi * atanOf(f.arctanFactor * Form::eta(s, rare)) * s.norm;
    }
};

template <class Form>
struct DiffusiveArctan {
    static inline double at(const Slopes<Form>& s, const ShockFormula& f, long long& rare) {
        const double xi = s.across() / s.squared();
        return f.diffusionWeight * xi -
               2.0 * kOneOverPi * atanOf(f.arctanFactor * Form::eta(s, rare)) * s.norm;
    }
};

inline double limited(double v) {
    const double raised = v < 0.0 ? 0.0 : v;
    return raised > 255.0 ? 255.0 : raised;
}

/// One step down a column; returns how many samples the form could not vouch for.
template <template <class> class Term, class Form>
long long step(const ShockColumns& given, const double* in, int count,
               const ShockFormula& formula, double timeStep, double* out) {
    const ShockColumns columns = given;
    const ShockFormula f = formula;
    long long rare = 0;
    ORV_LANE_LOOP
    for (int y = 0; y < count; ++y) {
        const Slopes<Form> slopes(columns, y);
        out[y] = limited(in[y] + timeStep * Term<Form>::at(slopes, f, rare));
    }
    return rare;
}

template <template <class> class Term>
void column(const ShockColumns& columns, const double* in, int count,
            const ShockFormula& formula, double timeStep, double* out) {
    if (step<Term, Quick>(columns, in, count, formula, timeStep, out) != 0) {
        step<Term, Defined>(columns, in, count, formula, timeStep, out);
    }
}

}  // namespace

extern const ShockKernels kShockKernels;
constinit const ShockKernels kShockKernels = {
    {column<Sign>, column<DiffusiveSign>, column<Arctan>, column<DiffusiveArctan>}};

}  // namespace orv::ORV_KERNEL_NAMESPACE
