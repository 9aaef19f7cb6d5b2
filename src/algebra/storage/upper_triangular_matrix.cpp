#include "algebra/storage/upper_triangular_matrix.h"

#include <utility>

#include "algebra/storage/triangular_inverse.h"

namespace orv {

UpperTriangularMatrix::UpperTriangularMatrix(int n, float value)
    : TriangularMatrix(n, Part::Upper, value) {}

std::unique_ptr<Matrix> UpperTriangularMatrix::Clone() const {
    return std::make_unique<UpperTriangularMatrix>(*this);
}

std::unique_ptr<Matrix> UpperTriangularMatrix::CloneTransposed(std::unique_ptr<Matrix>) const {
    return nullptr;
}

std::unique_ptr<RealVector> UpperTriangularMatrix::Solve(const RealVector& b,
                                                         std::unique_ptr<RealVector> x) const {
    return SolveUpper(b, std::move(x));
}

std::unique_ptr<Matrix> UpperTriangularMatrix::Inverse() const {
    return inverseOfUpper(*this, Rows());
}

}  // namespace orv
