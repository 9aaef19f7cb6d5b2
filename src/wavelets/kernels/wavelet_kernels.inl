// Bodies of the wavelet kernels, compiled once per target.

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#if defined(__GNUC__)
#define ORV_UNROLL_TAPS _Pragma("GCC unroll 16")
#define ORV_ALWAYS_INLINE [[gnu::always_inline]] inline
#else
#define ORV_UNROLL_TAPS
#define ORV_ALWAYS_INLINE inline
#endif

/// Lengths and offsets of a filter pair as constants.
template <int LowLength, int LowOffset, int HighLength, int HighOffset>
struct FixedShape {
    static constexpr int lowLength() { return LowLength; }
    static constexpr int lowOffset() { return LowOffset; }
    static constexpr int highLength() { return HighLength; }
    static constexpr int highOffset() { return HighOffset; }
};

/// The same of any pair.
struct AnyShape {
    int lowLength() const { return lowLength_; }
    int lowOffset() const { return lowOffset_; }
    int highLength() const { return highLength_; }
    int highOffset() const { return highOffset_; }

    int lowLength_;
    int lowOffset_;
    int highLength_;
    int highOffset_;
};

template <int LowLength, int LowOffset, int HighLength, int HighOffset, class Work>
bool runIfShaped(const WaveletFilter& low, const WaveletFilter& high, Work work) {
    if (low.length != LowLength || low.offset != LowOffset || high.length != HighLength ||
        high.offset != HighOffset) {
        return false;
    }
    work(FixedShape<LowLength, LowOffset, HighLength, HighOffset>());
    return true;
}

/// Calls work(shape) with constants for the published analysis pairs.
template <class Work>
void withAnalysisShape(const WaveletFilter& low, const WaveletFilter& high, Work work) {
    if (runIfShaped<6, 0, 6, 4>(low, high, work) || runIfShaped<2, 1, 2, 1>(low, high, work) ||
        runIfShaped<5, 1, 3, 1>(low, high, work) || runIfShaped<9, 3, 7, 3>(low, high, work) ||
        runIfShaped<13, 5, 11, 5>(low, high, work) ||
        runIfShaped<9, 3, 3, 1>(low, high, work)) {
        return;
    }
    work(AnyShape{low.length, low.offset, high.length, high.offset});
}

/// Calls work(shape) with constants for the published synthesis pairs.
template <class Work>
void withSynthesisShape(const WaveletFilter& low, const WaveletFilter& high, Work work) {
    if (runIfShaped<6, 5, 6, 1>(low, high, work) || runIfShaped<2, 0, 2, 0>(low, high, work) ||
        runIfShaped<3, 2, 5, 2>(low, high, work) || runIfShaped<7, 4, 9, 4>(low, high, work) ||
        runIfShaped<11, 6, 13, 6>(low, high, work) ||
        runIfShaped<3, 2, 9, 4>(low, high, work)) {
        return;
    }
    work(AnyShape{low.length, low.offset, high.length, high.offset});
}

/// A copy of the taps that no store can change, so that they stay in registers.
struct Taps {
    ORV_ALWAYS_INLINE Taps(const WaveletFilter& filter, int length) {
        ORV_UNROLL_TAPS
        for (int k = 0; k < length; ++k) {
            values[k] = filter.taps[k];
        }
    }
    double operator[](int k) const { return values[k]; }

    double values[25];
};

#if defined(__GNUC__)

constexpr std::size_t kLanes = 8;
typedef double Lanes __attribute__((vector_size(64)));  // NOLINT: an alias can't carry it

ORV_ALWAYS_INLINE void store(double* to, const Lanes& value) {
    __builtin_memcpy(to, &value, sizeof value);
}

/// Splits 16 neighbours into those at even and those at odd places.
ORV_ALWAYS_INLINE void storeSplit(const Lanes& first, const Lanes& second, double* even,
                                  double* odd) {
    store(even, __builtin_shufflevector(first, second, 0, 2, 4, 6, 8, 10, 12, 14));
    store(odd, __builtin_shufflevector(first, second, 1, 3, 5, 7, 9, 11, 13, 15));
}

/// Places even and odd samples alternately.
ORV_ALWAYS_INLINE void storeJoined(const Lanes& even, const Lanes& odd, double* to) {
    store(to, __builtin_shufflevector(even, odd, 0, 8, 1, 9, 2, 10, 3, 11));
    store(to + kLanes, __builtin_shufflevector(even, odd, 4, 12, 5, 13, 6, 14, 7, 15));
}

#endif

/// sum += samples from[0] ... times the tap, one in each lane.
template <class Value>
ORV_ALWAYS_INLINE void addProduct(Value& sum, const double* from, double tap) {
    Value samples;
    __builtin_memcpy(&samples, from, sizeof samples);
    sum += samples * tap;
}

/// Distances are small and may be negative; this is k / 2 rounded down.
constexpr int halfBelow(int k) {
    return (k - (k & 1)) / 2;
}

