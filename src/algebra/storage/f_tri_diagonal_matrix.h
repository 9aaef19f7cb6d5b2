#pragma once

#include "algebra/matrix.h"

namespace orv {

/// The tridiagonal system of one image line in the splitting schemes.
///
/// lower()[i] is Get(i, i + 1), main()[i] is Get(i, i) and upper()[j] is Get(j + 1, j). Solves,
/// sweeps and factors are float arithmetic, each operation rounded; the products sum their
/// three terms in double and round once.
///
/// AddMatrix and SubtractMatrix do nothing in this class, and the pattern operations yield the
/// list that they were given.
///
/// Quirk:   crossed-bidiagonal
/// Quirk:   jacobi-shifted-lower
class FTriDiagonalMatrix final : public Matrix {
  public:
    /// Order n, every stored element of the given value.
    FTriDiagonalMatrix(int n, float value);
    FTriDiagonalMatrix(const FTriDiagonalMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override;
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const override;
    int Size() const override;
    void Set(int i, int j, float value) override;
    float Get(int i, int j) const override;
    std::unique_ptr<IndexList> RowPattern(int i,
                                          std::unique_ptr<IndexList> list) const override;
    std::unique_ptr<IndexList> ColumnPattern(int j,
                                             std::unique_ptr<IndexList> list) const override;
    void Set1(int i, int j, float value) override;
    float Get1(int i, int j) const override;
    std::unique_ptr<IndexList> RowPattern1(int i,
                                           std::unique_ptr<IndexList> list) const override;
    std::unique_ptr<IndexList> ColumnPattern1(int j,
                                              std::unique_ptr<IndexList> list) const override;
    void Fill(float value) override;
    double DiagonalMeasure() const override;
    double FrobeniusNorm() const override;
    double Sum() const override;
    double Min() const override;
    double Max() const override;
    double StdDev() const override;
    void AddMatrix(const Matrix& other) override;
    void AddScalar(float a) override;
    void SubtractMatrix(const Matrix& other) override;
    void SubtractScalar(float a) override;
    void Scale(float a) override;
    void Divide(float a) override;
    std::unique_ptr<RealVector> MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                              unsigned char accumulate,
                                              std::unique_ptr<RealVector> y) const override;
    /// Writes the first n elements of y alone.
    std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                         std::unique_ptr<RealVector> y) const override;
    std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const override;
    /// Writes the first n elements of y alone.
    std::unique_ptr<RealVector> MultiplyTransposed(
        const RealVector& x, std::unique_ptr<RealVector> y) const override;
    void PrintTo(std::FILE* file) const override;
    std::unique_ptr<Matrix> ToStrictLower() const override;
    std::unique_ptr<Matrix> ToStrictUpper() const override;
    std::unique_ptr<Matrix> ToLower() const override;
    std::unique_ptr<Matrix> ToUpper() const override;
    std::unique_ptr<Matrix> ToUnitLower() const override;
    std::unique_ptr<Matrix> ToUnitUpper() const override;
    std::unique_ptr<Matrix> JacobiMatrix() const override;
    std::unique_ptr<RealVector> SolveUpper(const RealVector& b,
                                           std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> SolveUnitUpper(const RealVector& b,
                                               std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> SolveLower(const RealVector& b,
                                           std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> SolveUnitLower(const RealVector& b,
                                               std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<Matrix> FactorLU() const override;
    std::unique_ptr<Matrix> FactorLU1() const override;
    std::unique_ptr<RealVector> SorSweep(const RealVector& b, float omega,
                                         std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> GaussSeidelSweep(const RealVector& b,
                                                 std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<RealVector> JacobiSweep(const RealVector& b, const RealVector& x,
                                            std::unique_ptr<RealVector> y) const override;

    /// Copies the three diagonals of `other`; those of another length stay as they are.
    virtual void AssignFrom(const FTriDiagonalMatrix& other);

    /// The n - 1 elements below the diagonal; element i is Get(i, i + 1).
    RealVector& lower() { return lower_; }
    /// The n - 1 elements below the diagonal; element i is Get(i, i + 1).
    const RealVector& lower() const { return lower_; }
    /// The n elements of the diagonal.
    RealVector& main() { return main_; }
    /// The n elements of the diagonal.
    const RealVector& main() const { return main_; }
    /// The n - 1 elements above the diagonal; element j is Get(j + 1, j).
    RealVector& upper() { return upper_; }
    /// The n - 1 elements above the diagonal; element j is Get(j + 1, j).
    const RealVector& upper() const { return upper_; }

  private:
    int length_;
    RealVector lower_;
    RealVector main_;
    RealVector upper_;
};

}  // namespace orv
