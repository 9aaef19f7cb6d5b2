#include "algebra/storage/lower_bi_diagonal_matrix.h"

namespace orv {

LowerBiDiagonalMatrix::LowerBiDiagonalMatrix(int n, float value)
    : BiDiagonalMatrix(n, Side::Lower, Main::Stored, value) {}

std::unique_ptr<Matrix> LowerBiDiagonalMatrix::Clone() const {
    return std::make_unique<LowerBiDiagonalMatrix>(*this);
}

void LowerBiDiagonalMatrix::SetVector(int which, const RealVector& vector) {
    if (which == 0 || which == 1) {
        vectors_[static_cast<unsigned>(which)].CopyFrom(vector);
    }
}

}  // namespace orv
