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
    explicit WatchingMatrix(const Matrix& other) : PlainMatrix(other) {}

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

    /// Products so far.
    int products() const { return products_; }
    /// The targets so far; null stands for a product that had to make its own.
    const std::set<const float*>& targets() const { return targets_; }

  private:
    void note(const std::unique_ptr<RealVector>& y) const {
        ++products_;
        targets_.insert(y ? y->data() : nullptr);
    }

    mutable int products_ = 0;
    mutable std::set<const float*> targets_;
};

}  // namespace orv::test
