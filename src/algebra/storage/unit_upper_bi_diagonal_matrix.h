#pragma once

#include "algebra/storage/bi_diagonal_matrix.h"

namespace orv {

/// Ones on the diagonal, which can't be set, and the stored elements (i, j) with i = j + 1.
class UnitUpperBiDiagonalMatrix final : public BiDiagonalMatrix {
  public:
    /// Order n, every stored element of the given value.
    explicit UnitUpperBiDiagonalMatrix(int n, float value = 0.0f);
    UnitUpperBiDiagonalMatrix(const UnitUpperBiDiagonalMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override;

    /// Writes element i of the off-diagonal, counted from 0.
    virtual void SetOffDiagonal(int i, float value) { vectors_[1][i] = value; }
    /// Reads element i of the off-diagonal, counted from 0.
    virtual float GetOffDiagonal(int i) const { return vectors_[1][i]; }
    /// Writes element i of the off-diagonal, counted from 1.
    virtual void SetOffDiagonal1(int i, float value) { vectors_[1].data1()[i] = value; }
    /// Reads element i of the off-diagonal, counted from 1.
    virtual float GetOffDiagonal1(int i) const { return vectors_[1].data1()[i]; }
};

}  // namespace orv
