#include "support/direct_solution.h"

#include <Eigen/Cholesky>
#include <Eigen/Sparse>
#include <Eigen/SparseLU>

namespace orv::test {

namespace {

// The matrix as Eigen holds it, in double, read through Get.
Eigen::SparseMatrix<double> eigenMatrix(const Matrix& A) {
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

Eigen::VectorXd eigenVector(const RealVector& b) {
    Eigen::VectorXd vector(b.size());
    for (int i = 0; i < b.size(); ++i) {
        vector[i] = double{b[i]};
    }
    return vector;
}

}  // namespace

std::vector<double> directSolution(const Matrix& A, const RealVector& b) {
    const Eigen::SparseLU<Eigen::SparseMatrix<double>> factors(eigenMatrix(A));
    const Eigen::VectorXd u = factors.solve(eigenVector(b));
    return {u.data(), u.data() + u.size()};
}

std::vector<double> shiftedSolution(const Matrix& A, const RealVector& b, double shift) {
    const Eigen::MatrixXd dense = Eigen::MatrixXd(eigenMatrix(A));
    Eigen::MatrixXd normal = dense.transpose() * dense;
    normal.diagonal().array() += shift;
    const Eigen::VectorXd u = normal.ldlt().solve(dense.transpose() * eigenVector(b));
    return {u.data(), u.data() + u.size()};
}

}  // namespace orv::test
