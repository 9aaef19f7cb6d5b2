// Bodies of the table in recursive_blur_kernels.h, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "filters/kernels/column_tiles.inl"

// What a step computes at once, and fetches of the columns that come next.
constexpr int kStepBytes = 256;
constexpr int kLineBytes = 64;
// Pieces of the columns that a step reads, and of the next ones, fit the first-level cache.
constexpr int kPieceBytes = 2048;

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

// A column of the recursion: what is read, what is written, and how far off the one is that is
// fetched for later.
template <class Sample>
struct Step {
    const Sample* in;
    Sample* out;
    std::ptrdiff_t ahead;
};

template <class Sample>
[[gnu::always_inline]] inline void fetchAhead(const Step<Sample>& step, int i) {
    for (int line = 0; line < kStepBytes; line += kLineBytes) {
        const int sample = i + line / static_cast<int>(sizeof(Sample));
        ORV_PREFETCH(step.in + step.ahead + sample);
        ORV_PREFETCH_WRITE(step.out + step.ahead + sample);
    }
}

// One step of the recursion for samples `from` to `to` of a column.
template <class Sample>
void stepPiece(const RecursionCoefficients<Sample>& coefficients, const Step<Sample>& column,
               const RecursionHistory<Sample>& history, int from, int to) {
    constexpr int kBlock = kStepBytes / static_cast<int>(sizeof(Sample));
    const RecursionCoefficients<Sample> k = coefficients;
    const RecursionHistory<Sample> before = history;
    int i = from;
    for (; i + kBlock <= to; i += kBlock) {
        fetchAhead(column, i);
        stepSamples(k, column.in, before, i, i + kBlock, column.out);
    }
    stepSamples(k, column.in, before, i, to, column.out);
}

// Four steps at once, which read the columns before them but once.
template <class Sample>
void fourSteps(const RecursionCoefficients<Sample>& coefficients, const Step<Sample>& first,
               std::ptrdiff_t stride, const RecursionHistory<Sample>& history, int from,
               int to) {
    constexpr int kBlock = kStepBytes / static_cast<int>(sizeof(Sample));
    const RecursionCoefficients<Sample> k = coefficients;
    const RecursionHistory<Sample> before = history;
    const Sample* const in[] = {first.in, first.in + stride, first.in + 2 * stride,
                                first.in + 3 * stride};
    Sample* const out[] = {first.out, first.out + stride, first.out + 2 * stride,
                           first.out + 3 * stride};
    const auto samples = [&](int begin, int end) {
        const Sample* const in0 = in[0];
        const Sample* const in1 = in[1];
        const Sample* const in2 = in[2];
        const Sample* const in3 = in[3];
        Sample* const out0 = out[0];
        Sample* const out1 = out[1];
        Sample* const out2 = out[2];
        Sample* const out3 = out[3];
        ORV_LANE_LOOP
        for (int i = begin; i < end; ++i) {
            const Sample near = before.near[i];
            const Sample middle = before.middle[i];
            const Sample far = before.far[i];
            const Sample a = k.gain * in0[i] + k.near * near + k.middle * middle + k.far * far;
            const Sample b = k.gain * in1[i] + k.near * a + k.middle * near + k.far * middle;
            const Sample c = k.gain * in2[i] + k.near * b + k.middle * a + k.far * near;
            const Sample d = k.gain * in3[i] + k.near * c + k.middle * b + k.far * a;
            out0[i] = a;
            out1[i] = b;
            out2[i] = c;
            out3[i] = d;
        }
    };
    int i = from;
    for (; i + kBlock <= to; i += kBlock) {
        for (int column = 0; column < 4; ++column) {
            fetchAhead(Step<Sample>{in[column], out[column], first.ahead}, i);
        }
        samples(i, i + kBlock);
    }
    samples(i, to);
}

template <class Sample>
void runAlongX(const RecursionCoefficients<Sample>& coefficients, const ColumnRun<Sample>& run,
               const RecursionHistory<Sample>& history) {
    constexpr int kPiece = kPieceBytes / static_cast<int>(sizeof(Sample));
    for (int from = 0; from < run.length; from += kPiece) {
        const int to = run.length - from < kPiece ? run.length : from + kPiece;
        RecursionHistory<Sample> before = history;
        int column = 0;
        for (; column + 4 <= run.columns; column += 4) {
            const std::ptrdiff_t offset = column * run.stride;
            const std::ptrdiff_t ahead = column + 8 <= run.columns ? 4 * run.stride : 0;
            fourSteps(coefficients, {run.in + offset, run.out + offset, ahead}, run.stride,
                      before, from, to);
            const Sample* const last = run.out + offset + 3 * run.stride;
            before = {last, last - run.stride, last - 2 * run.stride};
        }
        for (; column < run.columns; ++column) {
            const std::ptrdiff_t offset = column * run.stride;
            stepPiece(coefficients, {run.in + offset, run.out + offset, 0}, before, from, to);
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
