#include "algebra/storage/lower_triangular_matrix.h"

#include <utility>

#include "algebra/storage/triangular_inverse.h"

namespace orv {

LowerTriangularMatrix::LowerTriangularMatrix(int n, float value)
    : TriangularMatrix(n, Part::Lower, value) {}

std::unique_ptr<Matrix> LowerTriangularMatrix::Clone() const {
    return std::make_unique<LowerTriangularMatrix>(*this);
}

std::unique_ptr<Matrix> LowerTriangularMatrix::CloneTransposed(std::unique_ptr<Matrix>) const {
    return nullptr;
}

std::unique_ptr<RealVector> LowerTriangularMatrix::Solve(const RealVector& b,
                                                         std::unique_ptr<RealVector> x) const {
    return SolveLower(b, std::move(x));
}

std::unique_ptr<Matrix> LowerTriangularMatrix::Inverse() const {
    return inverseOfLower(*this, Rows());
}

}  // namespace orv
