#pragma once

#include <vector>

#include "algebra/matrix.h"

namespace orv {

/// What the two triangular classes share: one array of floats per row, holding the columns of
/// that row's part of the triangle.
///
/// Size() is n times n though fewer elements are stored, so Mean and StdDev run over all
/// positions; Min and Max run over the stored ones.
class TriangularMatrix : public Matrix {
  public:
    /// 0 outside the triangle is never stored: writes there do nothing.
    void Set(int i, int j, float value) final;
    float Get(int i, int j) const final;
    void Set1(int i, int j, float value) final;
    float Get1(int i, int j) const final;
    void Fill(float value) final;
    double Sum() const final;
    double Min() const final;
    double Max() const final;
    double StdDev() const final;
    void AddMatrix(const Matrix& other) final;
    void AddScalar(float a) final;
    void SubtractMatrix(const Matrix& other) final;
    void SubtractScalar(float a) final;
    void Scale(float a) final;
    void Divide(float a) final;
    std::unique_ptr<RealVector> MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                              unsigned char accumulate,
                                              std::unique_ptr<RealVector> y) const final;
    std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const final;
    std::unique_ptr<Matrix> Duplicate() const final;

    /// Root of the sum of the squares.
    virtual double FrobeniusNorm2() const;
    /// Largest sum of magnitudes over the rows.
    virtual double MaxRowSum() const;
    /// MaxRowSum() in its second place of the table.
    virtual double MaxRowSum2() const;
    /// Sum of the squares.
    virtual double SumOfSquares() const;

  protected:
    /// Which triangle, the diagonal included.
    enum class Part { Lower, Upper };

    TriangularMatrix(int n, Part part, float value);
    TriangularMatrix(const TriangularMatrix&) = default;

  private:
    int firstColumn(int j) const { return part_ == Part::Lower ? 0 : j; }
    bool holds(int i, int j) const;
    float& at(int i, int j);
    const float& at(int i, int j) const;
    template <class Change>
    void changeEach(Change change);

    Part part_;
    std::vector<std::vector<float>> rows_;
};

}  // namespace orv
