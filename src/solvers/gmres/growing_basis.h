#pragma once

#include <memory>
#include <vector>

#include "algebra/real_vector.h"

namespace orv {

/// The vectors of a Krylov basis, made one by one as a solve comes to them, so that a restart
/// length of any size costs memory only for what is used.
///
/// Owns:    its vectors; they stay between solves of one size.
class GrowingBasis {
  public:
    /// Drops the vectors unless they have n elements.
    void prepare(int n);

    /// Makes vectors 0 to i, of zeros, as far as they don't exist.
    void reach(int i);

    /// Vector i. Domain: 0 <= i < made().
    RealVector& operator[](int i);

    /// The owner of vector i, for a product into it. Domain: 0 <= i < made().
    std::unique_ptr<RealVector>& owner(int i);

    /// The vectors that there is memory for.
    int made() const { return static_cast<int>(vectors_.size()); }

  private:
    int n_ = 0;
    std::vector<std::unique_ptr<RealVector>> vectors_;
};

}  // namespace orv
