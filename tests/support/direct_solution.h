#pragma once

#include <Eigen/Sparse>
#include <Eigen/SparseLU>
#include <vector>

#include "algebra/matrix.h"
#include "algebra/real_vector.h"

namespace orv::test {

/// The matrix as Eigen holds it, in double, read through Get.
inline Eigen::SparseMatrix<double> eigenMatrix(const Matrix& A) {
    std::vector<Eigen::Triplet<double>> elements;
    for (int j = 0; j < A.Rows(); ++j) {
        for (int i = 0; i < A.Cols(); ++i) {
            const float element = A.Get(i, j);
            if (element != 0.0F) {
                elements.emplace_back(j, i, double{element});
            }
        }
    }
    Eigen::SparseMatrix<double> sparse(A.Rows(), A.Cols());
    sparse.setFromTriplets(elements.begin(), elements.end());
    return sparse;
}

/// The solution of A u = b by Eigen's sparse LU with pivoting, in double.
inline std::vector<double> directSolution(const Matrix& A, const RealVector& b) {
    Eigen::SparseLU<Eigen::SparseMatrix<double>> factors(eigenMatrix(A));
    Eigen::VectorXd rhs(b.size());
    for (int i = 0; i < b.size(); ++i) {
        rhs[i] = b[i];
    }
    const Eigen::VectorXd u = factors.solve(rhs);
    return {u.data(), u.data() + u.size()};
}

}  // namespace orv::test
