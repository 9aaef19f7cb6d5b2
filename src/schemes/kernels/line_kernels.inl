// Bodies of the table in line_kernels.h: plain loops over lanes, compiled once per target.

#include "base/kernels/lane_loop.h"

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

#include "base/kernels/transpose_tile.inl"

// Rows of a plane lie a column apart, too far for the hardware to fetch ahead.
constexpr std::size_t kPrefetchRows = 16;
constexpr std::size_t kFloatsPerLine = 16;

inline std::size_t offset(int i, std::size_t stride) {
    return static_cast<std::size_t>(i) * stride;
}

// Row i and what one row of the elimination hands to the next.
template <int B>
struct Elimination {
    float right[B];  // r(i)
    float link[B];   // u(i)
};

template <int B>
inline void eliminateFirst(const LineSystems& s, const float* b, Elimination<B>& e,
                           float* pivots, float* partial) {
    const float* g = s.diffusivity.data;
    // Behind the end of the line the diffusivity is 0.
    const float* next = s.length > 1 ? g + s.diffusivity.stride : nullptr;
    for (int j = 0; j < B; ++j) {
        const float right = (g[j] + (next != nullptr ? next[j] : 0.0f)) * 0.5f;
        e.right[j] = right;
        e.link[j] = right * s.step;
        pivots[j] = e.link[j] + 1.0f;
        partial[j] = b[j];
    }
}

template <int B>
inline void eliminateLast(Elimination<B>& e, const float* b, float* pivots, float* partial) {
    ORV_LANE_LOOP
    for (int j = 0; j < B; ++j) {
        const float lower = e.link[j] / pivots[j - B];
        pivots[j] = (e.link[j] + 1.0f) - lower * e.link[j];
        partial[j] = b[j] + lower * partial[j - B];
    }
}

template <int B>
inline void eliminate(const LineSystems& s, ConstLines b, float* pivots, float* partial) {
    Elimination<B> e;
    eliminateFirst<B>(s, b.data, e, pivots, partial);
    const int last = s.length - 1;
    const float step = s.step;
    const std::size_t gStride = s.diffusivity.stride;
    for (int i = 1; i < last; ++i) {
        const float* g = s.diffusivity.data + offset(i, gStride);
        const float* gNext = g + gStride;
        const float* rhs = b.data + offset(i, b.stride);
        float* p = pivots + offset(i, B);
        float* z = partial + offset(i, B);
        for (std::size_t j = 0; j < B; j += kFloatsPerLine) {
            ORV_PREFETCH(gNext + kPrefetchRows * gStride + j);
            ORV_PREFETCH(rhs + kPrefetchRows * b.stride + j);
        }
        ORV_LANE_LOOP
        for (int j = 0; j < B; ++j) {
            const float right = (g[j] + gNext[j]) * 0.5f;
            const float lower = e.link[j] / p[j - B];
            const float main = (e.right[j] + right) * step + 1.0f;
            p[j] = main - lower * e.link[j];
            z[j] = rhs[j] + lower * z[j - B];
            e.right[j] = right;
            e.link[j] = right * step;
        }
    }
    if (last > 0) {
        eliminateLast<B>(e, b.data + offset(last, b.stride), pivots + offset(last, B),
                         partial + offset(last, B));
    }
}

template <int B, bool Average>
inline void substitute(const LineSystems& s, Lines x, const float* pivots,
                       const float* partial) {
    const int last = s.length - 1;
    const float step = s.step;
    const std::size_t gStride = s.diffusivity.stride;
    float solved[B];
    {
        const float* p = pivots + offset(last, B);
        const float* z = partial + offset(last, B);
        float* out = x.data + offset(last, x.stride);
        ORV_LANE_LOOP
        for (int j = 0; j < B; ++j) {
            solved[j] = z[j] / p[j];
            out[j] = Average ? (solved[j] + out[j]) * 0.5f : solved[j];
        }
    }
    for (int i = last - 1; i >= 0; --i) {
        const float* g = s.diffusivity.data + offset(i, gStride);
        const float* gNext = g + gStride;
        const float* p = pivots + offset(i, B);
        const float* z = partial + offset(i, B);
        float* out = x.data + offset(i, x.stride);
        const std::size_t ahead = i > static_cast<int>(kPrefetchRows) ? kPrefetchRows : 0;
        for (std::size_t j = 0; j < B; j += kFloatsPerLine) {
            ORV_PREFETCH(g - ahead * gStride + j);
            ORV_PREFETCH_WRITE(out - ahead * x.stride + j);
        }
        ORV_LANE_LOOP
        for (int j = 0; j < B; ++j) {
            const float link = (g[j] + gNext[j]) * 0.5f * step;
            const float value = (z[j] + link * solved[j]) / p[j];
            solved[j] = value;
            out[j] = Average ? (value + out[j]) * 0.5f : value;
        }
    }
}

