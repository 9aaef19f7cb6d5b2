// Preconditioners made from the diagonal and from symmetric successive over-relaxation.
#include "algebra/matrix.h"
#include "algebra/preconditioners/explicit_ssor.h"

namespace orv {

namespace {

// factor(i, i) = v - factor(i, i); factors that store no diagonal stay as they are.
void subtractDiagonalFrom(float v, int i, Matrix& factor) {
    factor.Set(i, i, v - factor.Get(i, i));
}

}  // namespace

std::unique_ptr<Matrix> Matrix::MakeDiagonalPreconditioner(std::unique_ptr<Matrix> old) const {
    old.reset();
    return ToDiagonal();
}

std::unique_ptr<Matrix> Matrix::MakeExplicitSsor() const {
    return std::make_unique<ExplicitSsor>(*this);
}

void Matrix::SsorFactorsFull(float omega, std::unique_ptr<Matrix>& lower,
                             std::unique_ptr<Matrix>& diagonal,
                             std::unique_ptr<Matrix>& upper) const {
    SsorFactors(omega, lower, diagonal);
    upper = ToStrictUpper();
    for (int i = 0; i < n_; ++i) {
        subtractDiagonalFrom(Get(i, i) / omega, i, *upper);
    }
}

void Matrix::SsorFactors(float omega, std::unique_ptr<Matrix>& lower,
                         std::unique_ptr<Matrix>& diagonal) const {
    lower = ToStrictLower();
    diagonal = ToDiagonal();
    for (int i = 0; i < n_; ++i) {
        const float v = diagonal->Get(i, i) / omega;
        subtractDiagonalFrom(v, i, *lower);
        diagonal->Set(i, i, (2.0f - omega) / v);
    }
}

void Matrix::SsorScaledFull(float omega, float& scale, std::unique_ptr<Matrix>& lower,
                            std::unique_ptr<Matrix>& upper) const {
    SsorScaled(omega, scale, lower);
    upper = ToStrictUpper();
    for (int i = 0; i < n_; ++i) {
        subtractDiagonalFrom(1.0f / omega, i, *upper);
    }
}

void Matrix::SsorScaled(float omega, float& scale, std::unique_ptr<Matrix>& lower) const {
    lower = ToStrictLower();
    for (int i = 0; i < n_; ++i) {
        subtractDiagonalFrom(1.0f / omega, i, *lower);
    }
    scale = (2.0f - omega) * omega;
}

}  // namespace orv
