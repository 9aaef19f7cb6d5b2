#pragma once

#include "algebra/storage/triangular_matrix.h"

namespace orv {

/// Stores the elements (i, j) with i from j: on and above the diagonal.
class UpperTriangularMatrix final : public TriangularMatrix {
  public:
    /// Order n, every stored element of the given value.
    explicit UpperTriangularMatrix(int n, float value = 0.0f);
    UpperTriangularMatrix(const UpperTriangularMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override;
    /// Null: the transpose belongs to another class.
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const override;
    std::unique_ptr<RealVector> Solve(const RealVector& b,
                                      std::unique_ptr<RealVector> x) const override;
    /// A new UpperTriangularMatrix.
    std::unique_ptr<Matrix> Inverse() const override;
};

}  // namespace orv
