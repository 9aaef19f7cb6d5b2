#include "algebra/preconditioners/preconditioner_matrix.h"

#include <utility>

namespace orv {

PreconditionerMatrix::PreconditionerMatrix(int n, int factorCount)
    : Matrix(n), factorCount_(factorCount) {}

PreconditionerMatrix::PreconditionerMatrix(const PreconditionerMatrix& other)
    : Matrix(other), factorCount_(other.factorCount_) {}

std::unique_ptr<Matrix> PreconditionerMatrix::cloneOf(const Matrix* matrix) {
    return matrix != nullptr ? matrix->Clone() : nullptr;
}

std::unique_ptr<Matrix> PreconditionerMatrix::CloneTransposed(std::unique_ptr<Matrix>) const {
    return nullptr;
}

void PreconditionerMatrix::Set(int, int, float) {}

float PreconditionerMatrix::Get(int, int) const {
    return 0.0F;
}

void PreconditionerMatrix::Set1(int, int, float) {}

float PreconditionerMatrix::Get1(int, int) const {
    return 0.0F;
}

void PreconditionerMatrix::Fill(float) {}

void PreconditionerMatrix::Assign(const Matrix&, int) {}

void PreconditionerMatrix::AddMatrix(const Matrix&) {}

void PreconditionerMatrix::AddScalar(float) {}

void PreconditionerMatrix::SubtractMatrix(const Matrix&) {}

void PreconditionerMatrix::SubtractScalar(float) {}

void PreconditionerMatrix::Scale(float) {}

void PreconditionerMatrix::Divide(float) {}

std::unique_ptr<RealVector> PreconditionerMatrix::MultiplyRange(
    const RealVector&, int, int, unsigned char, std::unique_ptr<RealVector>) const {
    return nullptr;
}

std::unique_ptr<RealVector> PreconditionerMatrix::Multiply(
    const RealVector& x, std::unique_ptr<RealVector> y) const {
    return applyChain(&Matrix::Multiply, x, std::move(y));
}

std::unique_ptr<RealVector> PreconditionerMatrix::MultiplyTransposedRange(
    const RealVector&, int, int, unsigned char, std::unique_ptr<RealVector>) const {
    return nullptr;
}

std::unique_ptr<RealVector> PreconditionerMatrix::MultiplyTransposed(
    const RealVector& x, std::unique_ptr<RealVector> y) const {
    // quirk: chain-not-reversed
    return applyChain(&Matrix::MultiplyTransposed, x, std::move(y));
}

std::unique_ptr<RealVector> PreconditionerMatrix::MultiplyAdjoint(
    const RealVector& x, std::unique_ptr<RealVector> y) const {
    // quirk: chain-not-reversed
    return applyChain(&Matrix::MultiplyAdjoint, x, std::move(y));
}

std::unique_ptr<RealVector> PreconditionerMatrix::MultiplyConjugate(
    const RealVector& x, std::unique_ptr<RealVector> y) const {
    return applyChain(&Matrix::MultiplyConjugate, x, std::move(y));
}

int PreconditionerMatrix::FactorCount() const {
    return factorCount_;
}

std::unique_ptr<RealVector> PreconditionerMatrix::applyChain(
    Operation op, const RealVector& x, std::unique_ptr<RealVector> y) const {
    const int count = FactorCount();
    if (count == 1) {
        return applyFactor(0, op, &x, std::move(y));
    }
    work_ = applyFactor(0, op, &x, std::move(work_));
    y = applyFactor(1, op, work_.get(), std::move(y));
    int k = 2;
    for (; k + 1 < count; k += 2) {
        work_ = applyFactor(k, op, y.get(), std::move(work_));
        y = applyFactor(k + 1, op, work_.get(), std::move(y));
    }
    if (k < count) {
        work_ = applyFactor(k, op, y.get(), std::move(work_));
        if (work_ == nullptr) {
            return nullptr;
        }
        y->CopyFrom(*work_);
    }
    return y;
}

// A failure of an earlier factor comes in as a null x and goes on as a null result.
std::unique_ptr<RealVector> PreconditionerMatrix::applyFactor(
    int k, Operation op, const RealVector* x, std::unique_ptr<RealVector> y) const {
    const Matrix* const factor = GetFactor(k);
    if (factor == nullptr || x == nullptr) {
        return nullptr;
    }
    return (factor->*op)(*x, std::move(y));
}

}  // namespace orv
