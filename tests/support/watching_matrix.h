#pragma once

#include <memory>
#include <set>
#include <utility>

#include "algebra/matrix.h"
#include "support/matrix_support.h"

namespace orv::test {

/// A matrix that counts its products and notes the memory that their results went to.
class WatchingMatrix : public PlainMatrix {
  public:
    /// The elements of A; the conjugate product comes out times `conjugateFactor`.
    explicit WatchingMatrix(const Matrix& A, float conjugateFactor = 1.0F)
        : PlainMatrix(A), conjugateFactor_(conjugateFactor) {}

    std::unique_ptr<RealVector> Multiply(const RealVector& x,
                                         std::unique_ptr<RealVector> y) const override {
        note(y);
        return PlainMatrix::Multiply(x, std::move(y));
    }
    std::unique_ptr<RealVector> MultiplyTransposed(
        const RealVector& x, std::unique_ptr<RealVector> y) const override {
        note(y);
        return PlainMatrix::MultiplyTransposed(x, std::move(y));
    }
    std::unique_ptr<RealVector> MultiplyConjugate(
        const RealVector& x, std::unique_ptr<RealVector> y) const override {
        note(y);
        ++conjugateProducts_;
        y = PlainMatrix::Multiply(x, std::move(y));
        y->MultiplyScalar(conjugateFactor_);
        return y;
    }

    /// Products of every kind so far.
    int products() const { return products_; }
    /// Calls of `MultiplyConjugate` among them.
    int conjugateProducts() const { return conjugateProducts_; }
    /// The targets so far; null stands for a product that had to make its own.
    const std::set<const float*>& targets() const { return targets_; }
    /// Whether the target of the first product came with elements other than 0.
    bool firstTargetHeld() const { return firstTargetHeld_; }

  private:
    void note(const std::unique_ptr<RealVector>& y) const {
        if (products_++ == 0) {
            firstTargetHeld_ = y && y->MaxAbs() != 0.0;
        }
        targets_.insert(y ? y->data() : nullptr);
    }

    float conjugateFactor_;
    mutable int products_ = 0;
    mutable int conjugateProducts_ = 0;
    mutable bool firstTargetHeld_ = false;
    mutable std::set<const float*> targets_;
};

}  // namespace orv::test
