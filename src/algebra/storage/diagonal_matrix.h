#pragma once

#include "algebra/matrix.h"

namespace orv {

/// A diagonal matrix; the sums and the mean run over its n elements.
///
/// AddMatrix, AddScalar, SubtractMatrix and SubtractScalar do nothing in this class.
class DiagonalMatrix final : public Matrix {
  public:
    /// Order n, every diagonal element of the given value.
    DiagonalMatrix(int n, float value);
    DiagonalMatrix(const DiagonalMatrix&) = default;

    std::unique_ptr<Matrix> Clone() const override;
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const override;
    int Size() const override;
    void Set(int i, int j, float value) override;
    float Get(int i, int j) const override;
    void Set1(int i, int j, float value) override;
    float Get1(int i, int j) const override;
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
    std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                         std::unique_ptr<RealVector> y) const override;
    std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const override;
    std::unique_ptr<RealVector> MultiplyTransposed(
        const RealVector& x, std::unique_ptr<RealVector> y) const override;
    void PrintTo(std::FILE* file) const override;
    std::unique_ptr<RealVector> Solve(const RealVector& b,
                                      std::unique_ptr<RealVector> x) const override;
    std::unique_ptr<Matrix> Inverse() const override;

    /// The main diagonal.
    RealVector& values() { return values_; }
    /// The main diagonal.
    const RealVector& values() const { return values_; }

  private:
    int length_;
    RealVector values_;
};

}  // namespace orv
