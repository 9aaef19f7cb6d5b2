// Logarithms to the bases e and 10.

// A number above 0 as 2^k m: bits of m from `offset` on, m between its value and twice that.
struct Exponent {
    double k;
    double m;
    ElementaryBits place;  ///< of m between the two, in units of 2^-52
};

inline Exponent splitExponent(double x, ElementaryBits offset) {
    const ElementaryBits u = bitsOf(x) + (0x3ff0000000000000ULL - offset);
    const ElementaryBits place = u & kMantissaMask;
    return {fromBits((u >> 52) | 0x4330000000000000ULL) - (0x1p52 + 1023.0),
            fromBits(place + offset), place};
}

// x, or x 2^54 where x is subnormal, and the 54 to take off the exponent.
struct Normalised {
    double x;
    double excess;
};

inline Normalised normalised(double x) {
    const bool small = x < kLeastNormal;
    return {small ? x * 0x1p54 : x, small ? 54.0 : 0.0};
}

/// ln x - `excess` ln 2 as a sum, for normal x: with f = m - 1 and s = f / (2 + f),
/// ln m = f - (f^2 / 2 - s (f^2 / 2 + R(s^2))), R a minimax polynomial (error 2^-58).
inline DoublePair logCore(double x, double excess) {
    const Exponent e = splitExponent(x, 0x3fe6a09e667f3bcdULL);  // sqrt(1/2)
    const double k = e.k - excess;
    const double f = e.m - 1.0;
    const double s = f / (2.0 + f);
    const double z = s * s;
    const double z2 = z * z;
    const double z4 = z2 * z2;
    const double even = (0x1.5555555555592p-1 + z * 0x1.999999997fd37p-2) +
                        z2 * (0x1.24924941f8cdfp-2 + z * 0x1.c71c5202b5670p-3);
    const double odd =
        (0x1.7466405b71d45p-3 + z * 0x1.39a193401e4e3p-3) + z2 * 0x1.2f07053a24b99p-3;
    const double tail = z * (even + z4 * odd);
    const double halfSquare = 0.5 * f * f;
    const double whole = k * kLn2High;
    const double sum = whole + f;
    const double high = sum - halfSquare;
    const double losses = ((whole - sum) + f) + ((sum - high) - halfSquare);
    return {high, losses + (s * (halfSquare + tail) + k * kLn2Low)};
}

// What a logarithm gives for 0, negative numbers, infinity and NaN.
inline double logOrSpecial(double x, double y) {
    const double positive = x == kElementaryInfinity ? x : y;
    const double other = x == 0.0 ? -kElementaryInfinity : kElementaryNan;
    return x > 0.0 ? positive : other;
}

/// logOf for finite x from 2^-1022 on.
inline double logInRange(double x) {
    const DoublePair y = logCore(x, 0.0);
    return y.high + y.low;
}

/// The natural logarithm.
inline double logOf(double x) {
    const Normalised n = normalised(x);
    const DoublePair y = logCore(n.x, n.excess);
    return logOrSpecial(x, y.high + y.low);
}

inline double log10FromLog(DoublePair y) {
    constexpr double kInverse = 0x1.bcb7b1526e50ep-2;  // 1 / ln 10
    constexpr double kInverseHigh = 0x1.bcb7b18000000p-2;
    constexpr double kInverseLow = -0x1.6c8d78e6acaa4p-29;
    const double sum = y.high + y.low;
    const double rest = (y.high - sum) + y.low;
    const double a = highHalf(sum);
    const double b = (sum - a) + rest;
    return a * kInverseHigh + (a * kInverseLow + b * kInverse);
}

/// log10Of for finite x from 2^-1022 on.
inline double log10InRange(double x) {
    return log10FromLog(logCore(x, 0.0));
}

/// The logarithm to base 10, exact for the powers of ten that are doubles.
inline double log10Of(double x) {
    const Normalised n = normalised(x);
    return logOrSpecial(x, log10FromLog(logCore(n.x, n.excess)));
}
