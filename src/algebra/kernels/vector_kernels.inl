// Bodies of vector_kernels.h. Plain loops, compiled once per kernel target.

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

constexpr int kLanes = 8;

double joinLanes(const double* lanes) {
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

// Sums fetch kFetchAhead elements ahead, a run of kFetchRun at a time: the additions of a lane
// wait for each other, and the processor's own prefetching falls behind.
constexpr int kFetchRun = 128;
constexpr int kFetchAhead = 1024;
constexpr int kLineElements = 16;

inline void fetchRun([[maybe_unused]] const float* first) {
#if defined(__GNUC__)
    for (int i = 0; i < kFetchRun; i += kLineElements) {
        __builtin_prefetch(first + i);
    }
#endif
}

// The sum of term(i) in the declared order; fetch(i) announces a run. The lane loop and the run
// have fixed lengths, so that compilers keep the lanes in vector registers.
template <class Fetch, class Term>
inline double sumInLanes(int n, Fetch fetch, Term term) {
    double lanes[kLanes] = {};
    int i = 0;
    while (i + kFetchRun <= n) {
        if (n - i >= kFetchAhead + kFetchRun) {
            fetch(i + kFetchAhead);
        }
        for (const int end = i + kFetchRun; i < end; i += kLanes) {
            for (int lane = 0; lane < kLanes; ++lane) {
                lanes[lane] += term(i + lane);
            }
        }
    }
    for (; i + kLanes <= n; i += kLanes) {
        for (int lane = 0; lane < kLanes; ++lane) {
            lanes[lane] += term(i + lane);
        }
    }
    for (int lane = 0; i + lane < n; ++lane) {
        lanes[lane] += term(i + lane);
    }
    return joinLanes(lanes);
}

double sumOfSquares(const float* x, int n) {
    return sumInLanes(
        n, [x](int i) { fetchRun(x + i); }, [x](int i) { return double{x[i]} * double{x[i]}; });
}

double dot(const float* x, const float* y, int n) {
    return sumInLanes(
        n,
        [x, y](int i) {
            fetchRun(x + i);
            fetchRun(y + i);
        },
        [x, y](int i) { return double{x[i]} * double{y[i]}; });
}

double sum(const float* x, int n) {
    return sumInLanes(
        n, [x](int i) { fetchRun(x + i); }, [x](int i) { return double{x[i]}; });
}

void fill(float* v, float a, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = a;
    }
}

void addScalar(float* v, float a, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = v[i] + a;
    }
}

void multiplyScalar(float* v, float a, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = v[i] * a;
    }
}

void divideScalar(float* v, float a, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = v[i] / a;
    }
}

void setScaled(float* v, float a, const float* x, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = a * x[i];
    }
}

void setDifference(float* v, const float* x, const float* y, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = x[i] - y[i];
    }
}

void add(float* v, const float* x, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = v[i] + x[i];
    }
}

void addScaled(float* v, float a, const float* x, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = v[i] + a * x[i];
    }
}

// The terms are asked for once each, in order, so the update can go along with the sum.
double addScaledSumSquares(float* __restrict v, float a, const float* __restrict x, int n) {
    return sumInLanes(
        n,
        [=](int i) {
            fetchRun(v + i);
            fetchRun(x + i);
        },
        [=](int i) {
            const float updated = v[i] + a * x[i];
            v[i] = updated;
            return double{updated} * double{updated};
        });
}

void addScaled2(float* v, float a, const float* x, float b, const float* y, int n) {
    const double da = a;
    const double db = b;
    for (int i = 0; i < n; ++i) {
        v[i] = static_cast<float>((double{v[i]} + da * double{x[i]}) + db * double{y[i]});
    }
}

void addScaled3(float* v, float a, const float* x, float b, const float* y, float c,
                const float* z, int n) {
    const double da = a;
    const double db = b;
    const double dc = c;
    for (int i = 0; i < n; ++i) {
        v[i] = static_cast<float>(((double{v[i]} + da * double{x[i]}) + db * double{y[i]}) +
                                  dc * double{z[i]});
    }
}

void scaleAdd(float* v, float a, const float* x, int n) {
    for (int i = 0; i < n; ++i) {
        v[i] = a * v[i] + x[i];
    }
}

void scaleAddScaled(float* v, float a, float b, const float* x, int n) {
    const double da = a;
    const double db = b;
    for (int i = 0; i < n; ++i) {
        v[i] = static_cast<float>(da * double{v[i]} + db * double{x[i]});
    }
}

