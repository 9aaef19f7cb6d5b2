// Bodies of the pixel kernels: plain loops, compiled once per target.

namespace orv::ORV_KERNEL_NAMESPACE {

namespace {

constexpr int kTile = 64;
constexpr std::size_t kTileStep = 64;
constexpr std::size_t kCacheLine = 64;

constexpr int smaller(int a, int b) {
    return a < b ? a : b;
}

constexpr std::size_t sizeOf(int n) {
    return static_cast<std::size_t>(n);
}

/// Calls tile(x, y, columns, rows) for each tile of a width x height rectangle.
template <class Tile>
inline void forEachTile(int width, int height, Tile tile) {
    for (int x = 0; x < width; x += kTile) {
        for (int y = 0; y < height; y += kTile) {
            tile(x, y, smaller(kTile, width - x), smaller(kTile, height - y));
        }
    }
}

/// The low byte of the truncated sample. A range test takes the place of the conversion's
/// undefined cases, whose low byte is 0, as the low byte of INT_MIN is.
inline unsigned char lowByteOf(float sample) {
    const bool fits = sample >= -2147483648.0f && sample < 2147483648.0f;
    return static_cast<unsigned char>(static_cast<int>(fits ? sample : 0.0f));
}

inline unsigned char lowByteOf(double sample) {
    const bool fits = sample > -2147483649.0 && sample < 2147483648.0;
    return static_cast<unsigned char>(static_cast<int>(fits ? sample : 0.0));
}

/// Asks for the cache lines of one row of a tile, or of one column in a plane. They lie a row
/// or a column of the picture apart, further than the processor's own prefetching looks.
template <int ForWriting>
inline void prefetchRow(const void* first, std::size_t bytes) {
    const char* const start = static_cast<const char*>(first);
    for (std::size_t offset = 0; offset < bytes; offset += kCacheLine) {
        __builtin_prefetch(start + offset, ForWriting);
    }
    __builtin_prefetch(start + bytes - 1, ForWriting);
}

/// tile[x][y] = samples of a grid that starts at `first`: x-major from row-major. `rowsLeft`
/// rows follow `first` in the grid; those of the tile below are prefetched.
template <class Sample>
inline void gather(const Sample* first, std::size_t pixelStride, std::size_t rowStride,
                   int columns, int rows, int rowsLeft, Sample* tile) {
    const std::size_t rowBytes = (sizeOf(columns - 1) * pixelStride + 1) * sizeof(Sample);
    for (int y = 0; y < rows; ++y) {
        const Sample* const from = first + sizeOf(y) * rowStride;
        prefetchRow<0>(first + sizeOf(smaller(y + kTile, rowsLeft - 1)) * rowStride, rowBytes);
        for (int x = 0; x < columns; ++x) {
            tile[sizeOf(x) * kTileStep + sizeOf(y)] = from[sizeOf(x) * pixelStride];
        }
    }
}

/// The way back: row-major from x-major.
template <class Sample>
inline void scatter(const Sample* tile, int columns, int rows, int rowsLeft, Sample* first,
                    std::size_t pixelStride, std::size_t rowStride) {
    const std::size_t rowBytes = (sizeOf(columns - 1) * pixelStride + 1) * sizeof(Sample);
    for (int y = 0; y < rows; ++y) {
        Sample* const to = first + sizeOf(y) * rowStride;
        prefetchRow<1>(first + sizeOf(smaller(y + kTile, rowsLeft - 1)) * rowStride, rowBytes);
        for (int x = 0; x < columns; ++x) {
            to[sizeOf(x) * pixelStride] = tile[sizeOf(x) * kTileStep + sizeOf(y)];
        }
    }
}

#if defined(__GNUC__)

typedef unsigned char Bytes16 __attribute__((vector_size(16)));

inline Bytes16 interleaveLow(Bytes16 a, Bytes16 b) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7,
                                   23);
}

inline Bytes16 interleaveHigh(Bytes16 a, Bytes16 b) {
    return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30,
                                   15, 31);
}

