// Bodies of the table in recursive_blur_kernels.h, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/transpose_tile.inl"
#include "base/kernels/transpose_tile_double.inl"

constexpr int kTile = 8;

template <class Sample>
void step(const RecursionCoefficients<Sample>& coefficients, const Sample* in,
          const RecursionHistory<Sample>& history, std::size_t n, Sample* out) {
    const RecursionCoefficients<Sample> k = coefficients;
    const RecursionHistory<Sample> before = history;
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < n; ++i) {
        out[i] = k.gain * in[i] + k.near * before.near[i] + k.middle * before.middle[i] +
                 k.far * before.far[i];
    }
}

// Rows of `lanes` samples: `out` from `in` and the three rows before it, `rowStep` samples on.
template <int kLanes, class Sample>
[[gnu::always_inline]] inline void stepRow(const RecursionCoefficients<Sample>& k,
                                           const Sample* in, const Sample* near,
                                           std::ptrdiff_t rowStep, Sample* out) {
    const Sample* middle = near + rowStep;
    const Sample* far = middle + rowStep;
    ORV_LANE_LOOP
    for (int j = 0; j < kLanes; ++j) {
        out[j] = k.gain * in[j] + k.near * near[j] + k.middle * middle[j] + k.far * far[j];
    }
}

// Rows `first` to `first` + kTile of the columns become rows of the tile.
template <int kLanes, class Sample>
void gatherTile(const ColumnBlock<Sample>& block, int first, int rows, Sample* tile) {
    int j = 0;
    if (rows == kTile) {
        for (; j + kTile <= block.columns; j += kTile) {
            transposeTile(block.data + static_cast<std::size_t>(j) * block.stride + first,
                          block.stride, tile + j, kLanes);
        }
    }
    for (; j < block.columns; ++j) {
        const Sample* column = block.data + static_cast<std::size_t>(j) * block.stride + first;
        for (int i = 0; i < rows; ++i) {
            tile[i * kLanes + j] = column[i];
        }
    }
}

template <int kLanes, class Sample>
void scatterTile(const Sample* tile, int first, int rows, const ColumnBlock<Sample>& block) {
    int j = 0;
    if (rows == kTile) {
        for (; j + kTile <= block.columns; j += kTile) {
            transposeTile(tile + j, kLanes,
                          block.data + static_cast<std::size_t>(j) * block.stride + first,
                          block.stride);
        }
    }
    for (; j < block.columns; ++j) {
        Sample* column = block.data + static_cast<std::size_t>(j) * block.stride + first;
        for (int i = 0; i < rows; ++i) {
            column[i] = tile[i * kLanes + j];
        }
    }
}

// Fills the strip: three rows of reflected samples, then the recursion downwards.
template <int kLanes, class Sample>
void runDown(const RecursionCoefficients<Sample>& k, const ColumnBlock<Sample>& block,
             Sample* strip) {
    alignas(64) Sample tile[kTile * kLanes] = {};
    gatherTile<kLanes>(block, 0, 3, tile);
    // quirk: blur-line-start
    for (int i = 0; i < 3; ++i) {
        __builtin_memcpy(strip + i * kLanes, tile + (2 - i) * kLanes, kLanes * sizeof(Sample));
    }
    Sample* out = strip + 3 * kLanes;
    for (int first = 0; first < block.length; first += kTile) {
        const int rows = block.length - first < kTile ? block.length - first : kTile;
        gatherTile<kLanes>(block, first, rows, tile);
        for (int i = 0; i < rows; ++i) {
            stepRow<kLanes>(k, tile + i * kLanes, out - kLanes, -kLanes, out);
            out += kLanes;
        }
    }
}

// The recursion upwards over the strip, its rows written back to the columns.
template <int kLanes, class Sample>
void runUp(const RecursionCoefficients<Sample>& k, const Sample* strip,
           const ColumnBlock<Sample>& block) {
    // The rows below the one that is computed stand behind it.
    alignas(64) Sample tile[(kTile + 3) * kLanes];
    const Sample* in = strip + static_cast<std::ptrdiff_t>(block.length + 2) * kLanes;
    int rows = block.length % kTile == 0 ? kTile : block.length % kTile;
    for (int i = 0; i < 3; ++i) {
        __builtin_memcpy(tile + (rows + i) * kLanes, in - i * kLanes, kLanes * sizeof(Sample));
    }
    for (int first = block.length - rows; first >= 0; first -= kTile) {
        for (int i = rows - 1; i >= 0; --i) {
            stepRow<kLanes>(k, in, tile + (i + 1) * kLanes, kLanes, tile + i * kLanes);
            in -= kLanes;
        }
        scatterTile<kLanes>(tile, first, rows, block);
        rows = kTile;
        __builtin_memmove(tile + kTile * kLanes, tile, 3 * kLanes * sizeof(Sample));
    }
}

template <int kLanes, class Sample>
void blurLanes(const RecursionCoefficients<Sample>& coefficients,
               const ColumnBlock<Sample>& block, Sample* strip) {
    const RecursionCoefficients<Sample> k = coefficients;
    runDown<kLanes>(k, block, strip);
    runUp<kLanes>(k, strip, block);
}

template <class Sample>
void blurColumns(const RecursionCoefficients<Sample>& coefficients,
                 const ColumnBlock<Sample>& block, Sample* strip, int lanes) {
    switch (lanes) {
        case 16:
            return blurLanes<16>(coefficients, block, strip);
        case 32:
            return blurLanes<32>(coefficients, block, strip);
        case 64:
            return blurLanes<64>(coefficients, block, strip);
        default:
            return blurLanes<128>(coefficients, block, strip);
    }
}

}  // namespace

extern const RecursiveBlurKernels kRecursiveBlurKernels;
constinit const RecursiveBlurKernels kRecursiveBlurKernels = {
    {step<float>, blurColumns<float>},
    {step<double>, blurColumns<double>},
};

}  // namespace orv::ORV_KERNEL_NAMESPACE
