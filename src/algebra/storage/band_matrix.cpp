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

BandRows& BandMatrix::triangleRows(BandSide side, BandOrder order) const {
    const bool rising = order == BandOrder::ColumnRising;
    const std::size_t index = (side == BandSide::Upper ? 2U : 0U) + (rising ? 1U : 0U);
    std::unique_ptr<BandRows>& reader = readers_[index];
    if (reader == nullptr) {
        std::vector<BandStrand> chosen =
            side == BandSide::Upper ? upperStrands() : lowerStrands();
        reader = std::make_unique<BandRows>(
            n_, rising ? inColumnOrder(std::move(chosen)) : std::move(chosen));
    }
    // A diagonal may have been given other elements, and other memory, since the last time.
    for (int k = 0; k < reader->count(); ++k) {
        reader->setValues(k, diagonal(center_ + reader->offset(k))->data());
    }
    reader->rewind();
    return *reader;
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

// A diagonal of the transpose is the mirrored one with the same values, and the diagonals come
// in reverse.
BandStrand BandMatrix::productStrand(int k, bool transposed) const {
    const int last = diagonalCount_ - 1;
    const int position = positions_[static_cast<std::size_t>(transposed ? last - k : k)];
    const int offset = position - center_;
    return {diagonal(position)->data(), transposed ? -offset : offset};
}

int BandMatrix::sameStrandsUntil(int row, bool transposed) const {
    int end = std::min(row + kProductRows, n_);
    for (int k = 0; k < diagonalCount_; ++k) {
        const int offset = productStrand(k, transposed).offset;
        const int change = row < -offset ? -offset : n_ - offset;
        end = change > row ? std::min(end, change) : end;
    }
    return end;
}

void BandMatrix::multiplyRows(int first, int last, bool transposed, bool accumulate,
                              const float* x, float* y) const {
    const VectorKernels& kernels = vectorKernels();
    BandTerm terms[kBandTerms];
    int count = 0;
    bool adds = accumulate;
    const auto sumTerms = [&] {
        const auto sumRows = adds ? kernels.addBandRows : kernels.setBandRows;
        sumRows(y + first, terms, count, last - first);
        adds = true;
        count = 0;
    };
    for (int k = 0; k < diagonalCount_; ++k) {
        const BandStrand strand = productStrand(k, transposed);
        const int column = first + strand.offset;
        if (column < 0 || column >= n_) {
            continue;
        }
        if (count == kBandTerms) {
            sumTerms();
        }
        terms[count++] = {strand.values + (first + std::min(strand.offset, 0)), x + column};
    }
    sumTerms();
}

void BandMatrix::multiply(bool transposed, bool accumulate, const float* x, float* y) const {
    for (int first = 0; first < n_;) {
        const int last = sameStrandsUntil(first, transposed);
        multiplyRows(first, last, transposed, accumulate, x, y);
        first = last;
    }
}

std::unique_ptr<RealVector> BandMatrix::multiplyAll(const RealVector& x, bool transposed,
                                                    std::unique_ptr<RealVector> y) const {
    y = resultVector(std::move(y), n_);
    if (x.size() != n_ || y == nullptr) {
        return nullptr;
    }
    multiply(transposed, /*accumulate=*/false, x.data(), y->data());
    y->FillRange(n_, y->size() - n_, 0.0f);
    return y;
}

std::unique_ptr<RealVector> BandMatrix::MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                                      unsigned char accumulate,
                                                      std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        multiply(/*transposed=*/false, /*accumulate=*/true, x.data() + xFrom,
                 y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> BandMatrix::Multiply(const RealVector& x,
                                                 std::unique_ptr<RealVector> y) const {
    return multiplyAll(x, /*transposed=*/false, std::move(y));
}

std::unique_ptr<RealVector> BandMatrix::MultiplyTransposedRange(
    const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
    std::unique_ptr<RealVector> y) const {
    y = rangeTarget(x, n_, yFrom, accumulate, std::move(y));
    if (y != nullptr) {
        multiply(/*transposed=*/true, /*accumulate=*/true, x.data() + xFrom, y->data() + yFrom);
    }
    return y;
}

std::unique_ptr<RealVector> BandMatrix::MultiplyTransposed(
    const RealVector& x, std::unique_ptr<RealVector> y) const {
    return multiplyAll(x, /*transposed=*/true, std::move(y));
}

void BandMatrix::PrintTo(std::FILE* file) const {
    put(file, "Band(%d) ", n_);
    Matrix::PrintTo(file);
}

}  // namespace orv
