#pragma once

#include <cstdio>

#include "filters/linear_system.h"

namespace orv {

/// A tridiagonal system solved by the Thomas algorithm, an LU factorisation without pivoting.
///
///     p(0) = diag(0)      m(i - 1) = sub(i - 1) / p(i - 1)
///     p(i) = diag(i) - super(i - 1) m(i - 1)
///     f(0) = b(0)         f(i) = b(i) - m(i - 1) f(i - 1)
///     x(n - 1) = f(n - 1) / p(n - 1)
///     x(i) = (f(i) - super(i) x(i + 1)) / p(i)
///
/// All of it is float arithmetic, each operation rounded.
///
/// Fails:   never; a zero pivot goes through as an infinity or NaN.
/// Cost:    two divisions a row for the factors and the solution, no allocation.
class ThomasLinearSystem : public LinearSystem {
  public:
    /// A system of n unknowns, all of it zero.
    ///
    /// Domain:  n at least 1.
    explicit ThomasLinearSystem(int n);
    ~ThomasLinearSystem() override;

    /// Factorises the matrix, then solves for x with the right side b.
    void factorise() override;

    /// Writes "Thomas " and the text of the base to a file.
    void print(std::FILE* file) const override;
    /// Writes the same to the standard output.
    void print() const override;

    /// n - 1 elements that no operation touches.
    const RealVector& spare() const { return spare_; }
    /// The diagonal of U, n elements.
    const RealVector& pivots() const { return pivots_; }
    /// The elements of L below its unit diagonal, n - 1 of them.
    const RealVector& multipliers() const { return multipliers_; }
    /// The right side after the forward elimination, n elements.
    const RealVector& forward() const { return forward_; }

  private:
    RealVector spare_;
    RealVector pivots_;
    RealVector multipliers_;
    RealVector forward_;
};

}  // namespace orv
