#include "algebra/storage/band_matrix.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <utility>

#include "algebra/kernels/vector_kernels.h"
#include "algebra/result_arguments.h"
#include "algebra/storage/stored_measures.h"

namespace orv {

namespace {

// Rows of y that all diagonals visit before the next rows: they stay in the first cache level.
constexpr int kProductRows = 2048;

// y[i] += A(i + offset, i) x[i + offset] for the rows of one block, in float.
void addStrandProduct(const BandStrand& strand, int first, int last, int n, const float* x,
                      float* y) {
    const int from = std::max(first, -strand.offset);
    const int to = std::min(last, n - strand.offset);
    if (from < to) {
        vectorKernels().addProduct(y + from,
                                   strand.values + (from + std::min(strand.offset, 0)),
                                   x + (from + strand.offset), to - from);
    }
}

void addBandProduct(const std::vector<BandStrand>& strands, int n, const float* x, float* y) {
    for (int first = 0; first < n; first += kProductRows) {
        for (const BandStrand& strand : strands) {
            addStrandProduct(strand, first, std::min(first + kProductRows, n), n, x, y);
        }
    }
}

std::unique_ptr<IndexList> clearedList(std::unique_ptr<IndexList> list, int capacity) {
    if (list == nullptr) {
        return std::make_unique<IndexList>(capacity);
    }
    list->Clear();
    return list;
}

}  // namespace

BandMatrix::BandMatrix(int n, int count, const int* positions)
    : Matrix(n), diagonalCount_(0), center_(n - 1), slotCount_(2 * n - 1) {
    diagonals_.resize(static_cast<std::size_t>(std::max(slotCount_, 0)));
    for (int k = 0; k < count; ++k) {
        const int position = positions[k];
        if (position < 0 || position >= slotCount_ || diagonal(position) != nullptr) {
            continue;
        }
        positions_.push_back(position);
        diagonals_[static_cast<std::size_t>(position)] =
            std::make_unique<RealVector>(n - std::abs(position - center_));
        ++diagonalCount_;
        ++(position < center_ ? lowerCount_ : position == center_ ? mainCount_ : upperCount_);
    }
}

BandMatrix::BandMatrix(const BandMatrix& other)
    : BandMatrix(other.n_, other.diagonalCount_, other.positions_.data()) {
    for (const int position : positions_) {
        SetDiagonal(position, *other.diagonal(position));
    }
}

std::unique_ptr<Matrix> BandMatrix::Clone() const {
    return std::make_unique<BandMatrix>(*this);
}

std::unique_ptr<Matrix> BandMatrix::CloneTransposed(std::unique_ptr<Matrix>) const {
    return nullptr;
}

int BandMatrix::Size() const {
    int size = 0;
    for (const int position : positions_) {
        size += diagonal(position)->size();
    }
    return size;
}

RealVector* BandMatrix::diagonal(int position) {
    return position >= 0 && position < slotCount_
               ? diagonals_[static_cast<std::size_t>(position)].get()
               : nullptr;
}

const RealVector* BandMatrix::diagonal(int position) const {
    return position >= 0 && position < slotCount_
               ? diagonals_[static_cast<std::size_t>(position)].get()
               : nullptr;
}

std::vector<BandStrand> BandMatrix::strands(int from, int count) const {
    std::vector<BandStrand> result;
    result.reserve(static_cast<std::size_t>(count));
    for (int k = from; k < from + count; ++k) {
        const int position = positions_[static_cast<std::size_t>(k)];
        result.push_back({diagonal(position)->data(), position - center_});
    }
    return result;
}

std::vector<BandStrand> BandMatrix::lowerStrands() const {
    return strands(0, lowerCount_);
}

std::vector<BandStrand> BandMatrix::upperStrands() const {
    return strands(lowerCount_ + mainCount_, upperCount_);
}

std::vector<BandStrand> BandMatrix::allStrands() const {
    return strands(0, diagonalCount_);
}

std::unique_ptr<IndexList> BandMatrix::RowPattern(int i,
                                                  std::unique_ptr<IndexList> list) const {
    list = clearedList(std::move(list), diagonalCount_);
    for (const int position : positions_) {
        const int column = i + position - center_;
        if (column >= 0 && column < n_) {
            list->Append(column);
        }
    }
    return list;
}

std::unique_ptr<IndexList> BandMatrix::ColumnPattern(int,
                                                     std::unique_ptr<IndexList> list) const {
    // quirk: column-pattern-empty
    return clearedList(std::move(list), diagonalCount_ + 1);
}

std::unique_ptr<IndexList> BandMatrix::RowPattern1(int i,
                                                   std::unique_ptr<IndexList> list) const {
    list = RowPattern(i - 1, std::move(list));
    for (int k = 0; k < list->count; ++k) {
        ++list->items[static_cast<std::size_t>(k)];
    }
    return list;
}

std::unique_ptr<IndexList> BandMatrix::ColumnPattern1(int j,
                                                      std::unique_ptr<IndexList> list) const {
    return ColumnPattern(j - 1, std::move(list));
}

void BandMatrix::Fill(float value) {
    for (const int position : positions_) {
        diagonal(position)->Fill(value);
    }
}

double BandMatrix::DiagonalMeasure() const {
    // quirk: diagonal-measure-differs
    return diagonal(center_)->Sum();
}

double BandMatrix::Sum() const {
    double sum = 0.0;
    for (const int position : positions_) {
        sum += diagonal(position)->Sum();
    }
    return sum;
}

double BandMatrix::Min() const {
    double smallest = diagonalCount_ > 0 ? diagonal(positions_[0])->Min() : 0.0;
    for (const int position : positions_) {
        smallest = std::min(smallest, diagonal(position)->Min());
    }
    return smallest;
}

double BandMatrix::Max() const {
    double largest = diagonalCount_ > 0 ? diagonal(positions_[0])->Max() : 0.0;
    for (const int position : positions_) {
        largest = std::max(largest, diagonal(position)->Max());
    }
    return largest;
}

double BandMatrix::StdDev() const {
    double squares = 0.0;
    for (const int position : positions_) {
        squares += diagonal(position)->SumOfSquares();
    }
    return standardDeviation(Sum(), squares, Size());
}

void BandMatrix::Scale(float a) {
    for (const int position : positions_) {
        diagonal(position)->MultiplyScalar(a);
    }
}

void BandMatrix::Divide(float a) {
    for (const int position : positions_) {
        diagonal(position)->DivideScalar(a);
    }
}

std::unique_ptr<RealVector> BandMatrix::MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                                      unsigned char accumulate,
                                                      std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        addBandProduct(allStrands(), n_, x.data() + xFrom, y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> BandMatrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        // A diagonal of the transpose is the mirrored one with the same values.
        std::vector<BandStrand> mirrored = allStrands();
        std::reverse(mirrored.begin(), mirrored.end());
        for (BandStrand& strand : mirrored) {
            strand.offset = -strand.offset;
        }
        addBandProduct(mirrored, n_, x.data() + xFrom, y->data() + yFrom);
    }
    return y;
}

void BandMatrix::PrintTo(std::FILE* file) const {
    put(file, "Band(%d) ", n_);
    Matrix::PrintTo(file);
}

}  // namespace orv
