#pragma once

#include <memory>

#include "algebra/matrix.h"

namespace orv {

/// A preconditioner in the place of a matrix, so that a solver can hold it and apply it by
/// Solve or Multiply. It is defined by a few factors and is a matrix in name only: it has no
/// elements, its measures are 0, and its range products are null.
///
/// The four products run through the factors F0, F1, ... of GetFactor, with op the product in
/// question, and go back and forth between the result and one work vector:
///
///     y = F0 op x                                 one factor
///     work = F0 op x,  y = F1 op work             two, and so on with two at a time
///     work = last op y,  y = work                 the last of an odd number
///
/// Fails:   null when a factor is missing or gives null.
/// Cost:    one work vector, made when it is first needed and kept: an object serves one caller
///          at a time.
/// Quirk:   chain-not-reversed
class PreconditionerMatrix : public Matrix {
  public:
    /// Null in every preconditioner.
    std::unique_ptr<Matrix> CloneTransposed(std::unique_ptr<Matrix> result) const override;
    /// Does nothing: there are no elements.
    void Set(int i, int j, float value) override;
    /// 0: there are no elements.
    float Get(int i, int j) const override;
    /// Does nothing.
    void Set1(int i, int j, float value) override;
    /// 0.
    float Get1(int i, int j) const override;
    /// Does nothing.
    void Fill(float value) override;
    /// Does nothing.
    void Assign(const Matrix& other, int transposed) override;
    /// Does nothing.
    void AddMatrix(const Matrix& other) override;
    /// Does nothing.
    void AddScalar(float a) override;
    /// Does nothing.
    void SubtractMatrix(const Matrix& other) override;
    /// Does nothing.
    void SubtractScalar(float a) override;
    /// Does nothing.
    void Scale(float a) override;
    /// Does nothing.
    void Divide(float a) override;
    /// Null: the chain works on whole vectors.
    std::unique_ptr<RealVector> MultiplyRange(const RealVector& x, int xFrom, int yFrom,
                                              unsigned char accumulate,
                                              std::unique_ptr<RealVector> y) const override;
    /// The chain of Multiply.
    std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                         std::unique_ptr<RealVector> y) const override;
    /// Null: the chain works on whole vectors.
    std::unique_ptr<RealVector> MultiplyTransposedRange(
        const RealVector& x, int xFrom, int yFrom, unsigned char accumulate,
        std::unique_ptr<RealVector> y) const override;
    /// The chain of MultiplyTransposed, in the same order of the factors.
    std::unique_ptr<RealVector> MultiplyTransposed(
        const RealVector& x, std::unique_ptr<RealVector> y) const override;
    /// The chain of MultiplyAdjoint, in the same order of the factors.
    std::unique_ptr<RealVector> MultiplyAdjoint(const RealVector& x,
                                                std::unique_ptr<RealVector> y) const override;
    /// The chain of MultiplyConjugate.
    std::unique_ptr<RealVector> MultiplyConjugate(const RealVector& x,
                                                  std::unique_ptr<RealVector> y) const override;

    /// Number of factors.
    virtual int FactorCount() const;
    /// Factor k, counted from 0; null where there is none.
    virtual const Matrix* GetFactor(int k) const = 0;
    /// Replaces factor k; a factor that has no place is dropped.
    virtual void SetFactor(int k, std::unique_ptr<Matrix> factor) = 0;
    /// A clone of the matrix that the preconditioner was built from, which has to live still;
    /// null where that isn't kept.
    virtual std::unique_ptr<Matrix> SourceClone() const = 0;

  protected:
    /// Order n, with the given number of factors.
    PreconditionerMatrix(int n, int factorCount);
    /// Copies all but the work vector.
    PreconditionerMatrix(const PreconditionerMatrix& other);

    /// A clone of a matrix that may be null.
    static std::unique_ptr<Matrix> cloneOf(const Matrix* matrix);

    /// Number of factors.
    int factorCount_;
    /// Scratch vector of the chain and of Solve; null until first needed.
    mutable std::unique_ptr<RealVector> work_;

  private:
    using Operation = std::unique_ptr<RealVector> (Matrix::*)(
        const RealVector& x, std::unique_ptr<RealVector> y) const;

    std::unique_ptr<RealVector> applyChain(Operation op, const RealVector& x,
                                           std::unique_ptr<RealVector> y) const;
    std::unique_ptr<RealVector> applyFactor(int k, Operation op, const RealVector* x,
                                            std::unique_ptr<RealVector> y) const;
};

}  // namespace orv