template <class Value, class Shape>
ORV_ALWAYS_INLINE void sumAcross(const Shape& shape, const double* const* lowColumns,
                                 const double* const* highColumns, std::size_t y,
                                 const Taps& lowTaps, const Taps& highTaps, Value& low,
                                 Value& high) {
    const int lowLength = shape.lowLength();
    const int highLength = shape.highLength();
    low = Value{};
    high = Value{};
    ORV_UNROLL_TAPS
    for (int k = 0; k < lowLength; ++k) {
        addProduct(low, lowColumns[k] + y, lowTaps[k]);
    }
    ORV_UNROLL_TAPS
    for (int k = 0; k < highLength; ++k) {
        addProduct(high, highColumns[k] + y, highTaps[k]);
    }
}

/// Sum over the samples 2i + k - offset of a split line, `even` and `odd` standing at i.
template <class Value>
ORV_ALWAYS_INLINE void sumSplit(int length, int offset, const double* even, const double* odd,
                                const Taps& taps, Value& sum) {
    sum = Value{};
    ORV_UNROLL_TAPS
    for (int k = 0; k < length; ++k) {
        const int distance = k - offset;
        const double* from = (distance & 1) != 0 ? odd : even;
        addProduct(sum, from + halfBelow(distance), taps[k]);
    }
}

/// The terms of an upsampled half that aren't 0 at position 2t + odd, `half` standing at t.
template <class Value>
ORV_ALWAYS_INLINE void sumUpsampled(int length, int offset, int odd, const double* half,
                                    const Taps& taps, Value& sum) {
    sum = Value{};
    ORV_UNROLL_TAPS
    for (int k = (offset + odd) & 1; k < length; k += 2) {
        addProduct(sum, half + (k - offset + odd) / 2, taps[k]);
    }
}

/// The same across columns, columns[0] being column t - offset / 2.
template <class Value>
ORV_ALWAYS_INLINE void sumUpsampledAcross(int length, int offset, int odd,
                                          const double* const* columns, std::size_t y,
                                          const Taps& taps, Value& sum) {
    sum = Value{};
    ORV_UNROLL_TAPS
    for (int k = (offset + odd) & 1; k < length; k += 2) {
        addProduct(sum, columns[offset / 2 + (k - offset + odd) / 2] + y, taps[k]);
    }
}

template <class Shape>
void analyseAcrossShaped(const Shape& shape, const double* const* columns, std::size_t rows,
                         const WaveletFilter& low, const WaveletFilter& high, double* lowEven,
                         double* lowOdd, double* highEven, double* highOdd) {
    const Taps lowTaps(low, shape.lowLength());
    const Taps highTaps(high, shape.highLength());
    const int left =
        shape.lowOffset() > shape.highOffset() ? shape.lowOffset() : shape.highOffset();
    const double* const* lowColumns = columns + (left - shape.lowOffset());
    const double* const* highColumns = columns + (left - shape.highOffset());
    std::size_t y = 0;
#if defined(__GNUC__)
    for (; y + 2 * kLanes <= rows; y += 2 * kLanes) {
        Lanes sums[4];
        sumAcross(shape, lowColumns, highColumns, y, lowTaps, highTaps, sums[0], sums[2]);
        sumAcross(shape, lowColumns, highColumns, y + kLanes, lowTaps, highTaps, sums[1],
                  sums[3]);
        storeSplit(sums[0], sums[1], lowEven + y / 2, lowOdd + y / 2);
        storeSplit(sums[2], sums[3], highEven + y / 2, highOdd + y / 2);
    }
#endif
    for (; y < rows; ++y) {
        double* toLow = y % 2 == 0 ? lowEven : lowOdd;
        double* toHigh = y % 2 == 0 ? highEven : highOdd;
        sumAcross(shape, lowColumns, highColumns, y, lowTaps, highTaps, toLow[y / 2],
                  toHigh[y / 2]);
    }
}

template <class Shape>
void analyseAlongShaped(const Shape& shape, const double* even, const double* odd,
                        std::size_t count, const WaveletFilter& low, const WaveletFilter& high,
                        double* lowResult, double* highResult) {
    const Taps lowTaps(low, shape.lowLength());
    const Taps highTaps(high, shape.highLength());
    std::size_t i = 0;
#if defined(__GNUC__)
    for (; i + kLanes <= count; i += kLanes) {
        Lanes sums[2];
        sumSplit(shape.lowLength(), shape.lowOffset(), even + i, odd + i, lowTaps, sums[0]);
        sumSplit(shape.highLength(), shape.highOffset(), even + i, odd + i, highTaps, sums[1]);
        store(lowResult + i, sums[0]);
        store(highResult + i, sums[1]);
    }
#endif
    for (; i < count; ++i) {
        sumSplit(shape.lowLength(), shape.lowOffset(), even + i, odd + i, lowTaps,
                 lowResult[i]);
        sumSplit(shape.highLength(), shape.highOffset(), even + i, odd + i, highTaps,
                 highResult[i]);
    }
}

