// Tiles of a block of columns, included by kernel bodies inside their namespace.

#include "base/kernels/transpose_tile.inl"
#include "base/kernels/transpose_tile_double.inl"

constexpr int kTile = 8;

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