/// Transposes 16 x 16 bytes: four perfect shuffles of the 256. Compilers don't find them in a
/// plain loop, and byte by byte the transposition is the whole cost of a conversion.
inline void transposeBytes(Bytes16 (&rows)[16]) {
    Bytes16 mixed[16];
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 8; ++i) {
            mixed[2 * i] = interleaveLow(rows[i], rows[i + 8]);
            mixed[2 * i + 1] = interleaveHigh(rows[i], rows[i + 8]);
        }
        for (int i = 0; i < 8; ++i) {
            rows[2 * i] = interleaveLow(mixed[i], mixed[i + 8]);
            rows[2 * i + 1] = interleaveHigh(mixed[i], mixed[i + 8]);
        }
    }
}

/// 16 x 16 pixels into the tiles: byte k of the 48 of a row is channel k % 3 of pixel k / 3.
inline void gatherRgbBlock(const unsigned char* first, std::size_t rowBytes, std::size_t at,
                           unsigned char (*tiles)[kTile * kTile]) {
    for (std::size_t part = 0; part < 48; part += 16) {
        Bytes16 rows[16];
        for (std::size_t y = 0; y < 16; ++y) {
            __builtin_memcpy(&rows[y], first + y * rowBytes + part, sizeof rows[y]);
        }
        transposeBytes(rows);
        for (std::size_t i = 0; i < 16; ++i) {
            const std::size_t k = part + i;
            __builtin_memcpy(&tiles[k % 3][at + k / 3 * kTileStep], &rows[i], sizeof rows[i]);
        }
    }
}

/// The way back.
inline void scatterRgbBlock(const unsigned char (*tiles)[kTile * kTile], std::size_t at,
                            unsigned char* first, std::size_t rowBytes) {
    for (std::size_t part = 0; part < 48; part += 16) {
        Bytes16 rows[16];
        for (std::size_t i = 0; i < 16; ++i) {
            const std::size_t k = part + i;
            __builtin_memcpy(&rows[i], &tiles[k % 3][at + k / 3 * kTileStep], sizeof rows[i]);
        }
        transposeBytes(rows);
        for (std::size_t y = 0; y < 16; ++y) {
            __builtin_memcpy(first + y * rowBytes + part, &rows[y], sizeof rows[y]);
        }
    }
}

constexpr int kBlock = 16;

#else

constexpr int kBlock = 2 * kTile;  // wider than a tile: no block fits

inline void gatherRgbBlock(const unsigned char*, std::size_t, std::size_t,
                           unsigned char (*)[kTile * kTile]) {}
inline void scatterRgbBlock(const unsigned char (*)[kTile * kTile], std::size_t, unsigned char*,
                            std::size_t) {}

#endif

/// Three tiles from the pixels in one walk.
inline void gatherRgb(const unsigned char* first, std::size_t rowBytes, int columns, int rows,
                      int rowsLeft, unsigned char (*tiles)[kTile * kTile]) {
    const int blockColumns = columns - columns % kBlock;
    const int blockRows = rows - rows % kBlock;
    for (int y = 0; y < rows; ++y) {
        const unsigned char* const line = first + sizeOf(y) * rowBytes;
        prefetchRow<0>(first + sizeOf(smaller(y + kTile, rowsLeft - 1)) * rowBytes,
                       3 * sizeOf(columns));
        if (y < blockRows && y % kBlock == 0) {
            for (int x = 0; x < blockColumns; x += kBlock) {
                gatherRgbBlock(line + 3 * sizeOf(x), rowBytes,
                               sizeOf(x) * kTileStep + sizeOf(y), tiles);
            }
        }
        for (int x = y < blockRows ? blockColumns : 0; x < columns; ++x) {
            const std::size_t at = sizeOf(x) * kTileStep + sizeOf(y);
            tiles[0][at] = line[3 * x];
            tiles[1][at] = line[3 * x + 1];
            tiles[2][at] = line[3 * x + 2];
        }
    }
}