template <class Value, class Shape>
ORV_ALWAYS_INLINE void sampleAlong(const Shape& shape, int odd, const double* lowHalf,
                                   const double* highHalf, const Taps& lowTaps,
                                   const Taps& highTaps, Value& sample) {
    Value high;
    sumUpsampled(shape.lowLength(), shape.lowOffset(), odd, lowHalf, lowTaps, sample);
    sumUpsampled(shape.highLength(), shape.highOffset(), odd, highHalf, highTaps, high);
    sample += high;
}

template <class Shape>
void synthesiseAlongShaped(const Shape& shape, const double* lowHalf, const double* highHalf,
                           std::size_t count, const WaveletFilter& low,
                           const WaveletFilter& high, double* result) {
    const Taps lowTaps(low, shape.lowLength());
    const Taps highTaps(high, shape.highLength());
    std::size_t t = 0;
#if defined(__GNUC__)
    for (; t + kLanes <= count; t += kLanes) {
        Lanes samples[2];
        sampleAlong(shape, 0, lowHalf + t, highHalf + t, lowTaps, highTaps, samples[0]);
        sampleAlong(shape, 1, lowHalf + t, highHalf + t, lowTaps, highTaps, samples[1]);
        storeJoined(samples[0], samples[1], result + 2 * t);
    }
#endif
    for (; t < count; ++t) {
        double* to = result + 2 * t;
        sampleAlong(shape, 0, lowHalf + t, highHalf + t, lowTaps, highTaps, to[0]);
        sampleAlong(shape, 1, lowHalf + t, highHalf + t, lowTaps, highTaps, to[1]);
    }
}

template <class Value, class Shape>
ORV_ALWAYS_INLINE void sampleAcross(const Shape& shape, int odd,
                                    const double* const* lowColumns,
                                    const double* const* highColumns, std::size_t y,
                                    const Taps& lowTaps, const Taps& highTaps, Value& sample) {
    Value high;
    sumUpsampledAcross(shape.lowLength(), shape.lowOffset(), odd, lowColumns, y, lowTaps,
                       sample);
    sumUpsampledAcross(shape.highLength(), shape.highOffset(), odd, highColumns, y, highTaps,
                       high);
    sample += high;
}

template <class Shape>
void synthesiseAcrossShaped(const Shape& shape, const double* const* lowColumns,
                            const double* const* highColumns, std::size_t rows,
                            const WaveletFilter& low, const WaveletFilter& high, double* even,
                            double* odd) {
    const Taps lowTaps(low, shape.lowLength());
    const Taps highTaps(high, shape.highLength());
    std::size_t y = 0;
#if defined(__GNUC__)
    for (; y + kLanes <= rows; y += kLanes) {
        Lanes samples[2];
        sampleAcross(shape, 0, lowColumns, highColumns, y, lowTaps, highTaps, samples[0]);
        sampleAcross(shape, 1, lowColumns, highColumns, y, lowTaps, highTaps, samples[1]);
        store(even + y, samples[0]);
        store(odd + y, samples[1]);
    }
#endif
    for (; y < rows; ++y) {
        sampleAcross(shape, 0, lowColumns, highColumns, y, lowTaps, highTaps, even[y]);
        sampleAcross(shape, 1, lowColumns, highColumns, y, lowTaps, highTaps, odd[y]);
    }
}

void analyseAcross(const double* const* columns, std::size_t rows, const WaveletFilter& low,
                   const WaveletFilter& high, double* lowEven, double* lowOdd, double* highEven,
                   double* highOdd) {
    withAnalysisShape(low, high, [&](auto shape) {
        analyseAcrossShaped(shape, columns, rows, low, high, lowEven, lowOdd, highEven,
                            highOdd);
    });
}

void analyseAlong(const double* even, const double* odd, std::size_t count,
                  const WaveletFilter& low, const WaveletFilter& high, double* lowResult,
                  double* highResult) {
    withAnalysisShape(low, high, [&](auto shape) {
        analyseAlongShaped(shape, even, odd, count, low, high, lowResult, highResult);
    });
}

void synthesiseAlong(const double* lowHalf, const double* highHalf, std::size_t count,
                     const WaveletFilter& low, const WaveletFilter& high, double* result) {
    withSynthesisShape(low, high, [&](auto shape) {
        synthesiseAlongShaped(shape, lowHalf, highHalf, count, low, high, result);
    });
}

void synthesiseAcross(const double* const* lowColumns, const double* const* highColumns,
                      std::size_t rows, const WaveletFilter& low, const WaveletFilter& high,
                      double* even, double* odd) {
    withSynthesisShape(low, high, [&](auto shape) {
        synthesiseAcrossShaped(shape, lowColumns, highColumns, rows, low, high, even, odd);
    });
}

#undef ORV_UNROLL_TAPS
#undef ORV_ALWAYS_INLINE

}  // namespace

extern const WaveletKernels kWaveletKernels;
constinit const WaveletKernels kWaveletKernels = {analyseAcross, analyseAlong, synthesiseAlong,
                                                  synthesiseAcross};

}  // namespace orv::ORV_KERNEL_NAMESPACE
