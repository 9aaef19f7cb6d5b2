#pragma once

#include <memory>

#include "algebra/preconditioners/preconditioner_matrix.h"

namespace orv {

/// An incomplete LU factorisation without fill-in, both factors in one matrix.
///
///     L work = b        U x = work        A = L U but for the dropped fill-in
///
/// Its factors aren't matrices of their own: GetFactor is null, SetFactor does nothing, and
/// with nothing to call the products are null. Solve alone applies it.
///
/// Shapes:  b and x n floats.
/// Fails:   Solve is null if the matrix gives no incomplete factors.
/// Cost:    one incomplete factorisation when built; a forward and a back substitution a solve.
/// Source:  [Saad2003], section 10.3
class CompactIncompleteLU0 : public PreconditionerMatrix {
  public:
    /// Factorises `source`, which prints its progress; see BandMatrix::IncompleteLU0.
    ///
    /// Owns:    nothing of `source`, which has to outlive SourceClone alone.
    explicit CompactIncompleteLU0(const Matrix& source);
    /// Deep copy of the factors, with the same source.
    CompactIncompleteLU0(const CompactIncompleteLU0& other);

    std::unique_ptr<Matrix> Clone() const override;
    void PrintTo(std::FILE* file) const override;
    std::unique_ptr<RealVector> Solve(const RealVector& b,
                                      std::unique_ptr<RealVector> x) const override;
    const Matrix* GetFactor(int k) const override;
    void SetFactor(int k, std::unique_ptr<Matrix> factor) override;
    std::unique_ptr<Matrix> SourceClone() const override;

  private:
    const Matrix* source_;
    std::unique_ptr<Matrix> lu_;
};

}  // namespace orv
