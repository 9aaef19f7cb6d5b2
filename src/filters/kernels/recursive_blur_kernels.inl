// Bodies of the table in recursive_blur_kernels.h, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "filters/kernels/column_tiles.inl"

// What a step computes at once, and fetches of the next column.
constexpr int kStepBytes = 256;
constexpr int kLineBytes = 64;
// Pieces of the columns that a step reads, and of the next one, fit the first-level cache.
constexpr int kPieceBytes = 4096;

template <class Sample>
[[gnu::always_inline]] inline void stepSamples(const RecursionCoefficients<Sample> k,
                                               const Sample* in,
                                               const RecursionHistory<Sample>& history,
                                               int from, int to, Sample* out) {
    ORV_LANE_LOOP
    for (int i = from; i < to; ++i) {
        out[i] = k.gain * in[i] + k.near * history.near[i] + k.middle * history.middle[i] +
                 k.far * history.far[i];
    }
}

// One step of the recursion for samples `from` to `to` of a column; the same samples `ahead` of
// it are fetched.
template <class Sample>
void stepPiece(const RecursionCoefficients<Sample>& coefficients, const Sample* in,
               const RecursionHistory<Sample>& history, int from, int to, std::ptrdiff_t ahead,
               Sample* out) {
    constexpr int kBlock = kStepBytes / static_cast<int>(sizeof(Sample));
    constexpr int kLine = kLineBytes / static_cast<int>(sizeof(Sample));
    const RecursionCoefficients<Sample> k = coefficients;
    const RecursionHistory<Sample> before = history;
    int i = from;
    for (; i + kBlock <= to; i += kBlock) {
        for (int line = 0; line < kBlock; line += kLine) {
            ORV_PREFETCH(in + ahead + i + line);
            ORV_PREFETCH_WRITE(out + ahead + i + line);
        }
        stepSamples(k, in, before, i, i + kBlock, out);
    }
    stepSamples(k, in, before, i, to, out);
}

template <class Sample>
void runAlongX(const RecursionCoefficients<Sample>& coefficients, const ColumnRun<Sample>& run,
               const RecursionHistory<Sample>& history) {
    constexpr int kPiece = kPieceBytes / static_cast<int>(sizeof(Sample));
    for (int from = 0; from < run.length; from += kPiece) {
        const int to = run.length - from < kPiece ? run.length : from + kPiece;
        RecursionHistory<Sample> before = history;
        for (int column = 0; column < run.columns; ++column) {
            const std::ptrdiff_t offset = column * run.stride;
            const bool more = column + 1 < run.columns;
            stepPiece(coefficients, run.in + offset, before, from, to, more ? run.stride : 0,
                      run.out + offset);
            before = {run.out + offset, before.near, before.middle};
        }
    }
}

// Rows of `lanes` samples: `out` from `in` and the three rows before it, `rowStep` samples on.
template <int kLanes, class Sample>
[[gnu::always_inline]] inline void stepRow(const RecursionCoefficients<Sample> k,
                                           const Sample* in, const Sample* near,
                                           std::ptrdiff_t rowStep, Sample* out) {
    const Sample* middle = near + rowStep;
    const Sample* far = middle + rowStep;
    ORV_LANE_LOOP
    for (int j = 0; j < kLanes; ++j) {
        out[j] = k.gain * in[j] + k.near * near[j] + k.middle * middle[j] + k.far * far[j];
    }
}

// Fills the strip: three rows of reflected samples, then the recursion downwards.
template <int kLanes, class Sample>
void runDown(const RecursionCoefficients<Sample> k, const ColumnBlock<Sample>& block,
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
void runUp(const RecursionCoefficients<Sample> k, const Sample* strip,
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
    runDown<kLanes>(coefficients, block, strip);
    runUp<kLanes>(coefficients, strip, block);
}

template <class Sample>
void blurColumns(const RecursionCoefficients<Sample>& coefficients,
                 const ColumnBlock<Sample>& block, Sample* strip, int lanes) {
    switch (lanes) {
        case 16:
            return blurLanes<16>(coefficients, block, strip);
        case 32:
            return blurLanes<32>(coefficients, block, strip);
        default:
            return blurLanes<64>(coefficients, block, strip);
    }
}

}  // namespace

extern const RecursiveBlurKernels kRecursiveBlurKernels;
constinit const RecursiveBlurKernels kRecursiveBlurKernels = {
    {runAlongX<float>, blurColumns<float>},
    {runAlongX<double>, blurColumns<double>},
};

}  // namespace orv::ORV_KERNEL_NAMESPACE
