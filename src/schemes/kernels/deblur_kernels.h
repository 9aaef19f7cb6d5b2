#pragma once

#include <cstddef>

namespace orv {

/// The three planes of the right side of an AOS deblurring line.
struct DeblurPlanes {
    const float* u;
    const float* v;
    const float* w;
};

/// Hot loops of AOS deblurring around its line solves; every target gives the same bits.
struct DeblurKernels {
    /// right = u - ((v - w) lambda) tau, each operation rounded to float.
    void (*rightSide)(const DeblurPlanes& planes, float lambda, float tau, std::size_t count,
                      float* right);

    /// sum = sum + addend, then raised to `lowest`; what is at or above `highest` becomes it.
    void (*addAndClamp)(const float* addend, float lowest, float highest, std::size_t count,
                        float* sum);
};

/// The table of the best target of this machine and of ORV_MAX_TARGET.
const DeblurKernels& deblurKernels();

}  // namespace orv
