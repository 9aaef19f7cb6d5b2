#include "algebra/storage/band_rows.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace orv {

namespace {

constexpr int kBlockRows = 64;
constexpr std::size_t kStrandTile = 16;

}  // namespace

BandRows::BandRows(int n, std::vector<BandStrand> strands)
    : n_(n), strands_(std::move(strands)), rows_(kBlockRows * strands_.size()) {}

const float* BandRows::row(int i) {
    const int block = i / kBlockRows;
    if (block != block_) {
        load(block);
    }
    return rows_.data() + static_cast<std::size_t>(i % kBlockRows) * strands_.size();
}

void BandRows::load(int block) {
    block_ = block;
    const int first = block * kBlockRows;
    const int last = std::min(first + kBlockRows, n_);
    for (std::size_t tile = 0; tile < strands_.size(); tile += kStrandTile) {
        const std::size_t end = std::min(tile + kStrandTile, strands_.size());
        for (int i = first; i < last; ++i) {
            float* target =
                rows_.data() + static_cast<std::size_t>(i - first) * strands_.size();
            for (std::size_t k = tile; k < end; ++k) {
                const BandStrand& strand = strands_[k];
                const int column = i + strand.offset;
                target[k] = column >= 0 && column < n_
                                ? strand.values[i + std::min(strand.offset, 0)]
                                : 0.0f;
            }
        }
    }
}

double BandRows::sum(int i, const float* x) {
    const float* elements = row(i);
    double total = 0.0;
    for (std::size_t k = 0; k < strands_.size(); ++k) {
        const int column = i + strands_[k].offset;
        if (column >= 0 && column < n_) {
            total += double{elements[k]} * double{x[column]};
        }
    }
    return total;
}

std::vector<BandStrand> inColumnOrder(std::vector<BandStrand> strands) {
    std::sort(strands.begin(), strands.end(),
              [](const BandStrand& a, const BandStrand& b) { return a.offset < b.offset; });
    return strands;
}

}  // namespace orv
