#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// The engine's own exp, log, log10, 10^x, arc tangent and power, over arrays.
///
/// They take the place of the C library's wherever samples pass through one: with the same bits
/// on every instruction set, compiler and platform, and several times as fast.
///
///     y[i] = f(x[i]),   i = 0 .. n - 1
///
/// Shapes:  n values in, n values out; y may be x, other overlaps may not be.
/// Domain:  every double. As the C standard tells for special values: log(0) is minus infinity,
///          log of a negative number NaN, pow(x, 0) and pow(1, y) are 1 even for NaN. A NaN
///          that comes out is the positive quiet NaN without payload.
/// Cost:    one pass, no allocation. The error stays below 1 unit in the last place.
struct ElementaryKernels {
    using Function = void (*)(const double* x, double* y, std::size_t n);

    Function exp;
    Function log;
    Function log10;
    Function exp10;
    Function atan;
    /// y[i] = x[i] to the power of one exponent.
    void (*pow)(const double* x, double exponent, double* y, std::size_t n);
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const ElementaryKernels& elementaryKernels();
/// The table of one target; null when the build has no code for it.
const ElementaryKernels* elementaryKernels(KernelTarget target);

}  // namespace orv
