#pragma once

#include "algebra/storage/triangular_matrix.h"

namespace orv {

/// Stores the elements (i, j) with i up to j: on and below the diagonal.
class LowerTriangularMatrix final : public TriangularMatrix {
  public:
    /// Order n, every stored element of the given value.
    explicit LowerTriangularMatrix(int n, float value = 0.0f);
    LowerTriangularMatrix(const LowerTriangularMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override;
    /// Null: the transpose belongs to another class.
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const override;
    std::unique_ptr<RealVector> Solve(const RealVector& b,
                                      std::unique_ptr<RealVector> x) const override;
    /// A new LowerTriangularMatrix.
    std::unique_ptr<Matrix> Inverse() const override;
};

}  // namespace orv
