#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// Up to 128 neighbouring lines of equal length, sample i of lane j at data[i * stride + j].
///
/// Rows of a plane lie in this order already, with the plane's height as stride; columns are
/// transposed into a strip, whose stride is its number of lanes.
struct ConstLines {
    const float* data;
    std::size_t stride;
};

/// ConstLines that a kernel writes.
struct Lines {
    float* data;
    std::size_t stride;
};

/// One system (I - step M) or (I + step M) a lane, M the line operator of a diffusivity.
struct LineSystems {
    ConstLines diffusivity;
    int length;
    int lanes;  ///< 16, 32, 64 or 128
    float step;
};

/// One LU factorisation that all lanes share; the elements of row i of L and U.
struct LineFactors {
    const float* lower;   ///< n - 1 floats: lower[i] belongs to row i + 1
    const float* pivots;  ///< n floats
    const float* upper;   ///< n - 1 floats
    int length;
};

/// Hot loops of the line schemes: one line a SIMD lane, each in the order and with the float
/// roundings of the scalar classes, so that every target gives the bits of a ThomasSolver on
/// an FTriDiagonalMatrix line by line (a NaN may differ in its sign and payload).
struct LineKernels {
    /// Solves (I - step M) x = b in every lane by LU without pivoting.
    ///
    ///     r(i) = (g(i) + g(i + 1)) / 2      u(i) = step r(i)
    ///     l(i) = u(i - 1) / p(i - 1)        p(i) = (r(i - 1) + r(i)) step + 1 - l(i) u(i - 1)
    ///     z(i) = b(i) + l(i) z(i - 1)       x(i) = (z(i) + u(i) x(i + 1)) / p(i)
    ///
    /// `average` stores (x + what stood there) / 2 instead of x.
    ///
    /// Shapes:  `pivots` and `partial` are strips of length * lanes floats. `b`, `x` and
    ///          `partial` may be one strip.
    /// Cost:    two divisions a sample; they and the memory bound it.
    void (*solveImplicit)(const LineSystems& systems, ConstLines b, Lines x, float* pivots,
                          float* partial, bool average);

    /// y = (I + step M) x in every lane; the three terms above, below, here are summed in
    /// double and rounded once.
    ///
    /// Shapes:  length at least 2; y does not alias x.
    void (*multiplyExplicit)(const LineSystems& systems, ConstLines x, Lines y);

    /// Solves L U x = b in every lane.
    ///
    /// Shapes:  `partial` is a strip of length * lanes floats; `b` and `x` may be the same.
    void (*solveFactored)(const LineFactors& factors, int lanes, ConstLines b, Lines x,
                          float* partial);

    /// Transposes `columns` columns of `length` samples, `columnStride` floats apart, into a
    /// strip of `lanes` lanes; the lanes that are left over become 0.
    void (*gatherColumns)(const float* plane, std::size_t columnStride, int columns, int length,
                          float* strip, int lanes);

    /// The way back. `average` stores (strip + what stood there) / 2.
    void (*scatterColumns)(const float* strip, int lanes, int columns, int length, float* plane,
                           std::size_t columnStride, bool average);

    /// out = (f r + u) scale in double, rounded once; u and out may be the same.
    void (*blendData)(const float* u, const float* f, double r, double scale, std::size_t count,
                      float* out);
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const LineKernels& lineKernels();
/// The table of one target; null when the build has no code for it.
const LineKernels* lineKernels(KernelTarget target);

}  // namespace orv
