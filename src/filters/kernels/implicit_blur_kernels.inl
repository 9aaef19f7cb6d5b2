// Bodies of the table in implicit_blur_kernels.h, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "filters/kernels/column_tiles.inl"

void eliminate(float m, const float* before, std::size_t n, float* here) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        here[i] = here[i] - m * before[i];
    }
}

void divide(float p, std::size_t n, float* here) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        here[i] = here[i] / p;
    }
}

void substitute(float s, float p, const float* behind, std::size_t n, float* here) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        here[i] = (here[i] - s * behind[i]) / p;
    }
}

// The elimination down the columns, its rows stored in the strip.
template <int kLanes>
void eliminateColumns(const ThomasFactors& factors, const ColumnBlock<float>& block,
                      float* strip) {
    float* row = strip;
    for (int first = 0; first < block.length; first += kTile) {
        const int rows = block.length - first < kTile ? block.length - first : kTile;
        gatherTile<kLanes>(block, first, rows, row);
        for (int i = first; i < first + rows; ++i) {
            if (i > 0) {
                eliminate(factors.multipliers[i - 1], row - kLanes, kLanes, row);
            }
            row += kLanes;
        }
    }
}

// The substitution up the strip, in place; each tile goes back to the columns.
template <int kLanes>
void substituteColumns(const ThomasFactors& factors, float* strip,
                       const ColumnBlock<float>& block) {
    int rows = block.length % kTile == 0 ? kTile : block.length % kTile;
    for (int first = block.length - rows; first >= 0; first -= kTile) {
        for (int i = first + rows - 1; i >= first; --i) {
            float* row = strip + static_cast<std::ptrdiff_t>(i) * kLanes;
            if (i == block.length - 1) {
                divide(factors.pivots[i], kLanes, row);
            } else {
                substitute(factors.super[i], factors.pivots[i], row + kLanes, kLanes, row);
            }
        }
        scatterTile<kLanes>(strip + static_cast<std::ptrdiff_t>(first) * kLanes, first, rows,
                            block);
        rows = kTile;
    }
}

template <int kLanes>
void solveLanes(const ThomasFactors& factors, const ColumnBlock<float>& block, float* strip) {
    if (block.columns < kLanes) {
        // Lanes without a column: what they hold must not slow the arithmetic down.
        __builtin_memset(strip, 0,
                         static_cast<std::size_t>(block.length) * kLanes * sizeof(float));
    }
    eliminateColumns<kLanes>(factors, block, strip);
    substituteColumns<kLanes>(factors, strip, block);
}

void solveColumns(const ThomasFactors& factors, const ColumnBlock<float>& block, float* strip,
                  int lanes) {
    switch (lanes) {
        case 16:
            return solveLanes<16>(factors, block, strip);
        case 32:
            return solveLanes<32>(factors, block, strip);
        default:
            return solveLanes<64>(factors, block, strip);
    }
}

}  // namespace

extern const ImplicitBlurKernels kImplicitBlurKernels;
constinit const ImplicitBlurKernels kImplicitBlurKernels = {eliminate, divide, substitute,
                                                            solveColumns};

}  // namespace orv::ORV_KERNEL_NAMESPACE
