#pragma once

#include <array>

#include "algebra/matrix.h"

namespace orv {

/// What the four bidiagonal classes share: the main diagonal, unless it is made of ones, and
/// the diagonal next to it.
///
/// Size() is 2n - 1 in all of them; Mean and StdDev divide by it. Sum, Min and Max run over the
/// stored vectors, to which the ones of the unit forms don't belong.
class BiDiagonalMatrix : public Matrix {
  public:
    int Size() const final;
    /// Null: the transpose belongs to another class.
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const final;
    void Set(int i, int j, float value) final;
    float Get(int i, int j) const final;
    void Set1(int i, int j, float value) final;
    float Get1(int i, int j) const final;
    void Fill(float value) final;
    double Sum() const final;
    double Min() const final;
    double Max() const final;
    double StdDev() const final;
    void Scale(float a) final;
    void Divide(float a) final;
    std::unique_ptr<RealVector> MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                              unsigned char accumulate,
                                              std::unique_ptr<RealVector> y) const final;
    std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const final;
    /// Quirk:   shared-print-names
    void PrintTo(std::FILE* file) const final;
    /// Forward or back substitution.
    std::unique_ptr<RealVector> Solve(const RealVector& b,
                                      std::unique_ptr<RealVector> x) const final;
    /// Back substitution on the upper part in n steps, with the bits of the n n steps of Matrix.
    std::unique_ptr<RealVector> SolveUpper(const RealVector& b,
                                           std::unique_ptr<RealVector> x) const final;
    /// Forward substitution on the lower part in n steps, with the bits of the n n steps of
    /// Matrix.
    std::unique_ptr<RealVector> SolveLower(const RealVector& b,
                                           std::unique_ptr<RealVector> x) const final;
    /// A new triangular matrix: the inverse of two diagonals is full below or above.
    std::unique_ptr<Matrix> Inverse() const final;

    /// The diagonal next to the main one, n - 1 elements.
    RealVector& offDiagonal() { return vectors_[1]; }
    /// The diagonal next to the main one, n - 1 elements.
    const RealVector& offDiagonal() const { return vectors_[1]; }

  protected:
    /// Whether the off-diagonal lies below or above the main diagonal.
    enum class Side { Lower, Upper };
    /// Whether the main diagonal is stored or made of ones.
    enum class Main { Stored, Ones };

    BiDiagonalMatrix(int n, Side side, Main main, float value);
    BiDiagonalMatrix(const BiDiagonalMatrix&) = default;

    /// The main diagonal (0), empty in the unit forms, and the off-diagonal (1).
    std::array<RealVector, 2> vectors_;

  private:
    float diagonal(int i) const { return main_ == Main::Ones ? 1.0f : vectors_[0][i]; }
    bool inOffDiagonal(int i, int j) const;
    std::unique_ptr<RealVector> substitute(Side part, const RealVector& b,
                                           std::unique_ptr<RealVector> x) const;
    void addProduct(bool below, const float* x, float* y) const;

    Side side_;
    Main main_;
};

}  // namespace orv
