#include "algebra/storage/unit_lower_bi_diagonal_matrix.h"

namespace orv {

UnitLowerBiDiagonalMatrix::UnitLowerBiDiagonalMatrix(int n, float value)
    : BiDiagonalMatrix(n, Side::Lower, Main::Ones, value) {}

std::unique_ptr<Matrix> UnitLowerBiDiagonalMatrix::Clone() const {
    return std::make_unique<UnitLowerBiDiagonalMatrix>(*this);
}

}  // namespace orv
