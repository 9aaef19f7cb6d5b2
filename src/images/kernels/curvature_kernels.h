#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// A column of a plane and its two neighbours, as a stencil reads them.
struct StencilColumns {
    const double* west;  ///< column x - 1
    const double* here;  ///< column x
    const double* east;  ///< column x + 1
};

/// The weights of a step: of the curvature term and of the geodesic term.
struct CurvatureWeights {
    double coeff;
    double cgrad;
};

/// Hot loops of the curvature flows, one column at a time with y running fastest.
///
///     fx = (I(x+1, y) - I(x-1, y)) / 2     fy likewise     D = 1 + fx fx + fy fy
///     N = (1 + fy fy) fxx - 2 fx fy fxy + (1 + fx fx) fyy
///
/// The term is N / (D D), N / (D sqrt(D)) or N / D, entries 0, 1 and 2 of the arrays. The power
/// 1.5 is two correctly rounded operations, so that no target can differ.
///
/// Every expression is evaluated in the order of images/real_image_differences.h, so that every
/// target gives the bits of those functions.
///
/// Shapes:  columns of `height` samples; what is written aliases nothing that is read. Results
///          are limited to 0 and 255, NaN stays NaN.
/// Cost:    the divisions bound it; for entry 1 the root as well.
struct CurvatureKernels {
    /// sample = coeff term + columns.here, y from 1 to height - 2, and eastCopy = columns.east,
    /// all of it: the next step to the east reads it after `sample` has moved on.
    using Plain = void (*)(const StencilColumns& columns, int height, double coeff,
                           double* eastCopy, double* sample);
    Plain plain[3];

    /// sample = coeff term + cgrad G + sample, y from 2 to height - 3, with the columns of g:
    ///
    ///     G = (g(x+1, y) - g(x-1, y)) / 2 fx + (g(x, y+1) - g(x, y-1)) / 2 fy
    using Geodesic = void (*)(const StencilColumns& columns, const StencilColumns& stopping,
                              int height, const CurvatureWeights& weights, double* sample);
    Geodesic geodesic[3];

    /// g = 1 / D, y from 1 to height - 2.
    void (*edgeStopping)(const StencilColumns& columns, int height, double* g);

    /// sample = coeff increment + sample in the three channels, y from 2 to height - 3; the
    /// increment is that of fullColorBeltramiStep().
    void (*fullColor)(const StencilColumns* channels, int height, double coeff,
                      double* const* samples);

    /// sample = addend + sample, for `count` samples.
    void (*addAndLimit)(double addend, std::size_t count, double* samples);
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const CurvatureKernels& curvatureKernels();

}  // namespace orv