/// The pixels from three tiles in one walk.
inline void scatterRgb(const unsigned char (*tiles)[kTile * kTile], int columns, int rows,
                       int rowsLeft, unsigned char* first, std::size_t rowBytes) {
    const int blockColumns = columns - columns % kBlock;
    const int blockRows = rows - rows % kBlock;
    for (int y = 0; y < rows; ++y) {
        unsigned char* const line = first + sizeOf(y) * rowBytes;
        prefetchRow<1>(first + sizeOf(smaller(y + kTile, rowsLeft - 1)) * rowBytes,
                       3 * sizeOf(columns));
        if (y < blockRows && y % kBlock == 0) {
            for (int x = 0; x < blockColumns; x += kBlock) {
                scatterRgbBlock(tiles, sizeOf(x) * kTileStep + sizeOf(y), line + 3 * sizeOf(x),
                                rowBytes);
            }
        }
        for (int x = y < blockRows ? blockColumns : 0; x < columns; ++x) {
            const std::size_t at = sizeOf(x) * kTileStep + sizeOf(y);
            line[3 * x] = tiles[0][at];
            line[3 * x + 1] = tiles[1][at];
            line[3 * x + 2] = tiles[2][at];
        }
    }
}

/// A tile of bytes into a plane, column by column.
template <class T>
inline void widen(const unsigned char* tile, int columns, int rows, T* plane,
                  std::size_t columnStride) {
    for (int x = 0; x < columns; ++x) {
        const unsigned char* const from = tile + sizeOf(x) * kTileStep;
        T* const to = plane + sizeOf(x) * columnStride;
        prefetchRow<1>(to + kTile, sizeOf(rows) * sizeof(T));
        for (int y = 0; y < rows; ++y) {
            to[y] = static_cast<T>(from[y]);
        }
    }
}

/// Columns of a plane into a tile of low bytes.
template <class T>
inline void narrow(const T* plane, std::size_t columnStride, int columns, int rows,
                   unsigned char* tile) {
    for (int x = 0; x < columns; ++x) {
        const T* const from = plane + sizeOf(x) * columnStride;
        unsigned char* const to = tile + sizeOf(x) * kTileStep;
        prefetchRow<0>(from + kTile, sizeOf(rows) * sizeof(T));
        for (int y = 0; y < rows; ++y) {
            to[y] = lowByteOf(from[y]);
        }
    }
}

template <class T>
void readRgb(const unsigned char* pixels, std::size_t rowBytes, int width, int height,
             T* const* planes, std::size_t columnStride) {
    unsigned char tiles[3][kTile * kTile];
    forEachTile(width, height, [&](int x, int y, int columns, int rows) {
        gatherRgb(pixels + sizeOf(y) * rowBytes + 3 * sizeOf(x), rowBytes, columns, rows,
                  height - y, tiles);
        for (int c = 0; c < 3; ++c) {
            widen(tiles[c], columns, rows, planes[c] + sizeOf(x) * columnStride + y,
                  columnStride);
        }
    });
}

template <class T>
void readChannel(const unsigned char* pixels, std::size_t rowBytes, int width, int height,
                 int channel, T* plane, std::size_t columnStride) {
    unsigned char tile[kTile * kTile];
    forEachTile(width, height, [&](int x, int y, int columns, int rows) {
        gather(pixels + sizeOf(y) * rowBytes + 3 * sizeOf(x) + channel, 3, rowBytes, columns,
               rows, height - y, tile);
        widen(tile, columns, rows, plane + sizeOf(x) * columnStride + y, columnStride);
    });
}

template <class T>
void readLuminance(const unsigned char* pixels, std::size_t rowBytes, int width, int height,
                   T* plane, std::size_t columnStride) {
    unsigned char tiles[3][kTile * kTile];
    forEachTile(width, height, [&](int x, int y, int columns, int rows) {
        gatherRgb(pixels + sizeOf(y) * rowBytes + 3 * sizeOf(x), rowBytes, columns, rows,
                  height - y, tiles);
        for (int i = 0; i < columns; ++i) {
            const std::size_t at = sizeOf(i) * kTileStep;
            T* const to = plane + sizeOf(x + i) * columnStride + y;
            for (int j = 0; j < rows; ++j) {
                const std::size_t k = at + sizeOf(j);
                const unsigned weighted =
                    587u * tiles[1][k] + 299u * tiles[0][k] + 114u * tiles[2][k];
                to[j] = static_cast<T>(static_cast<int>(weighted / 1000u));
            }
        }
    });
}

