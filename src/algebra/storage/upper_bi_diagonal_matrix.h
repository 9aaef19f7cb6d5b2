#pragma once

#include "algebra/storage/bi_diagonal_matrix.h"

namespace orv {

/// Stores the elements (i, j) with i = j and with i = j + 1.
class UpperBiDiagonalMatrix final : public BiDiagonalMatrix {
  public:
    /// Order n, every stored element of the given value.
    explicit UpperBiDiagonalMatrix(int n, float value = 0.0f);
    UpperBiDiagonalMatrix(const UpperBiDiagonalMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override;

    /// Copies `vector` into the main diagonal (which = 0) or the off-diagonal (1); does nothing
    /// for another `which` or another length.
    virtual void SetVector(int which, const RealVector& vector);
    /// Writes element i of the main diagonal, counted from 0.
    virtual void SetMain(int i, float value) { vectors_[0][i] = value; }
    /// Reads element i of the main diagonal, counted from 0.
    virtual float GetMain(int i) const { return vectors_[0][i]; }
    /// Writes element i of the off-diagonal, counted from 0.
    virtual void SetOffDiagonal(int i, float value) { vectors_[1][i] = value; }
    /// Reads element i of the off-diagonal, counted from 0.
    virtual float GetOffDiagonal(int i) const { return vectors_[1][i]; }
    /// Writes element i of the main diagonal, counted from 1.
    virtual void SetMain1(int i, float value) { vectors_[0].data1()[i] = value; }
    /// Reads element i of the main diagonal, counted from 1.
    virtual float GetMain1(int i) const { return vectors_[0].data1()[i]; }
    /// Writes element i of the off-diagonal, counted from 1.
    virtual void SetOffDiagonal1(int i, float value) { vectors_[1].data1()[i] = value; }
    /// Reads element i of the off-diagonal, counted from 1.
    virtual float GetOffDiagonal1(int i) const { return vectors_[1].data1()[i]; }
};

}  // namespace orv
