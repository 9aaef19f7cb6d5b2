#pragma once

#include <memory>

#include "algebra/matrix.h"

namespace orv {

/// The inverse of the lower part of A as a new LowerTriangularMatrix, column by column.
///
///     X(i, i) = 1 / A(i, i)
///     X(i, j) = -(sum over k = i ... j-1 of A(k, j) X(i, k)) / A(j, j)   for j > i
///
/// Domain:  A stores nothing more than `width` below the diagonal; sums leave the rest out.
std::unique_ptr<Matrix> inverseOfLower(const Matrix& A, int width);

/// The inverse of the upper part of A as a new UpperTriangularMatrix, in the mirrored order.
std::unique_ptr<Matrix> inverseOfUpper(const Matrix& A, int width);

}  // namespace orv
