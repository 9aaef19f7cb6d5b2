// Exponentials to the bases e and 10.

/// e to the power (high - low) for a difference of at most ln(2) / 2, less 1 + high: the rational
/// form 1 + r + r c / (2 - c) with c = r - r^2 P(r^2), P a minimax polynomial (error 2^-62).
inline double expRest(double high, double low) {
    const double r = high - low;
    const double t = r * r;
    const double t2 = t * t;
    const double p = (0x1.555555555552dp-3 + t * -0x1.6c16c16bd9fc0p-9) +
                     t2 * ((0x1.1566aac07b84dp-14 + t * -0x1.bbd3aa9ad609cp-20) +
                           t2 * 0x1.6348e9220a0bfp-25);
    const double c = r - t * p;
    return (r * c) / (2.0 - c) - low;
}

/// 1 + high + rest. The one sum that would lose bits, 1 + high, is made exact by its remainder.
inline double withRest(double high, double rest) {
    const double sum = 1.0 + high;
    return sum + (((1.0 - sum) + high) + rest);
}

/// e to the power (high - low).
inline double expCore(double high, double low) {
    return withRest(high, expRest(high, low));
}

// 2 to the power of the whole number in `shifted` - kWholeShift, -1022 to 1023.
inline double powerOfTwo(double shifted) {
    return fromBits((bitsOf(shifted) + 1023) << 52);
}

// y 2^k for the whole number k = shifted - kWholeShift, -2044 to 2046; rounded once, also among
// the subnormal numbers. y is between 1/2 and 2.
inline double scaled(double y, double shifted) {
    const double k = shifted - kWholeShift;
    const double half = k * 0.5 + kWholeShift;
    const double other = k - (half - kWholeShift);
    return y * powerOfTwo(half) * powerOfTwo(other + kWholeShift);
}

// The same where y 2^k is a normal number.
inline double scaledInRange(double y, double shifted) {
    return fromBits(bitsOf(y) + (bitsOf(shifted) << 52));
}

inline double within(double x, double lowest, double highest) {
    const double raised = lowest > x ? lowest : x;
    return highest < raised ? highest : raised;
}

// k ln 2, k being the whole number next to x / ln 2, and what is left of high + low.
struct ExpReduction {
    double shifted;
    double high;
    double low;  ///< to be subtracted
};

inline ExpReduction reduceExp(double high, double low) {
    const double shifted = high * 0x1.71547652b82fep+0 + kWholeShift;
    const double k = shifted - kWholeShift;
    return {shifted, high - k * kLn2High, k * kLn2Low - low};
}

inline ExpReduction reduceExp10(double x) {
    constexpr double kLn10 = 0x1.26bb1bbb55516p+1;
    constexpr double kLn10High = 0x1.26bb1b8000000p+1;
    constexpr double kLn10Low = 0x1.daaa8ac16ea57p-26;
    const double shifted = x * 0x1.a934f0979a371p+1 + kWholeShift;
    const double k = shifted - kWholeShift;
    const double r = x - k * kLog10Of2High;
    const double a = highHalf(r);
    const double b = (r - a) - k * kLog10Of2Low;
    return {shifted, a * kLn10High, -(a * kLn10Low + b * kLn10)};
}

/// expOf for x from -708 to 709.
inline double expInRange(double x) {
    const double shifted = x * 0x1.71547652b82fep+0 + kWholeShift;
    const double k = shifted - kWholeShift;
    return scaledInRange(expCore(x - k * kLn2High, k * kLn2Low), shifted);
}

/// e to the power of x; the error stays below 0.85 units in the last place, 0.8 for normal results.
inline double expOf(double x) {
    const ExpReduction r = reduceExp(within(x, -800.0, 800.0), 0.0);
    return orNan(x == x, scaled(expCore(r.high, r.low), r.shifted));
}

/// 1 - e^x for x of at most 0, without what a difference loses where e^x is near 1: there 1 is
/// left out of the sum. The error stays below 2 units in the last place. From -64 down it is 1.
inline double oneMinusExpOf(double x) {
    const double raised = x < -64.0 ? -64.0 : x;
    const double shifted = raised * 0x1.71547652b82fep+0 + kWholeShift;
    const double k = shifted - kWholeShift;
    const double high = raised - k * kLn2High;
    const double low = k * kLn2Low;
    const double rest = expRest(high, low);
    const double far = 1.0 - scaledInRange(withRest(high, rest), shifted);
    const double near = 0.0 - (high + rest);
    return orNan(x == x, k == 0.0 ? near : far);
}

/// exp10Of for x from -307 to 308.
inline double exp10InRange(double x) {
    const ExpReduction r = reduceExp10(x);
    return scaledInRange(expCore(r.high, r.low), r.shifted);
}

/// 10 to the power of x, exact for whole x from 0 to 22.
inline double exp10Of(double x) {
    const ExpReduction r = reduceExp10(within(x, -350.0, 350.0));
    return orNan(x == x, scaled(expCore(r.high, r.low), r.shifted));
}
