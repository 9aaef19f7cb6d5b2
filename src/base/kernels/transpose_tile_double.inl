// Transposition of 8 x 8 doubles, included by kernel bodies inside their namespace beside the
// tile of floats, whose overload it is.

#if defined(__GNUC__)

typedef double Doubles4 __attribute__((vector_size(32)));  // NOLINT: an alias can't carry it

[[gnu::always_inline]] inline void transposeQuarter(const double* from, std::size_t fromStride,
                                                    double* to, std::size_t toStride) {
    Doubles4 r[4];
    Doubles4 t[4];
    for (int k = 0; k < 4; ++k) {
        __builtin_memcpy(&r[k], from + static_cast<std::size_t>(k) * fromStride, sizeof r[k]);
    }
    for (int k = 0; k < 4; k += 2) {
        t[k] = __builtin_shufflevector(r[k], r[k + 1], 0, 4, 2, 6);
        t[k + 1] = __builtin_shufflevector(r[k], r[k + 1], 1, 5, 3, 7);
    }
    for (int k = 0; k < 2; ++k) {
        r[k] = __builtin_shufflevector(t[k], t[k + 2], 0, 1, 4, 5);
        r[k + 2] = __builtin_shufflevector(t[k], t[k + 2], 2, 3, 6, 7);
    }
    for (int k = 0; k < 4; ++k) {
        __builtin_memcpy(to + static_cast<std::size_t>(k) * toStride, &r[k], sizeof r[k]);
    }
}

// Four tiles of 4 x 4: as many vectors as most targets have registers for.
[[gnu::always_inline]] inline void transposeTile(const double* from, std::size_t fromStride,
                                                 double* to, std::size_t toStride) {
    transposeQuarter(from, fromStride, to, toStride);
    transposeQuarter(from + 4, fromStride, to + 4 * toStride, toStride);
    transposeQuarter(from + 4 * fromStride, fromStride, to + 4, toStride);
    transposeQuarter(from + 4 * fromStride + 4, fromStride, to + 4 * toStride + 4, toStride);
}

#else

inline void transposeTile(const double* from, std::size_t fromStride, double* to,
                          std::size_t toStride) {
    for (std::size_t k = 0; k < 8; ++k) {
        for (std::size_t i = 0; i < 8; ++i) {
            to[i * toStride + k] = from[k * fromStride + i];
        }
    }
}

#endif