template <int B>
void solveLanes(const LineSystems& s, ConstLines b, Lines x, float* pivots, float* partial,
                bool average) {
    eliminate<B>(s, b, pivots, partial);
    if (average) {
        substitute<B, true>(s, x, pivots, partial);
    } else {
        substitute<B, false>(s, x, pivots, partial);
    }
}

void solveImplicit(const LineSystems& systems, ConstLines b, Lines x, float* pivots,
                   float* partial, bool average) {
    if (systems.lanes == 128) {
        solveLanes<128>(systems, b, x, pivots, partial, average);
    } else if (systems.lanes == 64) {
        solveLanes<64>(systems, b, x, pivots, partial, average);
    } else if (systems.lanes == 32) {
        solveLanes<32>(systems, b, x, pivots, partial, average);
    } else {
        solveLanes<16>(systems, b, x, pivots, partial, average);
    }
}

template <int B>
void multiplyLanes(const LineSystems& s, ConstLines x, Lines y) {
    const int last = s.length - 1;
    const float step = s.step;
    const std::size_t gStride = s.diffusivity.stride;
    for (int i = 0; i <= last; ++i) {
        const float* g = s.diffusivity.data + offset(i, gStride);
        const float* here = x.data + offset(i, x.stride);
        float* out = y.data + offset(i, y.stride);
        if (i == 0) {
            for (int j = 0; j < B; ++j) {
                const float link = (g[j] + g[gStride + j]) * 0.5f * step;
                const float main = -link + 1.0f;
                const double own = static_cast<double>(main) * here[j];
                out[j] =
                    static_cast<float>(own + static_cast<double>(link) * here[x.stride + j]);
            }
        } else if (i == last) {
            const float* before = here - x.stride;
            const float* gBefore = g - gStride;
            for (int j = 0; j < B; ++j) {
                const float link = (gBefore[j] + g[j]) * 0.5f * step;
                const float main = -link + 1.0f;
                const double side = static_cast<double>(link) * before[j];
                out[j] = static_cast<float>(side + static_cast<double>(main) * here[j]);
            }
        } else {
            const float* before = here - x.stride;
            const float* after = here + x.stride;
            const float* gBefore = g - gStride;
            const float* gAfter = g + gStride;
            ORV_LANE_LOOP
            for (int j = 0; j < B; ++j) {
                const float left = (gBefore[j] + g[j]) * 0.5f;
                const float right = (g[j] + gAfter[j]) * 0.5f;
                const float main = -(left + right) * step + 1.0f;
                const double sides = static_cast<double>(right * step) * after[j] +
                                     static_cast<double>(left * step) * before[j];
                out[j] = static_cast<float>(sides + static_cast<double>(main) * here[j]);
            }
        }
    }
}

void multiplyExplicit(const LineSystems& systems, ConstLines x, Lines y) {
    if (systems.lanes == 128) {
        multiplyLanes<128>(systems, x, y);
    } else if (systems.lanes == 64) {
        multiplyLanes<64>(systems, x, y);
    } else if (systems.lanes == 32) {
        multiplyLanes<32>(systems, x, y);
    } else {
        multiplyLanes<16>(systems, x, y);
    }
}

template <int B>
void solveFactoredLanes(const LineFactors& f, ConstLines b, Lines x, float* partial) {
    for (int j = 0; j < B; ++j) {
        partial[j] = b.data[j];
    }
    for (int i = 1; i < f.length; ++i) {
        const float* rhs = b.data + offset(i, b.stride);
        float* z = partial + offset(i, B);
        const float lower = f.lower[i - 1];
        for (std::size_t j = 0; j < B; j += kFloatsPerLine) {
            ORV_PREFETCH(rhs + kPrefetchRows * b.stride + j);
        }
        ORV_LANE_LOOP
        for (int j = 0; j < B; ++j) {
            z[j] = rhs[j] - lower * z[j - B];
        }
    }
    float solved[B];
    const int last = f.length - 1;
    {
        const float* z = partial + offset(last, B);
        float* out = x.data + offset(last, x.stride);
        ORV_LANE_LOOP
        for (int j = 0; j < B; ++j) {
            solved[j] = z[j] / f.pivots[last];
            out[j] = solved[j];
        }
    }
    for (int i = last - 1; i >= 0; --i) {
        const float* z = partial + offset(i, B);
        float* out = x.data + offset(i, x.stride);
        const float pivot = f.pivots[i];
        const float upper = f.upper[i];
        const std::size_t ahead = i > static_cast<int>(kPrefetchRows) ? kPrefetchRows : 0;
        for (std::size_t j = 0; j < B; j += kFloatsPerLine) {
            ORV_PREFETCH_WRITE(out - ahead * x.stride + j);
        }
        ORV_LANE_LOOP
        for (int j = 0; j < B; ++j) {
            const float value = (z[j] - upper * solved[j]) / pivot;
            solved[j] = value;
            out[j] = value;
        }
    }
}

