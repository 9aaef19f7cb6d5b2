#pragma once

#include <cstdio>
#include <memory>

#include "algebra/real_vector.h"
#include "algebra/storage/f_tri_diagonal_matrix.h"

namespace orv {

/// A tridiagonal system A x = b of fixed size with its matrix and its two vectors.
///
/// Setters copy into the system's own storage; what has another size leaves it as it is. The
/// order of the virtual operations is part of the design.
///
/// Owns:    the matrix and the vectors x and b.
class LinearSystem {
  public:
    /// A system of n unknowns, all of it zero.
    ///
    /// Domain:  n at least 1.
    explicit LinearSystem(int n);
    LinearSystem(const LinearSystem&) = delete;
    LinearSystem& operator=(const LinearSystem&) = delete;

    virtual ~LinearSystem();

    /// Copies the three diagonals of `matrix`.
    virtual void setMatrix(const FTriDiagonalMatrix& matrix);
    /// Copies the diagonals: `super` and `sub` of n - 1 elements, `diag` of n.
    ///
    ///     sub(i - 1) x(i - 1) + diag(i) x(i) + super(i) x(i + 1) = b(i)
    virtual void setTriDiagonal(const RealVector& super, const RealVector& diag,
                                const RealVector& sub);
    /// Copies `vector` to x.
    virtual void setX(const RealVector& vector);
    /// Copies `vector` to b.
    virtual void setB(const RealVector& vector);
    /// The entries that the matrix stores, 3 n - 2.
    virtual int entryCount() const;
    /// The number of rows, n.
    virtual int rows() const;
    /// The number of columns, n.
    virtual int columns() const;
    /// The unknowns: the solution after factorise().
    virtual RealVector& x();
    /// The right side.
    virtual RealVector& b();
    /// The matrix.
    virtual FTriDiagonalMatrix& matrix();

    /// setMatrix, setX, setB and factorise().
    virtual void solve(const FTriDiagonalMatrix& matrix, const RealVector& x0,
                       const RealVector& b0);
    /// setX, setB and factorise().
    virtual void solve(const RealVector& x0, const RealVector& b0);
    /// Factorises the matrix and solves for x as well.
    virtual void factorise() = 0;
    /// solve() with a matrix; gives x().
    virtual RealVector& solved(const FTriDiagonalMatrix& matrix, const RealVector& x0,
                               const RealVector& b0);
    /// solve(); gives x().
    virtual RealVector& solved(const RealVector& x0, const RealVector& b0);

    /// Writes "Linear System", the matrix, x and b to a file.
    virtual void print(std::FILE* file) const;
    /// Writes the same to the standard output.
    virtual void print() const;

  protected:
    int n_;
    std::unique_ptr<FTriDiagonalMatrix> matrix_;
    std::unique_ptr<RealVector> x_;
    std::unique_ptr<RealVector> b_;
};

}  // namespace orv
