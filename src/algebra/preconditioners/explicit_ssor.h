#pragma once

#include <array>
#include <memory>

#include "algebra/preconditioners/preconditioner_matrix.h"

namespace orv {

/// Symmetric successive over-relaxation as a preconditioner, in three factors of A = L + D + U.
///
///     lower = L + D / omega     diagonal = omega / ((2 - omega) D)     upper = U + D / omega
///     Solve:  x = upper-inverse (diagonal-inverse (lower-inverse b))
///
/// With omega = 1 this is a symmetric Gauss-Seidel sweep. L and U are what ToLower and ToUpper
/// give; see the quirk crossed-bidiagonal of the tridiagonal class.
///
/// Shapes:  b and x n floats.
/// Domain:  omega between 0 and 2, the ends excluded.
/// Fails:   a zero on the diagonal is not tested and goes through as infinity.
/// Cost:    copies of the three parts when built; two substitutions and n divisions a solve.
/// Quirk:   ssor-chain-order, ssor-omega-clone
/// Source:  [AxelssonBarker1984]
class ExplicitSsor : public PreconditionerMatrix {
  public:
    /// With the omega of OptimiseOmega(A, 3), whose text is printed.
    ///
    /// Owns:    nothing of A, which has to outlive SourceClone alone.
    explicit ExplicitSsor(const Matrix& A);
    /// With the given omega; A isn't kept, and SourceClone is null.
    ExplicitSsor(const Matrix& A, double omega);
    /// Deep copy of the factors, with the same source.
    ExplicitSsor(const ExplicitSsor& other);

    std::unique_ptr<Matrix> Clone() const override;
    void PrintTo(std::FILE* file) const override;
    std::unique_ptr<RealVector> Solve(const RealVector& b,
                                      std::unique_ptr<RealVector> x) const override;
    /// The chain of the three inverses, upper first: a new ExplicitPreconditionedProduct.
    ///
    /// It undoes Multiply, not what Solve solves. A factor without Inverse() leaves its place
    /// empty.
    std::unique_ptr<Matrix> Inverse() const override;
    /// lower (0), diagonal (1) and upper (2); null for another k.
    const Matrix* GetFactor(int k) const override;
    void SetFactor(int k, std::unique_ptr<Matrix> factor) override;
    std::unique_ptr<Matrix> SourceClone() const override;

    /// The relaxation parameter.
    double omega() const { return omega_; }

    /// Estimates the best omega from a vector of ones and `trials` - 1 random ones.
    ///
    ///     r1 = max (x.D x) / (x.A x)     r2 = max (x.C x) / (x.A x)
    ///     omega = 2 / (1 + 2 / sqrt(r1) sqrt(r2 + 1/2))
    ///
    /// The value is printed. The random elements, from 1e-06 to 1, come from runtimeRandom().
    /// Quirk:   ssor-omega-clone
    /// Source:  [AxelssonBarker1984]
    static double OptimiseOmega(const Matrix& A, int trials);

  private:
    static constexpr int kFactors = 3;

    ExplicitSsor(const Matrix* source, const Matrix& A, double omega);

    const Matrix* source_;
    [[maybe_unused]] int reserved_ = 5;  ///< Nothing reads it.
    double omega_;
    std::array<std::unique_ptr<Matrix>, kFactors> factors_;
};

}  // namespace orv
