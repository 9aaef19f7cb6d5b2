#pragma once

#include "base/kernel_target.h"

namespace orv {

/// The formulas that the kernels know; the first four are the numbers of the shock methods.
enum class ShockKind { Sign, DiffusiveSign, Arctan, DiffusiveArctan, Other };

/// A shock term as the kernels take it.
struct ShockFormula {
    ShockKind kind = ShockKind::Other;
    double diffusionWeight = 0.0;
    double arctanFactor = 0.0;  ///< what eta is multiplied by under the arc tangent
};

/// Samples (x, 1) onwards of three neighbouring columns; each has a sample in front and behind.
struct ShockColumns {
    const double* west;
    const double* here;
    const double* east;
};

/// Hot loops of the shock filter: one step down the interior of one column, with the bits of
/// the scalar terms.
struct ShockKernels {
    /// out[i] = in[i] + timeStep value(i), limited to 0 and 255.
    ///
    /// Shapes:  out overlaps none of the other columns.
    /// Cost:    one square root a sample, no division but for the diffusion and the arc
    ///          tangent: the sign of a quotient is that of its numerator.
    using Column = void (*)(const ShockColumns& columns, const double* in, int count,
                            const ShockFormula& formula, double timeStep, double* out);

    /// By `ShockKind`, `Other` left out.
    Column columns[4];
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const ShockKernels& shockKernels();
/// The table of one target; null when the build has no code for it.
const ShockKernels* shockKernels(KernelTarget target);

}  // namespace orv
