#include "algebra/storage/upper_bi_diagonal_matrix.h"

namespace orv {

UpperBiDiagonalMatrix::UpperBiDiagonalMatrix(int n, float value)
    : BiDiagonalMatrix(n, Side::Upper, Main::Stored, value) {}

std::unique_ptr<Matrix> UpperBiDiagonalMatrix::Clone() const {
    return std::make_unique<UpperBiDiagonalMatrix>(*this);
}

void UpperBiDiagonalMatrix::SetVector(int which, const RealVector& vector) {
    if (which == 0 || which == 1) {
        vectors_[static_cast<unsigned>(which)].CopyFrom(vector);
    }
}

}  // namespace orv