void scaleAddScaled2(float* v, float a, float b, const float* x, float c, const float* y,
                     int n) {
    const double da = a;
    const double db = b;
    const double dc = c;
    for (int i = 0; i < n; ++i) {
        v[i] = static_cast<float>((da * double{v[i]} + db * double{x[i]}) + dc * double{y[i]});
    }
}

void addProduct(float* y, const float* v, const float* x, int n) {
    for (int i = 0; i < n; ++i) {
        y[i] = y[i] + v[i] * x[i];
    }
}

// One pass over y for all diagonals: a row is summed in a register, in the order of the terms.
template <int kCount, bool kFromZero>
void sumBandRows(float* __restrict y, const BandTerm* terms, int n) {
    const float* values[kCount];
    const float* x[kCount];
    for (int k = 0; k < kCount; ++k) {
        values[k] = terms[k].values;
        x[k] = terms[k].x;
    }
    for (int i = 0; i < n; ++i) {
        float sum = kFromZero ? 0.0f : y[i];
        for (int k = 0; k < kCount; ++k) {
            sum = sum + values[k][i] * x[k][i];
        }
        y[i] = sum;
    }
}

template <bool kFromZero>
void sumBandRowsOf(float* y, const BandTerm* terms, int count, int n) {
    static_assert(kBandTerms == 5);
    switch (count) {
        case 1:
            return sumBandRows<1, kFromZero>(y, terms, n);
        case 2:
            return sumBandRows<2, kFromZero>(y, terms, n);
        case 3:
            return sumBandRows<3, kFromZero>(y, terms, n);
        case 4:
            return sumBandRows<4, kFromZero>(y, terms, n);
        case 5:
            return sumBandRows<5, kFromZero>(y, terms, n);
        default:
            break;
    }
}

void setBandRows(float* y, const BandTerm* terms, int count, int n) {
    if (count == 0) {
        fill(y, 0.0f, n);
    }
    sumBandRowsOf<true>(y, terms, count, n);
}

void addBandRows(float* y, const BandTerm* terms, int count, int n) {
    sumBandRowsOf<false>(y, terms, count, n);
}

void accumulateProduct(double* sums, const float* v, const float* x, int n) {
    for (int i = 0; i < n; ++i) {
        sums[i] = sums[i] + double{v[i]} * double{x[i]};
    }
}

void accumulateRows4(double* __restrict sums, const float* a, const float* x0, const float* x1,
                     const float* x2, const float* x3, int n) {
    const double a0 = a[0];
    const double a1 = a[1];
    const double a2 = a[2];
    const double a3 = a[3];
    for (int i = 0; i < n; ++i) {
        sums[i] = (((sums[i] + a0 * double{x0[i]}) + a1 * double{x1[i]}) + a2 * double{x2[i]}) +
                  a3 * double{x3[i]};
    }
}

void accumulateScaled(double* __restrict sums, float a, const float* x, int n) {
    const double da = a;
    for (int i = 0; i < n; ++i) {
        sums[i] = sums[i] + da * double{x[i]};
    }
}

// The terms of row i of a tridiagonal product.
inline double lineTerms(const float* below, const float* main, const float* above,
                        const float* x, int i) {
    return (double{above[i]} * double{x[i + 1]} + double{below[i - 1]} * double{x[i - 1]}) +
           double{main[i]} * double{x[i]};
}

void addTridiagonalProduct(float* __restrict y, const float* below, const float* main,
                           const float* above, const float* x, int n) {
    for (int i = 1; i < n - 1; ++i) {
        y[i] = static_cast<float>(double{y[i]} + lineTerms(below, main, above, x, i));
    }
}

void setTridiagonalProduct(float* __restrict y, const float* below, const float* main,
                           const float* above, const float* x, int n) {
    for (int i = 1; i < n - 1; ++i) {
        y[i] = static_cast<float>(lineTerms(below, main, above, x, i));
    }
}

}  // namespace

extern const VectorKernels kVectorKernels;
const VectorKernels kVectorKernels = {
    sumOfSquares,
    dot,
    sum,
    fill,
    addScalar,
    multiplyScalar,
    divideScalar,
    setScaled,
    setDifference,
    add,
    addScaled,
    addScaledSumSquares,
    addScaled2,
    addScaled3,
    scaleAdd,
    scaleAddScaled,
    scaleAddScaled2,
    addProduct,
    setBandRows,
    addBandRows,
    accumulateProduct,
    accumulateRows4,
    accumulateScaled,
    addTridiagonalProduct,
    setTridiagonalProduct,
};

}  // namespace orv::ORV_KERNEL_NAMESPACE
