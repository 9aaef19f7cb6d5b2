// Powers: a logarithm in two doubles [Dekker1971], times the exponent, and its exponential.

#include "base/kernels/elementary_tables.inl"

/// ln x - `excess` ln 2 as a sum good to 2^-66, for normal x: ln x = k ln 2 + ln c + ln(1 + r),
/// r = m / c - 1, with 1 / c of 10 bits from a table of 128. [Tang1990]
inline DoublePair logPair(double x, double excess) {
    const Exponent e = splitExponent(x, 0x3fe6b00000000000ULL);
    const ElementaryBits i = e.place >> 45;
    const double inverse = kLogInverse[i];
    const double k = e.k - excess;
    // Both products are exact: the upper part is rounded to 21 bits.
    const double upper = fromBits((bitsOf(e.m) + 0x80000000ULL) & 0xffffffff00000000ULL);
    const double upperR = upper * inverse - 1.0;
    const double lowerR = (e.m - upper) * inverse;
    const double r = upperR + lowerR;

    const double whole = k * kLn2High + kLogHigh[i];  // exact: 42 bits after the point
    const double first = whole + r;
    const double half = -0.5 * upperR;
    const double square = upperR * half;  // exact
    const double high = first + square;
    const double r2 = r * r;
    const double poly = (0x1.5555555555561p-2 + r * -0x1.0000000000017p-2) +
                        r2 * ((0x1.999999956c5d6p-3 + r * -0x1.5555554f78c92p-3) +
                              r2 * (0x1.2495cb2ddbc48p-3 + r * -0x1.0003d3cb19fc4p-3));
    const double losses = ((upperR - r) + lowerR) + ((whole - first) + r);
    const double squareLoss = lowerR * (half - 0.5 * r) + ((first - high) + square);
    const double constant = k * kLn2Low + kLogLow[i];
    return {high, (losses + constant) + (squareLoss + (r * r2) * poly)};
}

/// What a power needs to know of its exponent; made once where many values have the same one.
/// Numbers instead of conditions: compilers vectorise no loop with a condition that stays.
struct PowExponent {
    double y;             ///< within 2^70: beyond, powers of all doubles but 1 overflow
    double upper;         ///< upper half of y's mantissa
    double atZero;        ///< 0 to the power of y
    double atInfinity;    ///< infinity to the power of y
    double ofNan;         ///< NaN to the power of y
    double root;          ///< 1 for a whole y, else NaN: factor of finite negative x
    ElementaryBits sign;  ///< sign bit for an odd y, else 0
};

inline PowExponent powExponentOf(double y) {
    const double size = __builtin_fabs(y);
    // 1 where y is a whole number, an odd number; 0 elsewhere. Chains of selections, since
    // compilers don't vectorise conditions joined by `and` either.
    const double small = (size + 0x1p52) - 0x1p52 == size ? 1.0 : 0.0;
    const double whole = size >= 0x1p52 ? 1.0 : small;
    const double half = size * 0.5;
    const double halved = (half + 0x1p52) - 0x1p52 == half ? 0.0 : whole;
    const double odd = size < 0x1p53 ? halved : 0.0;

    const double bounded = within(y, -0x1p70, 0x1p70);
    const double ofNan = y == 0.0 ? 1.0 : kElementaryNan;
    const double unlessAbove = y < 0.0 ? kElementaryInfinity : ofNan;
    const double unlessBelow = y < 0.0 ? 0.0 : ofNan;
    return {bounded,
            highHalf(bounded),
            y > 0.0 ? 0.0 : unlessAbove,
            y > 0.0 ? kElementaryInfinity : unlessBelow,
            ofNan,
            whole > 0.0 ? 1.0 : kElementaryNan,
            odd > 0.0 ? 0x8000000000000000ULL : 0ULL};
}

// The product of a sum and the exponent, as a sum.
inline DoublePair timesExponent(DoublePair a, const PowExponent& e) {
    const double high = highHalf(a.high);
    const double low = (a.high - high) + a.low;
    return {e.upper * high, (e.y - e.upper) * high + e.y * low};
}

// The second half of a power: e to the y-fold of a logarithm.
inline double powFromLog(DoublePair logarithm, const PowExponent& e) {
    const DoublePair product = timesExponent(logarithm, e);
    const ExpReduction r = reduceExp(product.high, product.low);
    return scaledInRange(expCore(r.high, r.low), r.shifted);
}

/// powOf for x in powRangeOf of the exponent.
inline double powInRange(double x, const PowExponent& e) {
    return powFromLog(logPair(x, 0.0), e);
}

/// The x for which powInRange may be taken with the exponent y; none for y that isn't finite.
struct PowRange {
    double lowest;
    double highest;
};

inline PowRange powRangeOf(double y) {
    const double limit = 700.0 / __builtin_fabs(y);
    const double widest = limit < 708.0 ? limit : 708.0;
    if (!(__builtin_fabs(y) < 0x1p70)) {
        return {1.0, -1.0};
    }
    return {expOf(-widest), expOf(widest)};
}

// |x| to the power of y for finite x other than 0.
inline double powerOfMagnitude(double magnitude, const PowExponent& e) {
    const Normalised n = normalised(magnitude);
    const DoublePair product = timesExponent(logPair(n.x, n.excess), e);
    const double high = within(product.high, -800.0, 800.0);
    const ExpReduction r = reduceExp(high, high == product.high ? product.low : 0.0);
    return scaled(expCore(r.high, r.low), r.shifted);
}

/// powOf with an exponent made ready.
inline double powOf(double x, const PowExponent& e) {
    const double magnitude = __builtin_fabs(x);
    double result = powerOfMagnitude(magnitude, e);
    result = magnitude == 0.0 ? e.atZero : result;
    result = magnitude == kElementaryInfinity ? e.atInfinity : result;
    result = fromBits(bitsOf(result) ^ (bitsOf(x) & e.sign));
    const double ofNegative = x == -kElementaryInfinity ? result : result * e.root;
    const double unlessNan = x < 0.0 ? ofNegative : e.ofNan;
    result = x >= 0.0 ? result : unlessNan;
    result = orNan(result == result, result);
    return x == 1.0 ? 1.0 : result;
}

/// x to the power of y, with the special values of the C standard. In a loop over x with one y,
/// call powExponentOf in front of the loop and the form above in it.
inline double powOf(double x, double y) {
    return powOf(x, powExponentOf(y));
}
