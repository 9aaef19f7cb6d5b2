#pragma once

#include <memory>

#include "algebra/real_vector.h"
#include "algebra/storage/full_matrix.h"

namespace orv {

/// The small matrix H of a Krylov solver: m + 1 rows and columns of zeros to begin with, of
/// which there is memory for the leading ones that a solve has come to.
///
/// Cost:    the order at least doubles as it grows, so the copies stay in proportion to the
///          elements in use.
class GrowingMatrix {
  public:
    /// A matrix of at most m + 1 rows and columns, none of them made. Domain: m >= 0.
    explicit GrowingMatrix(int m);

    /// Makes rows and columns 0 to `index`, as far as they don't exist; elements stay.
    ///
    /// Domain:  0 <= index <= m.
    void reach(int index);

    /// Writes H(i, j). Domain: both indices reached.
    void Set(int i, int j, float value) { block_->Set(i, j, value); }
    /// Reads H(i, j). Domain: both indices reached.
    float Get(int i, int j) const { return block_->Get(i, j); }
    /// Sets all elements to 0.
    void Clear() { block_->Fill(0.0F); }

    /// The rows and columns that there is memory for.
    int order() const { return block_->Rows(); }
    /// The leading rows and columns that there is memory for.
    const FullMatrix& block() const { return *block_; }

  private:
    int m_;
    std::unique_ptr<FullMatrix> block_;
};

/// Lengthens v to `size` elements: those that it has stay, new ones are 0. A v that is long
/// enough stays as it is.
void lengthen(std::unique_ptr<RealVector>& v, int size);

}  // namespace orv