template <class T>
void writeRgb(const T* const* planes, const std::size_t* columnStrides, unsigned char* pixels,
              std::size_t rowBytes, int width, int height) {
    unsigned char tiles[3][kTile * kTile];
    forEachTile(width, height, [&](int x, int y, int columns, int rows) {
        for (int c = 0; c < 3; ++c) {
            narrow(planes[c] + sizeOf(x) * columnStrides[c] + y, columnStrides[c], columns,
                   rows, tiles[c]);
        }
        scatterRgb(tiles, columns, rows, height - y,
                   pixels + sizeOf(y) * rowBytes + 3 * sizeOf(x), rowBytes);
    });
}

template <class T>
void writeChannel(const T* plane, std::size_t columnStride, unsigned char* pixels,
                  std::size_t rowBytes, int width, int height, int channel) {
    unsigned char tile[kTile * kTile];
    forEachTile(width, height, [&](int x, int y, int columns, int rows) {
        narrow(plane + sizeOf(x) * columnStride + y, columnStride, columns, rows, tile);
        scatter(tile, columns, rows, height - y,
                pixels + sizeOf(y) * rowBytes + 3 * sizeOf(x) + channel, 3, rowBytes);
    });
}

/// 0..maxValue, NaN to 0.
inline float clamped(float sample, float maxValue) {
    const float raised = sample > 0.0f ? sample : 0.0f;
    return raised < maxValue ? raised : maxValue;
}

inline void store(float sample, float& to) {
    to = sample;
}

/// Rounds a sample of at least 0 to the nearest integer. The rest is exact in float, so that
/// no sum with 0.5 can round up what lies below a half.
template <class Sample>
inline void store(float sample, Sample& to) {
    const int whole = static_cast<int>(sample);
    const float rest = sample - static_cast<float>(whole);
    to = static_cast<Sample>(whole + (rest >= 0.5f ? 1 : 0));
}

template <class Sample>
void readSamples(const SampleGrid<const Sample>& grid, float factor, float* plane,
                 std::size_t columnStride) {
    Sample tile[kTile * kTile];
    forEachTile(grid.width, grid.height, [&](int x, int y, int columns, int rows) {
        gather(grid.first + sizeOf(y) * grid.rowStride + sizeOf(x) * grid.pixelStride,
               grid.pixelStride, grid.rowStride, columns, rows, grid.height - y, tile);
        for (int i = 0; i < columns; ++i) {
            const Sample* const from = tile + sizeOf(i) * kTileStep;
            float* const to = plane + sizeOf(x + i) * columnStride + y;
            for (int j = 0; j < rows; ++j) {
                to[j] = static_cast<float>(from[j]) * factor;
            }
        }
    });
}

template <class Sample>
void writeSamples(const float* plane, std::size_t columnStride, float factor, float maxValue,
                  const SampleGrid<Sample>& grid) {
    Sample tile[kTile * kTile];
    forEachTile(grid.width, grid.height, [&](int x, int y, int columns, int rows) {
        for (int i = 0; i < columns; ++i) {
            const float* const from = plane + sizeOf(x + i) * columnStride + y;
            Sample* const to = tile + sizeOf(i) * kTileStep;
            for (int j = 0; j < rows; ++j) {
                store(clamped(from[j] * factor, maxValue), to[j]);
            }
        }
        scatter(tile, columns, rows, grid.height - y,
                grid.first + sizeOf(y) * grid.rowStride + sizeOf(x) * grid.pixelStride,
                grid.pixelStride, grid.rowStride);
    });
}

}  // namespace

extern const PixelKernels kPixelKernels;
constinit const PixelKernels kPixelKernels = {
    {readRgb<float>, readChannel<float>, readLuminance<float>, writeRgb<float>,
     writeChannel<float>},
    {readRgb<double>, readChannel<double>, readLuminance<double>, writeRgb<double>,
     writeChannel<double>},
    {readSamples<unsigned char>, writeSamples<unsigned char>},
    {readSamples<unsigned short>, writeSamples<unsigned short>},
    {readSamples<float>, writeSamples<float>},
};

}  // namespace orv::ORV_KERNEL_NAMESPACE
