#pragma once

#include <cstddef>

#include "base/kernel_target.h"

namespace orv {

/// Hot loops of the homomorphic filter, but for the exponentials and powers between them, which
/// are those of base/kernels/elementary_kernels.h. Every target gives the same bits.
struct HomomorphicKernels {
    /// y[i] = ln(x[i] + 0), from a table where the samples are whole numbers from 0 to 255.
    ///
    /// Shapes:  logarithms[k] = ln(k) for k = 0 .. 255; x and y don't overlap.
    void (*logarithm)(const double* x, const double* logarithms, double* y, std::size_t n);

    /// y[i] = x[i] - low[i]; y may be x.
    void (*difference)(const double* x, const double* low, double* y, std::size_t n);

    /// level[i] = m / 255 and share[i] = s / m brought to 0 .. 1, with s = source[i] and m the
    /// largest of light[i], 0 and s; NaN where light or s is NaN.
    ///
    /// Shapes:  level may be light.
    void (*split)(const double* source, const double* light, double* level, double* share,
                  std::size_t n);

    /// y[i] = level[i] 255 share[i]; y may be either.
    void (*join)(const double* level, const double* share, double* y, std::size_t n);
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const HomomorphicKernels& homomorphicKernels();
/// The table of one target; null when the build has no code for it.
const HomomorphicKernels* homomorphicKernels(KernelTarget target);

}  // namespace orv
