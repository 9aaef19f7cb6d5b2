#pragma once

#include <vector>

namespace orv {

/// One stored diagonal as the rows of the matrix see it: row i holds values[i + min(offset, 0)]
/// at column i + offset, if that column exists.
struct BandStrand {
    const float* values;
    int offset;
};

/// Reads a banded matrix row by row out of its diagonals.
///
/// The diagonals are separate arrays. A block of rows is copied out of all of them at a time,
/// so that a wide band costs a few streams and not a cache line per element.
///
/// Cost:    64 floats a diagonal.
class BandRows {
  public:
    /// The given diagonals of a matrix of order n; values outlive this object.
    BandRows(int n, std::vector<BandStrand> strands);

    /// Number of diagonals.
    int count() const { return static_cast<int>(strands_.size()); }
    /// Column offset of the k-th diagonal.
    int offset(int k) const { return strands_[static_cast<unsigned>(k)].offset; }
    /// Points the k-th diagonal at other values; `rewind` comes before the next row.
    void setValues(int k, const float* values) {
        strands_[static_cast<unsigned>(k)].values = values;
    }
    /// Forgets the rows that were copied out: the values may have changed.
    void rewind() { block_ = -1; }
    /// The elements of row i in the order of the diagonals, 0 where a diagonal doesn't reach
    /// it; valid until the next call. Rows are read fast in rising or in falling order.
    const float* row(int i);
    /// The sum of row i times x over the diagonals in their order, in double.
    double sum(int i, const float* x);

  private:
    void load(int block);

    int n_;
    std::vector<BandStrand> strands_;
    std::vector<float> rows_;
    int block_ = -1;
};

/// The same diagonals with the offset rising, which is the order of a dense row.
std::vector<BandStrand> inColumnOrder(std::vector<BandStrand> strands);

}  // namespace orv