void solveFactored(const LineFactors& factors, int lanes, ConstLines b, Lines x,
                   float* partial) {
    if (lanes == 128) {
        solveFactoredLanes<128>(factors, b, x, partial);
    } else if (lanes == 64) {
        solveFactoredLanes<64>(factors, b, x, partial);
    } else if (lanes == 32) {
        solveFactoredLanes<32>(factors, b, x, partial);
    } else {
        solveFactoredLanes<16>(factors, b, x, partial);
    }
}

// Calls tile(q, i) for 8 columns from q on and 16 samples from i on, down bands of 16 columns:
// no more of them are read at a time than the hardware fetches ahead.
template <class Tile>
inline void forEachTile(int columns, int length, Tile tile) {
    constexpr int kBand = 16;
    for (int band = 0; band < columns; band += kBand) {
        for (int i = 0; i < length; i += 16) {
            for (int q = band; q < columns && q < band + kBand; q += 8) {
                tile(q, i);
            }
        }
    }
}

void gatherColumns(const float* plane, std::size_t columnStride, int columns, int length,
                   float* strip, int lanes) {
    const std::size_t stride = static_cast<std::size_t>(lanes);
    if (columns < lanes) {
        const std::size_t count = offset(length, stride);
        for (std::size_t i = 0; i < count; ++i) {
            strip[i] = 0.0f;
        }
    }
    const int tiledColumns = columns - columns % 8;
    const int tiled = length - length % 16;
    // Two tiles high, so that every cache line that is fetched is used up at once.
    forEachTile(tiledColumns, tiled, [&](int q, int i) {
        const float* from = plane + offset(q, columnStride) + i;
        float* to = strip + offset(i, stride) + q;
        for (std::size_t k = 0; k < 8; ++k) {
            ORV_PREFETCH(from + k * columnStride + 2 * kFloatsPerLine);
        }
        transposeTile(from, columnStride, to, stride);
        transposeTile(from + 8, columnStride, to + 8 * stride, stride);
    });
    for (int q = 0; q < columns; ++q) {
        const float* from = plane + offset(q, columnStride);
        for (int i = q < tiledColumns ? tiled : 0; i < length; ++i) {
            strip[offset(i, stride) + static_cast<std::size_t>(q)] = from[i];
        }
    }
}

// Two tiles below each other; `average` stores (strip + what stood there) / 2.
inline void scatterTiles(const float* from, std::size_t stride, float* to,
                         std::size_t columnStride, bool average) {
    for (std::size_t k = 0; k < 8; ++k) {
        ORV_PREFETCH_WRITE(to + k * columnStride + 2 * kFloatsPerLine);
    }
    if (!average) {
        transposeTile(from, stride, to, columnStride);
        transposeTile(from + 8 * stride, stride, to + 8, columnStride);
        return;
    }
    float tile[8 * 16];
    transposeTile(from, stride, tile, 16);
    transposeTile(from + 8 * stride, stride, tile + 8, 16);
    for (std::size_t k = 0; k < 8; ++k) {
        float* out = to + k * columnStride;
        const float* solved = tile + 16 * k;
        ORV_LANE_LOOP
        for (int j = 0; j < 16; ++j) {
            out[j] = (solved[j] + out[j]) * 0.5f;
        }
    }
}

void scatterColumns(const float* strip, int lanes, int columns, int length, float* plane,
                    std::size_t columnStride, bool average) {
    const std::size_t stride = static_cast<std::size_t>(lanes);
    const int tiledColumns = columns - columns % 8;
    const int tiled = length - length % 16;
    forEachTile(tiledColumns, tiled, [&](int q, int i) {
        scatterTiles(strip + offset(i, stride) + q, stride, plane + offset(q, columnStride) + i,
                     columnStride, average);
    });
    for (int q = 0; q < columns; ++q) {
        float* to = plane + offset(q, columnStride);
        for (int i = q < tiledColumns ? tiled : 0; i < length; ++i) {
            const float value = strip[offset(i, stride) + static_cast<std::size_t>(q)];
            to[i] = average ? (value + to[i]) * 0.5f : value;
        }
    }
}

void blendData(const float* u, const float* f, double r, double scale, std::size_t count,
               float* out) {
    ORV_LANE_LOOP
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = static_cast<float>((f[i] * r + u[i]) * scale);
    }
}

}  // namespace

extern const LineKernels kLineKernels;
constinit const LineKernels kLineKernels = {solveImplicit, multiplyExplicit, solveFactored,
                                            gatherColumns, scatterColumns,   blendData};

}  // namespace orv::ORV_KERNEL_NAMESPACE
