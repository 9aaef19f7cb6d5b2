#pragma once

#include "base/kernel_target.h"

namespace orv {

/// What one stored diagonal adds to a run of rows: values[i] x[i].
struct BandTerm {
    const float* values;
    const float* x;
};

/// How many diagonals one call of the band kernels takes: the five of a plane's system.
inline constexpr int kBandTerms = 5;

/// The loops over contiguous memory under RealVector and the matrices.
///
/// Every target gives the same bits. Arrays may be the same array, but not overlap otherwise.
/// Sums accumulate in double: element i goes to lane i mod 8, the lanes join pairwise, as
/// ((0 + 1) + (2 + 3)) + ((4 + 5) + (6 + 7)).
struct VectorKernels {
    /// Sum of x[i] x[i].
    double (*sumOfSquares)(const float* x, int n);
    /// Sum of x[i] y[i].
    double (*dot)(const float* x, const float* y, int n);
    /// Sum of x[i].
    double (*sum)(const float* x, int n);

    /// v[i] = a
    void (*fill)(float* v, float a, int n);
    /// v[i] += a
    void (*addScalar)(float* v, float a, int n);
    /// v[i] *= a
    void (*multiplyScalar)(float* v, float a, int n);
    /// v[i] /= a
    void (*divideScalar)(float* v, float a, int n);
    /// v[i] = a x[i]
    void (*setScaled)(float* v, float a, const float* x, int n);
    /// v[i] = x[i] - y[i]
    void (*setDifference)(float* v, const float* x, const float* y, int n);
    /// v[i] += x[i]
    void (*add)(float* v, const float* x, int n);
    /// v[i] += a x[i], float
    void (*addScaled)(float* v, float a, const float* x, int n);
    /// v[i] += a x[i], float; the sum of the squares of what v then holds. x isn't v.
    double (*addScaledSumSquares)(float* v, float a, const float* x, int n);
    /// v[i] += a x[i] + b y[i], double, rounded once
    void (*addScaled2)(float* v, float a, const float* x, float b, const float* y, int n);
    /// v[i] += a x[i] + b y[i] + c z[i], double, rounded once
    void (*addScaled3)(float* v, float a, const float* x, float b, const float* y, float c,
                       const float* z, int n);
    /// v[i] = a v[i] + x[i], float
    void (*scaleAdd)(float* v, float a, const float* x, int n);
    /// v[i] = a v[i] + b x[i], double, rounded once
    void (*scaleAddScaled)(float* v, float a, float b, const float* x, int n);
    /// v[i] = a v[i] + b x[i] + c y[i], double, rounded once
    void (*scaleAddScaled2)(float* v, float a, float b, const float* x, float c, const float* y,
                            int n);

    /// y[i] += v[i] x[i], float.
    void (*addProduct)(float* y, const float* v, const float* x, int n);
    /// y[i] = ((0 + term 0) + term 1) + ..., float, each operation rounded: rows that `count`
    /// diagonals reach, 0 to kBandTerms. No array overlaps y.
    void (*setBandRows)(float* y, const BandTerm* terms, int count, int n);
    /// y[i] = ((y[i] + term 0) + term 1) + ..., likewise.
    void (*addBandRows)(float* y, const BandTerm* terms, int count, int n);
    /// sums[i] += v[i] x[i] in double: one diagonal of a row sum.
    void (*accumulateProduct)(double* sums, const float* v, const float* x, int n);
    /// sums[i] += a[0] x0[i] + ... + a[3] x3[i] in double, the terms one after the other: four
    /// rows of a band elimination.
    void (*accumulateRows4)(double* sums, const float* a, const float* x0, const float* x1,
                            const float* x2, const float* x3, int n);
    /// sums[i] += a x[i] in double.
    void (*accumulateScaled)(double* sums, float a, const float* x, int n);
    /// y[i] += above[i] x[i + 1] + below[i - 1] x[i - 1] + main[i] x[i] for i from 1 to n - 2;
    /// the three terms are summed in double in this order, y is added, the sum rounded once.
    void (*addTridiagonalProduct)(float* y, const float* below, const float* main,
                                  const float* above, const float* x, int n);
    /// y[i] = the same three terms, rounded once.
    void (*setTridiagonalProduct)(float* y, const float* below, const float* main,
                                  const float* above, const float* x, int n);
};

/// The table of the best target, chosen at the first call and kept for the process.
const VectorKernels& vectorKernels();

/// The table of a given target, or of the best one below it that this build holds and this
/// processor can run.
const VectorKernels& vectorKernels(KernelTarget target);

}  // namespace orv
