#pragma once

#include <memory>
#include <vector>

#include "algebra/preconditioners/preconditioner_matrix.h"

namespace orv {

/// A chain of matrices that are applied one after the other, factor 0 first.
///
/// Fails:   a product through a factor that was never set is null; Solve and Inverse are null.
/// Owns:    its factors.
class ExplicitPreconditionedProduct : public PreconditionerMatrix {
  public:
    /// Order n, with `factorCount` factors that start null.
    ExplicitPreconditionedProduct(int n, int factorCount);
    /// Deep copy.
    ExplicitPreconditionedProduct(const ExplicitPreconditionedProduct& other);

    std::unique_ptr<Matrix> Clone() const override;
    /// The header and the factors that are set.
    void PrintTo(std::FILE* file) const override;
    const Matrix* GetFactor(int k) const override;
    void SetFactor(int k, std::unique_ptr<Matrix> factor) override;
    /// Null: there is no source.
    std::unique_ptr<Matrix> SourceClone() const override;

  private:
    std::vector<std::unique_ptr<Matrix>> factors_;
};

}  // namespace orv
