#include "algebra/storage/unit_upper_bi_diagonal_matrix.h"

namespace orv {

UnitUpperBiDiagonalMatrix::UnitUpperBiDiagonalMatrix(int n, float value)
    : BiDiagonalMatrix(n, Side::Upper, Main::Ones, value) {}

std::unique_ptr<Matrix> UnitUpperBiDiagonalMatrix::Clone() const {
    return std::make_unique<UnitUpperBiDiagonalMatrix>(*this);
}

}  // namespace orv
