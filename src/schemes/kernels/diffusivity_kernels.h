#pragma once

#include "base/kernel_target.h"

namespace orv {

/// Samples (x, 1) onwards of three neighbouring columns; each has a sample in front and behind.
struct ColumnStencil {
    const float* west;
    const float* here;
    const float* east;
};

/// Hot loops of the diffusivity, one interior column a call, in double as the scalar classes
/// compute it and with their bits.
///
/// The first index of `columns` is the flavour of the gradient norm, 0 to 5, the second one the
/// formula: Perona/Malik, variational, total variation, Weickert 2, 3, 4.
struct DiffusivityKernels {
    /// out[i] = g(norm / contrastSquared), 1 where the norm is 0.
    ///
    /// Cost:    Perona/Malik one division a sample: k / (k + n) is within 2^-50 of the
    ///          1 / (1 + n / k) that is defined, so a sample whose neighbourhood of that size
    ///          rounds to one float is right. A chunk with any other sample is done again by
    ///          the definition.
    using Column = void (*)(const ColumnStencil& stencil, int count, double contrastSquared,
                            float* out);

    Column columns[6][6];
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const DiffusivityKernels& diffusivityKernels();
/// The table of one target; null when the build has no code for it.
const DiffusivityKernels* diffusivityKernels(KernelTarget target);

}  // namespace orv
