#pragma once

#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

// Solutions by Eigen, to compare the solvers with. Its templates are compiled in one file, since
// they take longer than any test that uses them.

namespace orv::test {

/// The solution of A u = b by Eigen's sparse LU with pivoting, in double.
std::vector<double> directSolution(const Matrix& A, const RealVector& b);

/// The solution of (A^T A + shift I) u = A^T b by Eigen's LDL^T, in double.
std::vector<double> shiftedSolution(const Matrix& A, const RealVector& b, double shift);

}  // namespace orv::test
