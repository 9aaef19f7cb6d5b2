#pragma once

#include <vector>

#include "algebra/matrix.h"

namespace orv {

/// The dense matrix; element (i, j) stands in the array of column i at index j.
class FullMatrix final : public Matrix {
  public:
    /// Order n, every element of the given value.
    explicit FullMatrix(int n, float value = 0.0f);
    FullMatrix(const FullMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override;
    /// Fails:   null if `result` is given and isn't n by n.
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const override;
    void Set(int i, int j, float value) override;
    float Get(int i, int j) const override;
    void Set1(int i, int j, float value) override;
    float Get1(int i, int j) const override;
    void Fill(float value) override;
    double Sum() const override;
    double Min() const override;
    double Max() const override;
    double StdDev() const override;
    void AddScalar(float a) override;
    void SubtractScalar(float a) override;
    void Scale(float a) override;
    void Divide(float a) override;
    std::unique_ptr<RealVector> MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                              unsigned char accumulate,
                                              std::unique_ptr<RealVector> y) const override;
    std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const override;
    void PrintTo(std::FILE* file) const override;
    std::unique_ptr<Matrix> Duplicate() const override;
    /// Row-wise elimination that keeps the pattern of the elements that aren't 0.
    ///
    ///     for j = 1 ... n-1, k = 0 ... j-1 with A(k, j) != 0:
    ///         R(k, j) = R(k, j) / R(k, k)
    ///         R(i, j) -= R(k, j) R(i, k)   for i = k+1 ... n-1 with A(i, j) != 0
    ///
    /// Source:  Saad, Iterative Methods for Sparse Linear Systems, algorithm 10.4.
    std::unique_ptr<Matrix> IncompleteLU0() const override;

    /// Root of the sum of the squares.
    virtual double FrobeniusNorm2() const;
    /// Largest sum of magnitudes along the first index: over the columns i of one row j.
    /// Quirk:   max-sum-names
    virtual double MaxColumnSum() const;
    /// Largest sum of magnitudes along the second index: over the rows j of one column i.
    /// Quirk:   max-sum-names
    virtual double MaxRowSum() const;
    /// Sum of the squares.
    virtual double SumOfSquares() const;

    /// The n elements of column i, from row 0 on.
    float* column(int i);
    /// The n elements of column i, from row 0 on.
    const float* column(int i) const;

  private:
    std::vector<float> elements_;
};

}  // namespace orv
