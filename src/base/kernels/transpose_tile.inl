// Transposition of 8 x 8 samples, included by kernel bodies inside their namespace.

#if defined(__GNUC__)

typedef float Floats8 __attribute__((vector_size(32)));  // NOLINT: an alias can't carry it

// Compilers don't find the shuffles of a transposition in a plain loop, and element by element
// it costs more than the line solve. The vector type is lowered to what the target has.
[[gnu::always_inline]] inline void transposeTile(const float* from, std::size_t fromStride,
                                                 float* to, std::size_t toStride) {
    Floats8 r[8];
    Floats8 t[8];
    for (int k = 0; k < 8; ++k) {
        __builtin_memcpy(&r[k], from + static_cast<std::size_t>(k) * fromStride, sizeof r[k]);
    }
    for (int k = 0; k < 8; k += 2) {
        t[k] = __builtin_shufflevector(r[k], r[k + 1], 0, 8, 2, 10, 4, 12, 6, 14);
        t[k + 1] = __builtin_shufflevector(r[k], r[k + 1], 1, 9, 3, 11, 5, 13, 7, 15);
    }
    for (int half = 0; half < 8; half += 4) {
        for (int k = half; k < half + 2; ++k) {
            r[k] = __builtin_shufflevector(t[k], t[k + 2], 0, 1, 8, 9, 4, 5, 12, 13);
            r[k + 2] = __builtin_shufflevector(t[k], t[k + 2], 2, 3, 10, 11, 6, 7, 14, 15);
        }
    }
    for (int k = 0; k < 4; ++k) {
        t[k] = __builtin_shufflevector(r[k], r[k + 4], 0, 1, 2, 3, 8, 9, 10, 11);
        t[k + 4] = __builtin_shufflevector(r[k], r[k + 4], 4, 5, 6, 7, 12, 13, 14, 15);
    }
    for (int k = 0; k < 8; ++k) {
        __builtin_memcpy(to + static_cast<std::size_t>(k) * toStride, &t[k], sizeof t[k]);
    }
}

#else

inline void transposeTile(const float* from, std::size_t fromStride, float* to,
                          std::size_t toStride) {
    for (std::size_t k = 0; k < 8; ++k) {
        for (std::size_t i = 0; i < 8; ++i) {
            to[i * toStride + k] = from[k * fromStride + i];
        }
    }
}

#endif
