// The engine's elementary functions, one value a call, without a branch, so that loops over them
// are vectorised. A kernel's .inl includes this file once, inside its anonymous namespace. The
// arrays of elementary_kernels.h and the scalars of base/elementary.h have the same bits.

inline double expOf(double x) {
    return __builtin_exp(x);
}

inline double logOf(double x) {
    return __builtin_log(x);
}

inline double log10Of(double x) {
    return __builtin_log10(x);
}

inline double exp10Of(double x) {
    return __builtin_pow(10.0, x);
}

inline double atanOf(double x) {
    return __builtin_atan(x);
}

inline double powOf(double x, double y) {
    return __builtin_pow(x, y);
}
