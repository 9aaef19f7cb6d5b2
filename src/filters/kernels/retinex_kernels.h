#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// A level of the Retinex descent: planes of w x h samples, column x from x h on.
struct RetinexLevel {
    int width;
    int height;
    const double* s;  ///< logarithm of the picture
    double* l;        ///< estimate of the logarithm of the illumination
    double* g;        ///< direction of the step
    double alpha;
    double beta;
};

/// Sums over a level: element i goes to lane i mod 8 of the whole plane, and the lanes join
/// pairwise, as ((0 + 1) + (2 + 3)) + ((4 + 5) + (6 + 7)).
struct RetinexSums {
    double gg;  ///< of G G
    double gb;  ///< of G Lap(G)
};

/// The loops of the variational Retinex and its pyramid. Every target gives the same bits.
///
/// Lap(p) is the five-point Laplacian p(x, y-1) + p(x, y+1) + p(x+1, y) + p(x-1, y) - 4 p(x, y).
/// On an edge it is the second difference along the edge alone, and in the corners 0; so it
/// reads nothing outside a plane that is one sample wide or high either.
struct RetinexKernels {
    /// target(i, j) = the smoothed p(2 i, 2 j), as PyramidBuilder tells it.
    ///
    /// Shapes:  p of a height of 2 targetHeight or one more, and a width likewise; no alias.
    void (*reduce)(const double* p, int height, double* target, int targetWidth,
                   int targetHeight);

    /// G = Lap(l) + (l - s) alpha - (Lap(l) - Lap(s)) beta over a level, and its sums.
    ///
    /// With `stepFirst` the step of the pass before is done on the way, l = max(l + mu G, s) by
    /// the old G: one walk through memory does what four would.
    RetinexSums (*sweep)(const RetinexLevel& level, double mu, bool stepFirst);

    /// l = max(l + mu G, s) for n samples; a sum that is not a number gives s.
    void (*step)(double* l, const double* g, const double* s, double mu, std::size_t n);

    /// One column of the next finer plane by bilinear interpolation, projected on v >= floor.
    ///
    ///     even y: (right(b) + left(b)) / 2, or left(b) without right;  b = y / 2
    ///     odd y:  (left(b) + left(b+1) + right(b+1) + right(b)) / 4, or half of two
    ///
    /// A sample for which a coarse one is missing, and every one when left is null, keeps the
    /// value that was done before: `before` for the first of the column.
    ///
    /// Shapes:  left and right coarseHeight samples or null, floor height / 2 + 1 at most,
    ///          target height samples, 2 coarseHeight or one more.
    void (*expandColumn)(const double* left, const double* right, int coarseHeight,
                         const double* floor, double before, double* target, int height);

    /// y = (x + offset) scale
    void (*rescale)(const double* x, double offset, double scale, double* y, std::size_t n);

    /// target = min(x / y, 1) factor; a quotient that is not a number stays so.
    void (*divideInto)(const double* x, const double* y, double factor, double* target,
                       std::size_t n);

    /// The largest of n samples, n at least 1; those that are no numbers are passed over unless
    /// the first one is.
    double (*largest)(const double* x, std::size_t n);
};

/// The table of the best target.
const RetinexKernels& retinexKernels();

/// The table of a given target, or of the best one below it.
const RetinexKernels& retinexKernels(KernelTarget highest);

}  // namespace orv
