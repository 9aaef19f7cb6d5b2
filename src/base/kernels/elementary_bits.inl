// What the elementary functions share: bits of doubles, and selections for special values.
// Included by elementary_functions.inl alone; so are its neighbours.

using ElementaryBits = unsigned long long;

inline ElementaryBits bitsOf(double x) {
    return __builtin_bit_cast(ElementaryBits, x);
}

inline double fromBits(ElementaryBits bits) {
    return __builtin_bit_cast(double, bits);
}

/// An unevaluated sum or difference of two doubles, as its user tells.
struct DoublePair {
    double high;
    double low;
};

constexpr double kElementaryNan = __builtin_nan("");
constexpr double kElementaryInfinity = __builtin_inf();
constexpr double kLeastNormal = 0x1p-1022;
// A double near this number holds a whole number in its low bits; adding it rounds to nearest.
constexpr double kWholeShift = 0x1.8p52;
constexpr ElementaryBits kMantissaMask = 0x000fffffffffffffULL;
constexpr ElementaryBits kHighHalfMask = 0xfffffffff8000000ULL;

// The upper 26 bits of the mantissa: products of two such numbers are exact.
inline double highHalf(double x) {
    return fromBits(bitsOf(x) & kHighHalfMask);
}

inline double orNan(bool valid, double y) {
    return valid ? y : kElementaryNan;
}

// ln 2 and log10 2 in two parts; the first has 42 bits, so that its product with an exponent is
// exact.
constexpr double kLn2High = 0x1.62e42fefa3800p-1;
constexpr double kLn2Low = 0x1.ef35793c76730p-45;
constexpr double kLog10Of2High = 0x1.34413509f8000p-2;
constexpr double kLog10Of2Low = -0x1.80433b83b532ap-44;
